// The questions and flights of the results panel.
#include "cleaning/CategoryListModel.h"
#include "cleaning/CleanCategories.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/ui/CleanResultsPanel.h"
#include "cleaning/ui/FileIcons.h"
#include "cleaning/ui/ResultView.h"
#include "cleaning/ui/TickFlight.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "ui/ImageProvider.h"
#include "ui/ImageView.h"
#include "ui/PageAlerts.h"

#include <QLabel>
#include <QStackedWidget>

namespace brightsweep {

namespace {

QPixmap flyingImage(const QVariant &icon, bool isDirectory, qreal ratio) {
    if (icon.typeId() == QMetaType::QString)
        return pixmapNamed(icon.toString(), {flyingSide, flyingSide}, ratio);
    return FileIcons()
        .icon(paths::fromVariant(icon), isDirectory)
        .pixmap(QSize(flyingSide, flyingSide), ratio);
}

} // namespace

void CleanResultsPanel::flyToTrash(const QVariant &icon, const QModelIndex &from) {
    auto *const list = qobject_cast<QAbstractItemView *>(m_box->currentWidget());
    QAbstractItemView *const view = list ? list : m_outline;
    const bool isShown = from.isValid() && from.model() == view->model();
    const int directoryRole = view == m_outline ? int(CleanOutlineModel::IsDirectoryRole)
                                                : int(CategoryListModel::IsDirectoryRole);
    const QPixmap image =
        flyingImage(icon, isShown && from.data(directoryRole).toBool(), devicePixelRatioF());
    // From the row's own place, of the header's box from the top of the list.
    flyTick(*this, *view, isShown ? view->visualRect(from).topLeft() : QPoint(), *m_trashImage,
            image);
}

AlertContent CleanResultsPanel::downloadsQuestion() const {
    const auto downloads = m_controller.selected(downloadsCategory);
    AlertContent content;
    content.imageName = QStringLiteral("warning.png");
    content.text = localizedText(cleanPageTexts::warningTitle);
    content.informativeText =
        localizedText(cleanPageTexts::warningText) + QStringLiteral("\n\n") +
        countWords(QT_TRID_NOOP("DOWNLOADS_TICKED"), downloads.selected, downloads.bytes);
    return content;
}

void CleanResultsPanel::askDownloads() {
    const auto downloads = m_controller.selected(downloadsCategory);
    const std::size_t all = m_controller.selectCount2Clean();
    const std::uint64_t bytes = m_controller.allSelectTotalSize();
    AlertContent content = downloadsQuestion();
    content.buttons = {
        {localizedText("YES"), true, [this] { m_controller.alertWindowYesButtonAction(); }, false,
         countWords(QT_TRID_NOOP("TIP_REMOVE_ALL"), all, bytes)},
        {localizedText("NO"), true, [this] { m_controller.alertWindowNoButtonAction(); }, false,
         countWords(QT_TRID_NOOP("TIP_KEEP_DOWNLOADS"), all - downloads.selected,
                    bytes - downloads.bytes)},
        {localizedText("CANCEL"), false, [this] { m_controller.alertWindowCalledOff(); }, false,
         localizedText("TIP_REMOVE_NOTHING")},
        {localizedText("OPEN_DOWNLOADS"), false, [this] { m_controller.openViewNewLink(); }, true,
         localizedText("TIP_LOOK_FIRST")}};
    content.calledOff = [this] { m_controller.alertWindowCalledOff(); };
    AlertSheet::show(std::move(content), window());
}

void CleanResultsPanel::askDownloadsAlone() {
    const auto downloads = m_controller.selected(downloadsCategory);
    AlertContent content = downloadsQuestion();
    content.buttons = {
        {localizedText("OK"), true, [this] { m_controller.downloadAlertEnded(1); }, false,
         countWords(QT_TRID_NOOP("TIP_REMOVE_ALL"), downloads.selected, downloads.bytes)},
        {localizedText("CANCEL"), false, [this] { m_controller.downloadAlertEnded(0); }, false,
         localizedText("TIP_REMOVE_NOTHING")}};
    content.calledOff = [this] { m_controller.downloadAlertEnded(0); };
    AlertSheet::show(std::move(content), window());
}

void CleanResultsPanel::showAlertForPrivilegesToClean() {
    AlertSheet::show(padlockAlert(m_controller.padlock(),
                                  localizedText(cleanPageTexts::privilegesText),
                                  [this] { m_controller.limitAlertEnded(); }),
                     window());
}

void CleanResultsPanel::removalRefused(const QString &words) {
    AlertSheet::show(wordsAlert(words), window());
}

} // namespace brightsweep
