#include "ui/FolderChoice.h"

#include "core/Texts.h"
#include "foundation/Paths.h"

#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QMimeData>

#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

std::filesystem::path folderIn(const QMimeData &data) {
    const QList<QUrl> urls = data.urls();
    const auto local =
        std::find_if(urls.begin(), urls.end(), [](const QUrl &url) { return url.isLocalFile(); });
    if (local == urls.end())
        return {};
    return paths::fromFileUrl(local->toString(QUrl::FullyEncoded))
        .value_or(std::filesystem::path());
}

} // namespace

FolderChoice::FolderChoice(Page page, QWidget *panel)
    : QObject(panel), m_page(std::move(page)), m_panel(panel) {
    panel->setAcceptDrops(true);
    panel->installEventFilter(this);
}

void FolderChoice::ask() {
    if (m_panel->isVisible())
        ask(m_panel, localizedText("CHOOSE_PATH"), m_page.start(), m_page.take);
}

void FolderChoice::ask(QWidget *asking, const QString &title, const std::filesystem::path &start,
                       const std::function<void(const std::filesystem::path &)> &chosen) {
    auto *const dialog = new QFileDialog(asking->window(), title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, localizedText("CHOOSE"));
    dialog->setDirectory(QFile::decodeName(QByteArray::fromStdString(start.native())));
    connect(dialog, &QFileDialog::fileSelected, asking,
            [chosen](const QString &folder) { chosen(QFile::encodeName(folder).toStdString()); });
    // Qt activates no window while a popup is open, and the list of completions closes after the
    // dialog.
    connect(dialog, &QDialog::finished, dialog, [] {
        if (QWidget *const popup = QApplication::activePopupWidget())
            popup->close();
    });
    dialog->open();
}

bool FolderChoice::eventFilter(QObject *, QEvent *event) {
    const bool takes = m_page.canBegin();
    if (event->type() == QEvent::DragEnter) {
        auto &drag = static_cast<QDropEvent &>(*event);
        if (takes && !folderIn(*drag.mimeData()).empty()) {
            drag.acceptProposedAction();
            Q_EMIT hovered(true);
        }
        return true;
    }
    if (event->type() == QEvent::DragLeave || event->type() == QEvent::Drop)
        Q_EMIT hovered(false);
    if (event->type() == QEvent::Drop && takes) {
        auto &drop = static_cast<QDropEvent &>(*event);
        const auto folder = folderIn(*drop.mimeData());
        // Nothing is moved, whatever the source proposes.
        drop.setDropAction(Qt::CopyAction);
        drop.accept();
        if (!folder.empty())
            m_page.take(folder);
        return true;
    }
    return false;
}

} // namespace brightsweep
