#include "duplicates/ui/DuplicatesResultsPanel.h"
#include "duplicates/ui/DuplicatesFolder.h"

#include "cleaning/ui/StyledLabel.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "duplicates/ui/DuplicateListsView.h"
#include "duplicates/ui/DuplicatePane.h"
#include "duplicates/ui/DuplicatesStartPanel.h"
#include "duplicates/ui/DuplicatesView.h"
#include "duplicates/ui/TickMenu.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "ui/ElidedLabel.h"
#include "ui/FilterField.h"
#include "ui/ImageProvider.h"
#include "ui/ImageView.h"
#include "ui/NoticeRow.h"
#include "ui/PadlockButton.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace brightsweep {

namespace {

using Page = SameFileDeleteViewController;

constexpr int leastListWidth = 420;
constexpr int goodListWidth = 540;
constexpr int leastPaneWidth = 180;
constexpr int paneWidth = 248;
constexpr int iconSide = 16;
constexpr int trashSide = 28;
constexpr int barWidth = 360;
constexpr QLatin1String DSDuplicatesNoDetails("DSDuplicatesNoDetails");

// The numbers of "%d of %d selected." by their place in the reader's language.
CleanStyledText countLine(std::size_t selected, std::uint64_t total) {
    const QString sentence = localizedText("%d of %d selected.");
    const std::array numbers = {readersNumber(selected), readersNumber(total)};
    constexpr std::array sizes = {15, 0};
    CleanStyledText line;
    for (qsizetype at = 0; at < sentence.size(); ++at) {
        const auto number = std::size_t(sentence.mid(at + 1, 1).toUInt()) - 1;
        if (sentence[at] != u'%' || number >= numbers.size()) {
            line.text += sentence[at];
            continue;
        }
        line.accented.push_back(
            {int(line.text.size()), int(numbers[number].size()), sizes[number], number == 0});
        line.text += numbers[number];
        ++at;
    }
    return line;
}

} // namespace

DuplicatesResultsPanel::DuplicatesResultsPanel(Page &controller, QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_model(controller),
      m_lists(new DuplicateListsView(controller, m_model, this)),
      m_box(new QStackedWidget(this)),
      m_outline(new DuplicatesView(controller, m_model, m_box)),
      m_empty(makeEmpty()),
      m_removing(makeRemoving()) {
    for (QWidget *const page : {static_cast<QWidget *>(m_outline), m_empty, m_removing})
        m_box->addWidget(page);
    auto *const list = new QVBoxLayout;
    list->setSpacing(0);
    list->addWidget(makeNotice());
    list->addWidget(m_box, 1);
    m_pane = new DuplicatePane(this);
    auto *const lower = new QHBoxLayout;
    lower->setSpacing(3 * theme::grid);
    lower->addLayout(list, 1);
    lower->addWidget(m_pane);
    auto *const right = new QVBoxLayout;
    right->setSpacing(0);
    right->addWidget(makeHeading());
    right->addLayout(lower, 1);
    auto *const upper = new QHBoxLayout;
    upper->setContentsMargins(2 * theme::grid, 2 * theme::grid, 2 * theme::grid, 0);
    upper->setSpacing(2 * theme::grid);
    upper->addWidget(m_lists);
    upper->addLayout(right, 1);
    connect(m_outline->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &DuplicatesResultsPanel::showInPane);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(upper, 1);
    layout->addWidget(makeHairline(this));
    layout->addWidget(makeBottom());
    setFocusProxy(m_outline);

    takeFolders(m_controller, this);
    const auto *const page = &m_controller;
    connect(page, &Page::stateChanged, this, &DuplicatesResultsPanel::followState);
    connect(page, &Page::controlsChanged, this, &DuplicatesResultsPanel::followControls);
    connect(page, &Page::titleChanged, this, &DuplicatesResultsPanel::followHeading);
    connect(&m_model, &QAbstractItemModel::layoutChanged, this,
            &DuplicatesResultsPanel::followState);
    connect(page, &Page::selectionChanged, this, &DuplicatesResultsPanel::followSelection);
    connect(page, &Page::rowsChanged, this, &DuplicatesResultsPanel::followRemoval);
    connect(page, &Page::removalEnded, this, &DuplicatesResultsPanel::tellOutcome);
    connect(page, &Page::pathShown, this, [this](const std::string &path) {
        if (m_controller.state() == Page::State::Removing)
            m_removingPath->setText(paths::displayFromHome(path));
    });
    connect(page, &Page::askAboutLastFile, this, &DuplicatesResultsPanel::askAboutLastFile);
    connect(page, &Page::ticked, this, &DuplicatesResultsPanel::flyToTrash);
    connect(page, &Page::askToRemove, this, &DuplicatesResultsPanel::askToRemove);
    connect(page, &Page::removalRefused, this, &DuplicatesResultsPanel::showWords);
    connect(page, &Page::alertCanNotRemoveSome, this,
            &DuplicatesResultsPanel::alertCanNotRemoveSome);
    followState();
    followControls();
}

QSize DuplicatesResultsPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

// -- Making

QWidget *DuplicatesResultsPanel::makeHeading() {
    auto *const heading = new QWidget(this);
    auto *const row = makeHeadingRow(heading);
    m_wasted = makePlainLabel("duplicates.wasted", heading);
    theme::keepFont(m_wasted, 28, true);
    m_wasted->setProperty("number", true);
    row->addWidget(m_wasted);
    auto *const words = new QVBoxLayout;
    words->setSpacing(0);
    // They give way to the sum and the buttons.
    m_wastedWords = new ElidedLabel(Qt::ElideRight, heading);
    m_wastedWords->setObjectName(QStringLiteral("duplicates.wastedWords"));
    titleLabel = new ElidedLabel(Qt::ElideMiddle, heading);
    titleLabel->setObjectName(QStringLiteral("titleLabel"));
    titleLabel->setProperty("secondary", true);
    words->addWidget(m_wastedWords);
    words->addWidget(titleLabel);
    row->addLayout(words, 1);
    m_tickMenu = new TickMenu(m_controller, heading);
    row->addWidget(m_tickMenu);
    m_details = new QToolButton(heading);
    m_details->setObjectName(QStringLiteral("duplicates.details"));
    m_details->setCheckable(true);
    m_details->setIcon(imageNamed(QStringLiteral("info.png")));
    theme::keep(m_details, [this] {
        m_details->setIconSize({theme::height(iconSide), theme::height(iconSide)});
    });
    m_details->setFocusPolicy(Qt::StrongFocus);
    m_details->setToolTip(localizedText("DUP_DETAILS"));
    m_details->setAccessibleName(localizedText("DUP_DETAILS"));
    m_details->setChecked(!UserDefaults::standardUserDefaults().boolForKey(DSDuplicatesNoDetails));
    connect(m_details, &QToolButton::toggled, this, [this](bool on) {
        UserDefaults::standardUserDefaults().setObject(DSDuplicatesNoDetails, !on);
        followPane();
    });
    m_filter = new FilterField(localizedText("DUP_FILTER"), this, heading);
    m_filter->setObjectName(QStringLiteral("duplicates.filter"));
    m_filter->setAcceptDrops(false); // a folder is for the page
    connect(m_filter, &FilterField::settled, &m_controller, &Page::setFilter);
    connect(m_filter, &FilterField::left, this,
            [this] { m_outline->setFocus(Qt::ShortcutFocusReason); });
    row->addWidget(m_filter);
    row->addWidget(m_details);
    return heading;
}

QWidget *DuplicatesResultsPanel::makeNotice() {
    m_notice = new NoticeRow("duplicates.notice", this);
    m_showAll = m_notice->addButton("duplicates.showAll", localizedText("SHOW_ALL"));
    connect(m_showAll, &QPushButton::clicked, this, [this] {
        m_filter->clear();
        m_model.refViewBgColor(0);
        m_outline->setFocus();
    });
    return m_notice;
}

QWidget *DuplicatesResultsPanel::makeEmpty() {
    auto *const page = new QWidget(m_box);
    m_emptyTitle = makePlainLabel("duplicates.empty", page);
    theme::keepFont(m_emptyTitle, 18, true);
    auto *const layout = makeEmptyPart(QStringLiteral("start_done.png"), m_emptyTitle, page);
    m_emptyLimit = makeLimitLink(m_controller, page);
    layout->addWidget(m_emptyLimit, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    return page;
}

QWidget *DuplicatesResultsPanel::makeRemoving() {
    auto *const page = new QWidget(m_box);
    auto *const layout = new QVBoxLayout(page);
    layout->setSpacing(4 * theme::grid);
    layout->addStretch(2);
    m_removingPath = new ElidedLabel(Qt::ElideMiddle, page);
    m_removingPath->setObjectName(QStringLiteral("duplicates.removingPath"));
    m_removingPath->setAlignment(Qt::AlignCenter);
    m_removingPath->setProperty("secondary", true);
    layout->addWidget(m_removingPath, 0, Qt::AlignHCenter);
    m_removingBar = new QProgressBar(page);
    m_removingBar->setTextVisible(false);
    m_removingBar->setAccessibleName(localizedText("Removal"));
    layout->addWidget(m_removingBar, 0, Qt::AlignHCenter);
    stopRemoveBtn = new QPushButton(localizedText("STOP"), page);
    stopRemoveBtn->setObjectName(QStringLiteral("stopRemoveBtn"));
    layout->addWidget(stopRemoveBtn, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    theme::keep(page, [this] {
        m_removingPath->setFixedWidth(theme::height(barWidth));
        m_removingBar->setFixedWidth(theme::height(barWidth));
    });
    connect(stopRemoveBtn, &QPushButton::clicked, &m_controller, &Page::stopRemoveBtnClicked);
    return page;
}

QWidget *DuplicatesResultsPanel::makeBottom() {
    auto *const bottom = new QWidget(this);
    auto *const row = makeBottomRow(bottom);
    m_back = makeBackButton(bottom);
    row->addWidget(m_back);
    m_folder = new QPushButton(localizedText("CHOOSE_FOLDER"), bottom);
    m_folder->setObjectName(QStringLiteral("folderButton"));
    row->addWidget(m_folder);
    lockButton = new PadlockButton(m_controller.padlock(), bottom);
    connect(lockButton, &PadlockButton::unlockWanted, &m_controller, &Page::unlockRigths);
    connect(&m_controller, &Page::unlockAnimation, lockButton, &PadlockButton::blink);
    connect(&m_controller.padlock(), &PadlockController::askingChanged, this,
            &DuplicatesResultsPanel::followControls);
    row->addWidget(lockButton);
    m_sum = makePlainLabel("duplicates.sum", bottom);
    trashFileNumTF = new StyledLabel(bottom);
    trashFileNumTF->setObjectName(QStringLiteral("trashFileNumTF"));
    row->addLayout(makeSumColumn(m_sum, trashFileNumTF), 1);
    m_trashImage = new ImageView(QStringLiteral("user_trash_m.png"), bottom);
    theme::keepSize(m_trashImage, trashSide, trashSide);
    row->addWidget(m_trashImage);
    m_remove = makeRemovingButton("removeButton", localizedText("DUP_REMOVE"), bottom);
    row->addWidget(m_remove);
    connect(m_back, &QPushButton::clicked, &m_controller, &Page::backButtonAction);
    connect(m_folder, &QPushButton::clicked, &m_controller, &Page::clickScanBtn);
    connect(m_remove, &QPushButton::clicked, &m_controller, &Page::removeBtnClicked);
    return bottom;
}

// -- Showing

void DuplicatesResultsPanel::resizeEvent(QResizeEvent *) {
    followPane();
}

// The list comes first where there is little room.
void DuplicatesResultsPanel::followPane() {
    const bool hasList = m_box->currentWidget() == m_outline;
    const int room = width() - m_lists->width() - 9 * theme::grid;
    const int pane = std::clamp(room - theme::height(goodListWidth), theme::height(leastPaneWidth),
                                theme::height(paneWidth));
    m_pane->setFixedWidth(pane);
    m_pane->setVisible(hasList && m_details->isChecked() &&
                       room - pane >= theme::height(leastListWidth));
    showInPane(m_outline->currentIndex());
}

// Of a group the first file that has a row.
void DuplicatesResultsPanel::showInPane(const QModelIndex &row) {
    const bool isGroup = row.data(DuplicateOutlineModel::IsGroupRole).toBool();
    const QModelIndex leaf = isGroup ? m_model.index(0, 0, row.siblingAtColumn(0)) : row;
    m_pane->follow(m_pane->isVisible() ? m_model.nodeOf(leaf) : nullptr);
}

// A rule ticks what has a row.
bool DuplicatesResultsPanel::canTick() const {
    return m_controller.controls().allSelect && m_model.rowCount() > 0;
}

void DuplicatesResultsPanel::showEvent(QShowEvent *) {
    followState();
}

void DuplicatesResultsPanel::followState() {
    const Page::State state = m_controller.state();
    if (state == Page::State::Searching || state == Page::State::Stopping) {
        m_isNew = true;
        m_outcome.clear();
        m_filter->reset();
        return;
    }
    followPage();
    m_tickMenu->setEnabled(canTick());
    if (state == Page::State::Removing) {
        m_going = m_controller.selection().count();
        followRemoval();
    } else if (m_isNew && isVisible() && m_model.rowCount() > 0) {
        m_isNew = false;
        m_outline->expandFirst();
    }
    followHeading();
    followSelection();
}

// The keyboard stays in the page: a widget that goes would hand it on to the toolbar.
void DuplicatesResultsPanel::followPage() {
    const bool isRemoving = m_controller.controls().pathView;
    const bool isEmpty = m_model.rowCount() == 0 && m_controller.filter().isEmpty();
    QWidget *const page = isRemoving ? m_removing : isEmpty ? m_empty : m_outline;
    const bool isDone = m_controller.report().done > 0;
    m_emptyTitle->setText(!m_controller.hasRoot() ? localizedText("DUP_NO_FOLDER")
                          : isDone                ? localizedText("DUP_NONE_LEFT")
                                                  : localizedText("DUP_NONE"));
    m_emptyLimit->setVisible(m_controller.hasRoot() && !isDone);
    m_emptyLimit->setText(limitWords());
    m_filter->setVisible(page == m_outline);
    m_tickMenu->setVisible(page == m_outline);
    m_details->setVisible(page == m_outline);
    if (m_box->currentWidget() == page)
        return followPane();
    const bool hadFocus = holdsFocus(*this);
    m_box->setCurrentWidget(page);
    if (hadFocus)
        (isRemoving ? stopRemoveBtn
         : isEmpty  ? m_folder
                    : static_cast<QWidget *>(m_outline))
            ->setFocus();
    followPane();
}

void DuplicatesResultsPanel::followHeading() {
    const auto &list = m_controller.treeData();
    const auto groups = std::size_t(list ? list->numberOfChildren() : 0);
    // The list is made anew only when a removal has ended.
    if (m_controller.state() == Page::State::Removing) {
        const bool frees = m_controller.report().act != Page::Act::Trash;
        m_wasted->setText(frees ? sizeWords(m_controller.report().bytesFreed) : QString());
        m_wastedWords->setText(frees ? localizedText("DUP_FREED_SO_FAR") : QString());
    } else {
        m_wasted->setText(groups > 0 ? sizeWords(m_model.wastedBytes()) : QString());
        m_wastedWords->setText(groups > 0 ? localizedText("DUP_WASTED", groups) : QString());
    }
    const auto &folder = m_model.oneFolder();
    titleLabel->setText(
        folder ? localizedText("DUP_ONE_FOLDER")
                     .arg(m_controller.title(), nameInSentence(paths::displayFromHome(*folder)))
               : m_controller.title());
    titleLabel->setToolTip(plainToolTip({m_controller.titleTip()}));
}

void DuplicatesResultsPanel::followSelection() {
    const bool hasMessage = !m_controller.selectionMessage().isEmpty();
    const bool hasTicks = !m_controller.selection().isEmpty();
    trashFileNumTF->setStyledText(
        hasMessage ? countLine(m_controller.selection().count(), m_controller.allFilesCount())
                   : CleanStyledText{});
    m_sum->setText(hasTicks ? sizeWords(m_controller.freedBySelection()) : QString());
    m_sum->setVisible(hasMessage && hasTicks);
    const std::size_t hidden = m_controller.hiddenSelectedCount();
    m_notice->tell(hidden > 0 ? localizedText("DUP_HIDDEN_TICKS", hidden) : m_outcome);
    m_showAll->setVisible(hidden > 0);
}

void DuplicatesResultsPanel::followControls() {
    const DuplicateControls &controls = m_controller.controls();
    const std::array<std::pair<QWidget *, bool>, 8> widgets = {{
        {m_remove, controls.remove},
        {m_tickMenu, canTick()},
        {m_folder, controls.folderButton},
        {m_back, controls.outline},
        {m_lists, controls.outline},
        {m_outline, controls.outline},
        {lockButton, controls.outline && !m_controller.padlock().isAsking()},
        {stopRemoveBtn, controls.stopRemove},
    }};
    // What can take the keyboard comes first, and what cannot keep it goes last. Where nothing can
    // take it, the box keeps it: the toolbar, where it would go, starts another page.
    for (const auto &[widget, isEnabled] : widgets) {
        if (isEnabled)
            widget->setEnabled(true);
    }
    if (m_controller.state() != Page::State::Searching &&
        m_controller.state() != Page::State::Stopping)
        followPage();
    for (const auto &[widget, isEnabled] : widgets) {
        if (!isEnabled && holdsFocus(*widget))
            m_box->setFocus();
        widget->setEnabled(isEnabled);
    }
    if (holdsFocus(*m_box) && m_box->currentWidget() == m_outline && m_outline->isEnabled())
        m_outline->setFocus();
}

void DuplicatesResultsPanel::followRemoval() {
    const auto &report = m_controller.report();
    m_removingBar->setRange(0, int(m_going));
    m_removingBar->setValue(int(report.done + report.failed));
    followHeading();
}

} // namespace brightsweep
