#include "duplicates/ui/FolderChoice.h"

#include "core/Texts.h"
#include "duplicates/RecentFolders.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "foundation/Identity.h"

#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QMimeData>

#include <algorithm>

namespace brightsweep {

namespace {

std::filesystem::path folderIn(const QMimeData &data) {
    const QList<QUrl> urls = data.urls();
    const auto local =
        std::find_if(urls.begin(), urls.end(), [](const QUrl &url) { return url.isLocalFile(); });
    if (local == urls.end())
        return {};
    // By the bytes of the URL: a name need not be valid UTF-8.
    return QByteArray::fromPercentEncoding(local->path(QUrl::FullyEncoded).toLatin1())
        .toStdString();
}

} // namespace

FolderChoice::FolderChoice(SameFileDeleteViewController &page, QWidget *panel)
    : QObject(panel), m_page(page), m_panel(panel) {
    panel->setAcceptDrops(true);
    panel->installEventFilter(this);
    connect(&page, &SameFileDeleteViewController::askForFolder, this, [this] {
        if (m_panel->isVisible())
            ask();
    });
}

void FolderChoice::ask() {
    auto *const dialog = new QFileDialog(m_panel->window(), localizedText("CHOOSE_PATH"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, localizedText("CHOOSE"));
    // After a search the page holds a sentence in place of a path.
    const auto recent = recentFolders();
    const std::string &path = m_page.searchPath();
    dialog->setDirectory(QFile::decodeName(QByteArray::fromStdString(
        path.starts_with('/') ? path : (recent.empty() ? homeFolder() : recent.front()).native())));
    connect(dialog, &QFileDialog::fileSelected, &m_page, [this](const QString &folder) {
        m_page.viewDragAction(QFile::encodeName(folder).toStdString());
    });
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
            m_page.viewDragAction(folder);
        return true;
    }
    return false;
}

} // namespace brightsweep
