// The questions and flights of the results panel.
#include "cleaning/NewMainViewController.h"
#include "cleaning/ui/CleanResultsPanel.h"
#include "cleaning/ui/FileIcons.h"
#include "cleaning/ui/ResultView.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "ui/AlertSheet.h"
#include "ui/ImageProvider.h"
#include "ui/ImageView.h"
#include "ui/effects/PathAnimation.h"

#include <QLabel>

namespace brightsweep {

namespace {

constexpr int flyingSide = 32;
// More at once would be a swarm.
constexpr int flightsAtOnce = 4;

QPixmap flyingImage(const QVariant &icon, bool isDirectory, qreal ratio) {
    if (icon.typeId() == QMetaType::QString)
        return pixmapNamed(icon.toString(), {flyingSide, flyingSide}, ratio);
    return FileIcons()
        .icon(paths::fromVariant(icon), isDirectory)
        .pixmap(QSize(flyingSide, flyingSide), ratio);
}

} // namespace

void CleanResultsPanel::flyToTrash(const QVariant &icon, const QModelIndex &from) {
    if (!isVisible() || findChildren<PathAnimation *>().size() >= flightsAtOnce)
        return;
    const QPixmap image = flyingImage(icon, from.data(CleanOutlineModel::IsDirectoryRole).toBool(),
                                      devicePixelRatioF());
    if (image.isNull())
        return;
    auto *const flight = new PathAnimation(this);
    connect(flight, &PathAnimation::callBackDeleteItemWithIndex, flight, &QObject::deleteLater);
    flight->animateTableView(m_outline, m_trashImage, m_outline->visualRect(from).topLeft(), image,
                             0, this);
}

void CleanResultsPanel::askDownloads() {
    AlertContent content;
    content.imageName = QStringLiteral("logo-128x128.icns");
    content.text = QLatin1String(cleanPageTexts::warningTitle);
    content.informativeText = QLatin1String(cleanPageTexts::warningText);
    AlertButton yes{QStringLiteral("Yes"), true,
                    [this] { m_controller.alertWindowYesButtonAction(); }};
    AlertButton no{QStringLiteral("No"), true,
                   [this] { m_controller.alertWindowNoButtonAction(); }};
    AlertButton view{QStringLiteral("Open Downloads"), false,
                     [this] { m_controller.openViewNewLink(); }};
    view.keepsOpen = true;
    content.buttons = {yes, no, view};
    content.calledOff = [this] { m_controller.alertWindowCalledOff(); };
    AlertSheet::show(std::move(content), window());
}

void CleanResultsPanel::askDownloadsAlone() {
    AlertContent content;
    content.imageName = QStringLiteral("warning.png");
    content.text = QLatin1String(cleanPageTexts::warningTitle);
    content.informativeText = QLatin1String(cleanPageTexts::warningText);
    content.buttons = {
        {QStringLiteral("OK"), true, [this] { m_controller.downloadAlertEnded(1); }},
        {QStringLiteral("Cancel"), false, [this] { m_controller.downloadAlertEnded(0); }}};
    content.calledOff = [this] { m_controller.downloadAlertEnded(0); };
    AlertSheet::show(std::move(content), window());
}

void CleanResultsPanel::showAlertForPrivilegesToClean() {
    AlertContent content;
    content.imageName = QStringLiteral("Lock.png");
    content.text = QLatin1String(cleanPageTexts::privilegesText);
    content.buttons = {{QStringLiteral("OK"), false, [this] { m_controller.limitAlertEnded(); }}};
    content.calledOff = [this] { m_controller.limitAlertEnded(); };
    AlertSheet::show(std::move(content), window());
}

void CleanResultsPanel::removalRefused(const QString &words) {
    AlertContent content;
    content.imageName = QStringLiteral("warning.png");
    content.text = words;
    content.buttons = {{localizedText("OK"), false, {}}};
    AlertSheet::show(std::move(content), window());
}

} // namespace brightsweep
