#include "diskusage/ui/DiskUsageResultsPanel.h"

#include "cleaning/ui/StyledLabel.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "diskusage/DiskUsageAppController.h"
#include "diskusage/ui/BigSizeFilesListView.h"
#include "diskusage/ui/CustomOpenGLView.h"
#include "diskusage/ui/FileBrowserView.h"
#include "diskusage/ui/SelectFilesSheet.h"
#include "diskusage/ui/UsagePathControl.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "ui/FolderChoice.h"
#include "ui/ImageProvider.h"
#include "ui/NoticeRow.h"
#include "ui/PadlockButton.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

using Page = DiskUsageAppController;
using View = V4DiskUsageViewController;

constexpr int imageSide = 20;

// "%d items are selected." with its number standing out.
CleanStyledText countLine(std::size_t count) {
    const QString number = readersNumber(count);
    CleanStyledText line;
    const QString sentence = localizedText(QT_TRID_NOOP("%d items are selected."));
    const auto place = sentence.indexOf(QStringLiteral("%1"));
    line.text = sentence;
    if (place >= 0) {
        line.text.replace(place, 2, number);
        line.accented.push_back({int(place), int(number.size()), 15, true});
    }
    return line;
}

// For a terminal, as the folder may be called anything.
QString commandAsRoot(const std::filesystem::path &folder) {
    const QString quoted =
        u'\'' + paths::display(folder).replace(u'\'', QStringLiteral("'\\''")) + u'\'';
    return QStringList{QStringLiteral("sudo"), QStringLiteral("brightsweep-cli"),
                       QStringLiteral("usage"), quoted}
        .join(u' ');
}

QToolButton *imageButton(const char *name, const QString &image, const QString &words,
                         QWidget *parent) {
    auto *const button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setIcon(imageNamed(image));
    button->setAccessibleName(words);
    button->setToolTip(words);
    theme::keep(button, [button] {
        button->setIconSize({theme::height(imageSide), theme::height(imageSide)});
    });
    return button;
}

} // namespace

DiskUsageResultsPanel::DiskUsageResultsPanel(Page &controller, QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_page(controller.diskView()),
      m_path(new UsagePathControl(m_page, this)),
      m_box(new QStackedWidget(this)),
      m_browser(new FileBrowserView(controller, m_box)) {
    m_box->addWidget(makeChartPage());
    m_box->addWidget(m_browser);
    auto *const upper = new QVBoxLayout;
    upper->setContentsMargins(2 * theme::grid, 2 * theme::grid, 2 * theme::grid, 0);
    upper->setSpacing(2 * theme::grid);
    upper->addWidget(m_path);
    m_notice = new NoticeRow("usage.notice", this);
    m_notice->label()->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_stopReading = m_notice->addButton("usage.stopReading", localizedText("STOP"));
    connect(m_stopReading, &QPushButton::clicked, &m_page, &View::stopReading);
    m_showUnread = m_notice->addButton("usage.showUnread", localizedText("USAGE_SHOW_UNREAD"));
    connect(m_showUnread, &QPushButton::clicked, this, &DiskUsageResultsPanel::showUnread);
    m_showLeftOut = m_notice->addButton("usage.showLeftOut", localizedText("SHOW_ALL"));
    connect(m_showLeftOut, &QPushButton::clicked, &m_page, &View::showLeftOut);
    upper->addWidget(m_notice);
    upper->addWidget(m_box, 1);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(upper, 1);
    layout->addWidget(makeHairline(this));
    layout->addWidget(makeBottom());
    auto *const choice = new FolderChoice(
        {[&controller] { return controller.bSearchFinished(); },
         [&controller] { return controller.scanPathStr(); },
         [&controller](const std::filesystem::path &folder) { controller.viewDragAction(folder); }},
        this);
    connect(&controller, &Page::askForFolder, choice, [choice] { choice->ask(); });
    bindChart();
    bindRemoval();
    connect(&controller, &Page::stateChanged, this, &DiskUsageResultsPanel::followState);
    followState();
}

QSize DiskUsageResultsPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

const UnreadFolders &DiskUsageResultsPanel::unreadFolders() const {
    return m_controller.isChart() ? m_page.unread() : m_controller.listUnread();
}

UsageTicks &DiskUsageResultsPanel::ticks() const {
    return m_controller.isChart() ? m_page.selection() : m_controller.listTicks();
}

// -- Making

QWidget *DiskUsageResultsPanel::makeChartPage() {
    auto *const page = new QWidget(m_box);
    m_list = new BigSizeFilesListView(m_page, page);
    m_rest = makePlainLabel("usage.rest", page);
    m_rest->setProperty("secondary", true);
    m_rest->setWordWrap(true);
    m_rest->setContentsMargins(2 * theme::grid, 0, 2 * theme::grid, 0);
    m_chart = new CustomOpenGLView(m_page, page);
    auto *const left = new QVBoxLayout;
    left->setSpacing(theme::grid);
    left->addWidget(m_list, 1);
    left->addWidget(m_rest);
    left->addSpacing(theme::grid);
    m_legend = new QLabel(page);
    m_legend->setObjectName(QStringLiteral("usage.legend"));
    m_legend->setTextFormat(Qt::RichText);
    m_legend->setAlignment(Qt::AlignCenter);
    m_legend->setWordWrap(true);
    m_legend->setContentsMargins(0, 0, 0, 2 * theme::grid);
    m_legend->hide();
    auto *const right = new QVBoxLayout;
    right->setSpacing(theme::grid);
    right->addWidget(m_chart, 1);
    right->addWidget(m_legend);
    auto *const row = new QHBoxLayout(page);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2 * theme::grid);
    row->addLayout(left, 2);
    row->addLayout(right, 3);
    return page;
}

QWidget *DiskUsageResultsPanel::makeBottom() {
    auto *const bottom = new QWidget(this);
    auto *const row = makeBottomRow(bottom);
    m_back = makeBackButton(bottom);
    PadlockController &padlock = m_page.padlock();
    lockButton = new PadlockButton(padlock, bottom);
    connect(lockButton, &PadlockButton::unlockWanted, &m_page, &View::unlockRigths);
    connect(&m_page, &View::unlockAnimation, lockButton, &PadlockButton::blink);
    lockButton->setEnabled(!padlock.isAsking());
    connect(&padlock, &PadlockController::askingChanged, lockButton, &QWidget::setDisabled);
    m_save = imageButton("usage.save", QStringLiteral("download_b.png"),
                         localizedText("USAGE_SAVE_PICTURE"), bottom);
    m_view = new QToolButton(bottom);
    m_view->setObjectName(QStringLiteral("usage.view"));
    m_view->setText(localizedText("USAGE_VIEW") + QStringLiteral(" \u25be"));
    m_view->setAccessibleName(localizedText("USAGE_VIEW"));
    m_view->setToolTip(localizedText("USAGE_VIEW_TIP"));
    m_view->setFocusPolicy(Qt::StrongFocus);
    // Not as a menu of the button: assistive programs press it like any other.
    connect(m_view, &QToolButton::clicked, this, &DiskUsageResultsPanel::showViewMenu);
    m_settings = imageButton("usage.preferences", QStringLiteral("preferences.png"),
                             localizedText("Preferences"), bottom);
    for (QWidget *const widget :
         {static_cast<QWidget *>(m_back), static_cast<QWidget *>(lockButton),
          static_cast<QWidget *>(m_view), static_cast<QWidget *>(m_save),
          static_cast<QWidget *>(m_settings)})
        row->addWidget(widget);
    m_sum = makePlainLabel("usage.sum", bottom);
    trashLabel = new StyledLabel(bottom);
    trashLabel->setObjectName(QStringLiteral("trashLabel"));
    row->addLayout(makeSumColumn(m_sum, trashLabel), 1);
    removeButton = makeRemovingButton("removeButton", localizedText("USAGE_REMOVE"), bottom);
    row->addWidget(removeButton);
    connect(m_back, &QPushButton::clicked, this, [this] {
        m_outcome.clear();
        m_page.backButtonAction();
    });
    connect(m_save, &QToolButton::clicked, this, &DiskUsageResultsPanel::savePicture);
    connect(m_settings, &QToolButton::clicked, &m_controller, &Page::link2Preferences);
    connect(removeButton, &QPushButton::clicked, this, &DiskUsageResultsPanel::ask);
    return bottom;
}

// -- Binding

void DiskUsageResultsPanel::bindChart() {
    connect(m_list, &BigSizeFilesListView::rowHovered, this, [this](int row) {
        const auto &rows = m_page.allShowListArr();
        const bool isFolder =
            row >= 0 && std::size_t(row) < rows.size() && rows[std::size_t(row)].isDir;
        m_page.openGLView().findChild(
            isFolder ? rows[std::size_t(row)].aFileInfo.path.native() + "/" : std::string());
    });
    connect(m_chart, &CustomOpenGLView::foundChanged, m_list, &BigSizeFilesListView::light);
    connect(m_list, &BigSizeFilesListView::removalRequested, this, &DiskUsageResultsPanel::ask);
    connect(m_chart, &CustomOpenGLView::removalRequested, this, &DiskUsageResultsPanel::ask);
    connect(m_browser, &FileBrowserView::removalRequested, this, &DiskUsageResultsPanel::ask);
    connect(m_list, &BigSizeFilesListView::menuRequested, this,
            [this](int row, const QPoint &place) {
                const BigSizeFilesList item = m_page.allShowListArr()[std::size_t(row)];
                showMenu(item.aFileInfo.path, item.isDir, place);
            });
    connect(m_chart, &CustomOpenGLView::menuRequested, this, [this](const QPoint &place) {
        const auto found = m_page.openGLView().foundFacts();
        const std::string path =
            found.path.empty() ? m_page.openGLView().currentFacts().path : found.path;
        if (!path.empty())
            showMenu(paths::withoutTrailingSlashes(path), true, place);
    });
    connect(m_browser, &FileBrowserView::menuRequested, this,
            [this](const std::filesystem::path &path, bool isFolder, const QPoint &place) {
                showMenu(path, isFolder, place);
            });
    connect(&m_page, &View::listChanged, this, &DiskUsageResultsPanel::followFolder);
    connect(&m_page, &View::scanFactsChanged, this, [this] {
        m_outcome.clear();
        followNotice();
    });
    connect(&m_page, &View::foldersChanged, this, &DiskUsageResultsPanel::followNotice);
    connect(new QShortcut(QKeySequence::Refresh, this), &QShortcut::activated, this, [this] {
        if (m_controller.isChart() && m_controller.state() == Page::State::Results)
            m_page.readAgain(m_page.currentPath());
    });
    // The context menu on keyboards without a menu key.
    connect(new QShortcut(Qt::SHIFT | Qt::Key_F10, this), &QShortcut::activated, this, [this] {
        if (QWidget *const widget = window()->focusWidget(); widget && isAncestorOf(widget))
            openMenuByKeyboard(*widget);
    });
    connect(&m_page, &View::selectionChanged, this, &DiskUsageResultsPanel::followSelection);
    connect(&m_controller, &Page::boxesChanged, this, &DiskUsageResultsPanel::followSelection);
}

void DiskUsageResultsPanel::bindRemoval() {
    for (UsageTicks *const each : {&m_page.selection(), &m_controller.listTicks()}) {
        connect(each, &UsageTicks::asked, this, [this] {
            SelectFilesSheet::show(ticks(), window(), [this](auto act) { answer(act); });
        });
        connect(each, &UsageTicks::refused, this, &DiskUsageResultsPanel::tellRefusal);
        connect(each, &UsageTicks::removalRefused, this, &DiskUsageResultsPanel::showWords);
        connect(
            each, &UsageTicks::removing, this,
            [this](const std::string &, std::size_t done, std::size_t all) {
                m_outcome =
                    localizedText("USAGE_REMOVING").arg(readersNumber(done), readersNumber(all));
                followNotice();
            });
        connect(each, &UsageTicks::removalEnded, this, &DiskUsageResultsPanel::tellOutcome);
    }
    connect(&m_page, &View::refused, this, &DiskUsageResultsPanel::tellRefusal);
    connect(&m_controller, &Page::refused, this, &DiskUsageResultsPanel::tellRefusal);
    connect(&m_page, &View::canNotRemoveSome, this, &DiskUsageResultsPanel::alertSomeStayed);
    connect(&m_controller, &Page::canNotRemoveSome, this, [this] {
        alertSomeStayed();
        lockButton->blink(true);
    });
}

// -- Showing

void DiskUsageResultsPanel::showEvent(QShowEvent *) {
    followState();
}

void DiskUsageResultsPanel::followState() {
    if (m_controller.state() != Page::State::Results)
        return;
    const bool isChart = m_controller.isChart();
    m_box->setCurrentIndex(isChart ? 0 : 1);
    m_path->setVisible(isChart);
    m_save->setVisible(isChart);
    m_view->setVisible(isChart);
    setFocusProxy(isChart ? static_cast<QWidget *>(m_list) : m_browser);
    followFolder();
    followSelection();
    followNotice();
}

void DiskUsageResultsPanel::followFolder() {
    const BigSizeFilesRows &rows = m_page.allShowListArr();
    m_rest->setText(
        rows.small() > 0
            ? localizedText("USAGE_REST", rows.small()).arg(sizeWords(rows.smallBytes()))
        : rows.empty() && rows.leftOut() == 0 && m_page.unread().count == 0
            ? localizedText("USAGE_EMPTY")
            : QString());
    m_rest->setVisible(!m_rest->text().isEmpty());
}

void DiskUsageResultsPanel::followSelection() {
    const UsageTicks &selection = ticks();
    const bool isSilent = selection.count() == 0 && m_page.selectedText().isEmpty();
    trashLabel->setStyledText(isSilent ? CleanStyledText{} : countLine(selection.count()));
    m_sum->setText(sizeWords(m_controller.isChart()
                                 ? selection.bytes(m_page.openGLView().view().measure)
                                 : selection.bytes()));
    m_sum->setVisible(selection.count() > 0);
    removeButton->setEnabled(selection.count() > 0 && !selection.isRemoving());
}

void DiskUsageResultsPanel::followNotice() {
    QStringList words;
    if (!m_outcome.isEmpty())
        words += m_outcome;
    const bool isChart = m_controller.isChart();
    const std::size_t leftOut = isChart ? m_page.foldersLeftOut() : 0;
    const bool isReading = isChart && m_page.isReadingAgain();
    const bool hasGone = isChart && m_page.hasGone();
    const UnreadFolders &unread = unreadFolders();
    m_showLeftOut->setVisible(leftOut > 0);
    m_stopReading->setVisible(isReading);
    m_showUnread->setVisible(unread.count > 1);
    if (isReading)
        words += localizedText("USAGE_READING_AGAIN");
    if (leftOut > 0)
        words += localizedText("USAGE_LEFT_OUT", leftOut);
    if (hasGone) {
        words += localizedText("USAGE_GONE")
                     .arg(nameInSentence(paths::displayFromHome(m_controller.scanPathStr())));
    } else if (unread.count > 0) {
        words += localizedText("USAGE_UNREAD", unread.count)
                     .arg(paths::displayFromHome(unread.first.front()),
                          commandAsRoot(m_controller.scanPathStr()));
    }
    if (isChart) {
        const std::uint64_t all = m_page.volumeBytes();
        if (all > 0 && m_page.openGLView().rootFacts().size > all)
            words += localizedText("USAGE_MORE_THAN_VOLUME");
    }
    m_notice->tell(words.join(u'\n'));
}

} // namespace brightsweep
