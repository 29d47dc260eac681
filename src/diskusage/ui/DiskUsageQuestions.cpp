// The questions of the results panel, its menus and its words on what a removal came to.
#include "core/RowWords.h"
#include "core/Texts.h"
#include "diskusage/DiskUsageAppController.h"
#include "diskusage/SvgCanvas.h"
#include "diskusage/ui/ChartPicture.h"
#include "diskusage/ui/CustomOpenGLView.h"
#include "diskusage/ui/DiskUsageResultsPanel.h"
#include "diskusage/ui/SelectFilesSheet.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "removal/RemovalReason.h"
#include "ui/AlertSheet.h"
#include "ui/PageAlerts.h"
#include "ui/Theme.h"

#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStandardPaths>
#include <QToolButton>

namespace brightsweep {

namespace {

constexpr int pictureSide = 900;
constexpr double pictureRatio = 2;

std::error_code writePicture(RingChart &chart, const std::filesystem::path &file,
                             const QString &share) {
    if (file.extension() == ".svg") {
        const QColor ground = theme::window();
        SvgCanvas canvas(QSizeF(pictureSide, pictureSide),
                         {std::uint8_t(ground.red()), std::uint8_t(ground.green()),
                          std::uint8_t(ground.blue())});
        const ChartCanvas::Use use(canvas);
        chart.drawChart(pictureSide, pictureSide);
        return writeSmallFile(file, canvas.document(), NewFile::ByUmask);
    }
    QBuffer bytes;
    ChartPicture::whole(chart, {pictureSide, pictureSide}, pictureRatio, share).save(&bytes, "PNG");
    return writeSmallFile(file, bytes.data().toStdString(), NewFile::ByUmask);
}

} // namespace

void DiskUsageResultsPanel::ask() {
    if (ticks().count() == 0)
        return;
    if (m_controller.isChart())
        m_page.removeButtonAction();
    else
        m_controller.removeBtnClick();
}

void DiskUsageResultsPanel::answer(std::optional<UsageTicks::Act> act) {
    if (!act) {
        if (m_controller.isChart())
            m_page.canelButtonAction();
        else
            m_controller.canelButtonAction();
        return;
    }
    removeButton->setEnabled(false);
    if (m_controller.isChart())
        m_page.removeSelectFilesButtonAction(*act);
    else
        m_controller.removeBtnClickAction(*act);
}

void DiskUsageResultsPanel::tellRefusal(const std::filesystem::path &path, std::error_code reason) {
    m_outcome = localizedText("USAGE_CANNOT_TICK")
                    .arg(nameInSentence(paths::display(paths::lastComponent(path))),
                         localizedText(reasonKey(reason)));
    followNotice();
}

void DiskUsageResultsPanel::tellOutcome() {
    const UsageTicks::Report &report = ticks().report();
    QStringList words;
    if (report.done > 0) {
        words += report.act == UsageTicks::Act::Trash
                     ? localizedText("USAGE_TRASHED", report.done)
                     : countWords(QT_TRID_NOOP("USAGE_REMOVED"), report.done, report.bytesFreed);
    }
    if (report.failed > 0) {
        QStringList stayed;
        for (const auto &[path, error] : report.stayed) {
            stayed += QStringLiteral("%1 (%2)").arg(
                nameInSentence(paths::display(paths::lastComponent(path))),
                localizedText(reasonKey(error)));
            if (stayed.size() == 3)
                break;
        }
        words +=
            localizedText("USAGE_STAYED", report.failed).arg(stayed.join(QStringLiteral(", ")));
    }
    m_outcome = words.join(u' ');
    followNotice();
    followSelection();
}

void DiskUsageResultsPanel::alertSomeStayed() {
    AlertSheet::show(
        padlockAlert(m_page.padlock(),
                     localizedText("Some files that require admin access can't be removed!"),
                     [this] { m_page.alertEnded(); }),
        window());
}

void DiskUsageResultsPanel::showWords(const QString &words) {
    AlertSheet::show(wordsAlert(words), window());
}

void DiskUsageResultsPanel::showUnread() {
    const UnreadFolders &unread = unreadFolders();
    QStringList paths;
    for (const std::string &path : unread.first)
        paths += paths::displayFromHome(path);
    if (unread.count > unread.first.size())
        paths += localizedText("USAGE_UNREAD_MORE", unread.count - unread.first.size());
    AlertContent content;
    content.text = localizedText("USAGE_UNREAD_TITLE", unread.count);
    content.informativeText = paths.join(u'\n');
    content.isList = true;
    AlertSheet::show(std::move(content), window());
}

void DiskUsageResultsPanel::showMenu(const std::filesystem::path &path, bool isFolder,
                                     const QPoint &place) {
    const bool isRoot = path == m_controller.scanPathStr();
    auto *const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("usage.menu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    Workspace &workspace = *Platform::current().workspace;
    menu->addAction(localizedText("USAGE_OPEN"), this,
                    [&workspace, path] { workspace.open(path); });
    menu->addAction(localizedText("USAGE_REVEAL"), this,
                    [&workspace, path] { workspace.reveal(path); });
    menu->addAction(localizedText("USAGE_COPY_PATH"), this, [path] {
        QGuiApplication::clipboard()->setText(QFile::decodeName(path.c_str()));
    });
    if (isFolder) {
        menu->addSeparator();
        menu->addAction(localizedText("USAGE_SCAN_ONLY"), &m_controller,
                        [this, path] { m_controller.viewDragAction(path); });
        if (m_controller.isChart()) {
            menu->addAction(localizedText("USAGE_READ_AGAIN"), QKeySequence::Refresh, &m_page,
                            [this, path] { m_page.readAgain(path); });
            if (!isRoot)
                menu->addAction(localizedText("USAGE_LEAVE_OUT"), &m_page,
                                [this, path] { m_page.leaveOut(path); });
        }
    }
    if (m_controller.isChart() && !isRoot) {
        menu->addSeparator();
        const bool isTicked = m_page.selection().contains(path);
        menu->addAction(
            localizedText(isTicked ? QT_TRID_NOOP("USAGE_UNTICK") : QT_TRID_NOOP("USAGE_TICK")),
            &m_page, [this, path, isTicked] {
                const std::size_t row = m_page.rowOf(path);
                if (paths::parent(path) == m_page.currentPath() &&
                    row < m_page.allShowListArr().size())
                    m_page.colorButtonAction(row);
                else
                    m_page.togglePath(path);
            });
    }
    menu->popup(place);
}

void DiskUsageResultsPanel::showViewMenu() {
    auto *const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("usage.viewMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const ChartView now = m_page.openGLView().view();
    const auto add = [&](const char *words, const ChartView &view) {
        QAction *const action =
            menu->addAction(localizedText(words), this, [this, view] { setChartView(view); });
        action->setCheckable(true);
        action->setChecked(view == now);
    };
    add(QT_TRID_NOOP("USAGE_BY_PLACE"), {now.measure, ChartColouring::Place});
    add(QT_TRID_NOOP("USAGE_BY_KIND"), {now.measure, ChartColouring::Kind});
    add(QT_TRID_NOOP("USAGE_BY_AGE"), {now.measure, ChartColouring::Age});
    menu->addSeparator();
    add(QT_TRID_NOOP("USAGE_BY_SIZE"), {ChartMeasure::Size, now.colouring});
    add(QT_TRID_NOOP("USAGE_BY_STORED"), {ChartMeasure::Stored, now.colouring});
    menu->popup(m_view->mapToGlobal(QPoint(0, -menu->sizeHint().height())));
    menu->setActiveAction(menu->actions().constFirst());
}

void DiskUsageResultsPanel::setChartView(const ChartView &view) {
    m_page.setView(view);
    followSelection();
    QStringList entries;
    for (const ChartColour &colour : chartColours(view.colouring)) {
        const QColor shown(colour.rgb[0], colour.rgb[1], colour.rgb[2]);
        entries += QStringLiteral("<span style=\"color:%1\">\u25a0</span>&nbsp;%2")
                       .arg(shown.name(), localizedText(colour.word).replace(u' ', u'\u00a0'));
    }
    m_legend->setText(entries.join(QStringLiteral(" &nbsp; ")));
    m_legend->setVisible(!entries.isEmpty());
}

void DiskUsageResultsPanel::savePicture() {
    auto *const dialog = new QFileDialog(window(), localizedText("USAGE_SAVE_PICTURE"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters({localizedText("USAGE_PNG"), localizedText("USAGE_SVG")});
    dialog->setDefaultSuffix(QStringLiteral("png"));
    dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    const std::string name = paths::lastComponent(m_page.currentPath());
    if (!name.empty() && name != "/")
        dialog->selectFile(paths::display(name));
    connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString &filter) {
        dialog->setDefaultSuffix(filter == localizedText("USAGE_SVG") ? QStringLiteral("svg")
                                                                      : QStringLiteral("png"));
    });
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &file) {
        const std::filesystem::path path = QFile::encodeName(file).toStdString();
        if (const auto error = writePicture(m_page.openGLView(), path, m_chart->shareText()))
            showWords(QStringLiteral("%1: %2").arg(paths::display(path),
                                                   QString::fromStdString(error.message())));
    });
    dialog->open();
}

} // namespace brightsweep
