#include "duplicates/SameFileDeleteViewController.h"

#include "core/SettingKeys.h"
#include "core/SizeLimit.h"
#include "core/Texts.h"
#include "core/ThreadWorker.h"
#include "core/UtilityFunction.h"
#include "duplicates/DuplicateNodes.h"
#include "duplicates/FreedBytes.h"
#include "duplicates/HardLinks.h"
#include "duplicates/RecentFolders.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "removal/RemovalRun.h"
#include "results/FileClasses.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace brightsweep {

const std::array<DuplicateListRow, 7> duplicateLists = {{
    {QT_TRID_NOOP("All"), 0},
    {QT_TRID_NOOP("Documents"), 1},
    {QT_TRID_NOOP("Videos"), 3},
    {QT_TRID_NOOP("Music"), 2},
    {QT_TRID_NOOP("Archives"), 4},
    {QT_TRID_NOOP("Pictures"), 5},
    {QT_TRID_NOOP("Others"), 6},
}};

namespace {

constexpr std::chrono::milliseconds pollInterval(100);
constexpr int longestTitle = 25;
constexpr std::uint32_t leastProgress = 6;
constexpr char startPanel[] = "duplicates_file";

// For the whole run of the program: the display never falls, also from one search to the next.
std::uint32_t highestProgress = 0;

int rowOfType(std::int32_t fileType) {
    for (std::size_t row = 1; row < duplicateLists.size(); ++row) {
        if (duplicateLists[row].fileType == fileType)
            return int(row);
    }
    return 0;
}

} // namespace

SameFileDeleteViewController::SameFileDeleteViewController(QObject *parent)
    : SameFileDeleteViewController(Surroundings{}, parent) {}

SameFileDeleteViewController::SameFileDeleteViewController(Surroundings surroundings,
                                                           QObject *parent)
    : QObject(parent), m_surroundings(std::move(surroundings)) {
    if (!m_surroundings.clock)
        m_surroundings.clock = &Clock::eventLoop();
    // A row that was clicked. What a worker posts is not for this page.
    NotificationCenter::defaultCenter().addObserver(
        this, QStringLiteral("refViewBgColor"), [this](const Notification &notification) {
            refViewBgColor(notification.userInfo.value(QStringLiteral("rowNum")).toInt());
        });
}

SameFileDeleteViewController::~SameFileDeleteViewController() {
    NotificationCenter::defaultCenter().removeObserver(this);
    m_surroundings.clock->cancel(m_poll);
    m_bStopDelTask = true;
    if (m_run)
        m_run->stop();
    if (m_duplicateOpt)
        m_duplicateOpt->stopSearch();
    m_stopsBlocks = true;
    for (const auto &worker :
         {m_twDuplicateSearch, m_twRemoveDupFiles, m_sharingWorker, m_blocksWorker}) {
        if (worker) {
            worker->markAsCancelled();
            worker->abandon();
        }
    }
}

bool SameFileDeleteViewController::refuseUnless(bool allowed, const char *what) const {
    if (!allowed)
        NSLog("The duplicates page refuses %s in state %d", what, int(m_state));
    return !allowed;
}

void SameFileDeleteViewController::setState(State state) {
    m_state = state;
    Q_EMIT stateChanged();
}

void SameFileDeleteViewController::setControls(const DuplicateControls &controls) {
    if (controls == m_controls)
        return;
    m_controls = controls;
    Q_EMIT controlsChanged();
}

// -- Title

// The text of the title is what a search searches: deliberately so, also where it is a sentence.
void SameFileDeleteViewController::updatePathString(std::string text) {
    m_searchPath = std::move(text);
    Q_EMIT titleChanged();
}

QString SameFileDeleteViewController::titleTip() const {
    return paths::display(m_searchPath);
}

QString SameFileDeleteViewController::title() const {
    const QString full = titleTip();
    return full.size() > longestTitle ? full.left(longestTitle) + QStringLiteral("...") : full;
}

std::uint64_t SameFileDeleteViewController::countLeaves() const {
    std::uint64_t count = 0;
    if (const auto &list = treeData()) {
        for (std::int32_t i = 0; i < list->numberOfChildren(); ++i)
            count += std::uint64_t(list->childAtIndex(i)->numberOfChildren());
    }
    return count;
}

void SameFileDeleteViewController::renewTitle() {
    m_frashAllFilesCount = countLeaves();
    const auto root = m_root ? paths::display(paths::lastComponent(m_root->searched)) : QString();
    const QString name =
        m_remberWitchSelect == 0
            ? nameInSentence(root)
            : localizedText(duplicateLists[std::size_t(m_remberWitchSelect)].title);
    updatePathString(localizedText("%lu files in %@.")
                         .arg(readersNumber(m_frashAllFilesCount), name)
                         .toStdString());
}

std::filesystem::path SameFileDeleteViewController::searchedFolder() const {
    return m_root ? m_root->searched : std::filesystem::path();
}

QString SameFileDeleteViewController::sizeOfRow(int row) const {
    const std::uint64_t bytes = bytesOfRow(row);
    return bytes == 0 ? QStringLiteral("0.0KB") : UtilityFunction::convertVolSpace(bytes);
}

std::uint64_t SameFileDeleteViewController::bytesOfRow(int row) const {
    if (row > 0)
        return m_sizes[std::size_t(duplicateLists[std::size_t(row)].fileType)];
    std::uint64_t sum = 0;
    for (std::size_t type = 1; type < m_sizes.size(); ++type)
        sum += m_sizes[type];
    return sum;
}

// -- Search

void SameFileDeleteViewController::clickScanBtn() {
    if (refuseUnless(canBegin(), "a folder"))
        return;
    Q_EMIT askForFolder(m_searchPath);
}

void SameFileDeleteViewController::viewDragAction(const std::filesystem::path &folder) {
    if (refuseUnless(canBegin(), "a folder")) {
        Q_EMIT removalRefused(localizedText("DUP_BUSY"));
        return;
    }
    updatePathString(folder.native());
    searchBtnClicked();
    switch2QcAnimation(true);
    Q_EMIT baseNumberSetPrograss(5);
}

void SameFileDeleteViewController::switch2QcAnimation(bool searching) {
    m_view4Duplicates = searching ? 1 : 2;
    if (searching)
        Q_EMIT displayPanel(QStringLiteral("QC_Duplicates"), true);
    else if (m_surroundings.selectedItem() == QLatin1String(startPanel))
        Q_EMIT displayPanel(QStringLiteral("DATA_Duplicates"), true);
}

void SameFileDeleteViewController::resetOulineView() {
    forgetBlocks();
    m_trees = {};
    m_sizes = {};
    m_failures.clear();
    m_lastColumn.clear();
    m_sortDescending = false;
    m_askedAbout.reset();
    m_filter.clear();
    Q_EMIT listChanged();
    Q_EMIT sizesChanged();
}

void SameFileDeleteViewController::searchBtnClicked() {
    if (refuseUnless(canBegin(), "a search"))
        return;
    m_bSearchFinished = false;
    m_bIsStopScan = false;
    DuplicateControls controls;
    controls.folderButton = false;
    controls.pathView = true;
    setControls(controls);
    Q_EMIT baseNumberSetPrograss(5);
    resetOulineView();
    m_report = {};
    m_selection.clear();
    m_hasTicked = false;
    Q_EMIT selectionChanged();
    m_duplicateOpt = std::make_shared<DuplicateFilesOpt>();
    setState(State::Searching);
    m_twDuplicateSearch =
        ThreadWorker::workOn(this, &SameFileDeleteViewController::searchDuplicateFiles,
                             m_searchPath, &SameFileDeleteViewController::searchFinished);
    m_poll = m_surroundings.clock->callAfter(pollInterval, [this] { getPathForSreachDuplicate(); });
}

void SameFileDeleteViewController::searchDuplicateFiles(std::string path) {
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    m_duplicateOpt->setSearchOption(
        {defaults.boolForKey(DSHidenDuplication), defaults.boolForKey(DSSystemDuplication)});
    m_duplicateOpt->beginSearchAtPath(path, searchLimit());
}

std::uint64_t SameFileDeleteViewController::searchLimit() {
    return storedLimitInBytes(DSDuplicationLimit, DSDuplicatesUnit);
}

void SameFileDeleteViewController::getPathForSreachDuplicate() {
    m_poll = m_surroundings.clock->callAfter(pollInterval, [this] { getPathForSreachDuplicate(); });
    Q_EMIT pathShown(m_duplicateOpt->getCurrentSearchFile());
    getPrograss();
}

void SameFileDeleteViewController::getPrograss() {
    const std::uint32_t progress = m_duplicateOpt->getProgress();
    if (progress < leastProgress || progress < highestProgress)
        return;
    highestProgress = progress;
    Q_EMIT baseNumberSetPrograss(int(progress));
}

void SameFileDeleteViewController::stopScanBtnClicked() {
    if (refuseUnless(m_state == State::Searching, "a stop"))
        return;
    m_bIsStopScan = true;
    DuplicateControls controls = m_controls;
    controls.stopScanText = true;
    setControls(controls);
    setState(State::Stopping);
    m_duplicateOpt->stopSearch();
}

void SameFileDeleteViewController::searchFinished() {
    m_twDuplicateSearch.reset();
    m_surroundings.clock->cancel(std::exchange(m_poll, 0));
    m_root = m_duplicateOpt->searchRoot();
    m_remberWitchSelect = 0;
    std::shared_ptr<SimpleTreeNode> tree;
    if (m_duplicateOpt->getDuplicateFiles(tree)) {
        m_trees[0] = std::move(tree);
        constructSubtrees();
    }
    if (m_root && !m_bIsStopScan)
        rememberFolder(m_root->searched);
    renewTitle();
    delayBtnChangeStateTime();
    if (!m_bIsStopScan)
        beginBlocks();
}

// -- Shared blocks

// On a file system where files can share blocks, what a removal frees is known only after a look.
// One look at a time: an earlier one may hang in a file server.
void SameFileDeleteViewController::beginBlocks() {
    m_wantsBlocks = m_blocksWorker != nullptr;
    if (m_wantsBlocks || !m_trees[0])
        return;
    m_stopsBlocks = false;
    for (std::int32_t i = 0; i < m_trees[0]->numberOfChildren(); ++i) {
        const auto group = m_trees[0]->childAtIndex(i);
        for (std::int32_t leaf = 0; leaf < group->numberOfChildren(); ++leaf)
            m_lookedAt.push_back(group->childAtIndex(leaf));
    }
    m_blocksWorker = ThreadWorker::workOn(this, &SameFileDeleteViewController::lookAtBlocks,
                                          nullptr, &SameFileDeleteViewController::blocksLookedAt);
}

void SameFileDeleteViewController::forgetBlocks() {
    m_stopsBlocks = true;
    m_wantsBlocks = false;
}

void SameFileDeleteViewController::lookAtBlocks(std::nullptr_t) {
    m_freed = lookForSharedBlocks(m_lookedAt, m_stopsBlocks);
}

void SameFileDeleteViewController::blocksLookedAt() {
    m_blocksWorker.reset();
    const TreeNode::List leaves = std::exchange(m_lookedAt, {});
    const auto freed = std::exchange(m_freed, {});
    if (!m_stopsBlocks && !freed.empty()) {
        for (std::size_t i = 0; i < freed.size(); ++i)
            leafOf(*leaves[i]).setFreed(freed[i]);
        Q_EMIT listChanged();
    }
    if (m_wantsBlocks)
        beginBlocks();
}

void SameFileDeleteViewController::constructSubtrees() {
    for (std::size_t row = 1; row < m_trees.size(); ++row)
        m_trees[row] = SimpleTreeNode::nodeWithData(SimpleNodeData::groupDataWithName("Root"));
    for (std::int32_t i = 0; i < m_trees[0]->numberOfChildren(); ++i) {
        const auto group = m_trees[0]->childAtIndex(i);
        DuplicateSelection::refreshGroup(*group);
        countNames(*group);
        SimpleNodeData &data = dataOf(*group);
        const std::int32_t type = fileTypeOfExtension(data.extendName());
        if (type == 0 || data.Mark())
            continue;
        data.setMark(true);
        data.setFileType(type);
        const auto &list = m_trees[std::size_t(rowOfType(type))];
        list->insertChild(group, list->numberOfChildren());
        m_sizes[std::size_t(type)] += data.fileSize();
    }
}

void SameFileDeleteViewController::delayBtnChangeStateTime() {
    m_bSearchFinished = true;
    DuplicateControls controls;
    controls.outline = true;
    controls.allSelect = treeData() && treeData()->numberOfChildren() > 0;
    setControls(controls);
    Q_EMIT sizesChanged();
    Q_EMIT listChanged();
    Q_EMIT pathShown(" ");
    if (!std::exchange(m_duplicateScaned, true))
        NotificationCenter::defaultCenter().post(QStringLiteral("changeViewActionForDuplicate"),
                                                 this);
    if (m_bIsStopScan) {
        m_view4Duplicates = 0;
        setState(State::Start);
        Q_EMIT displayPanel(QLatin1String(startPanel), true);
        return;
    }
    setState(State::Results);
    switch2QcAnimation(false);
}

// -- Lists

void SameFileDeleteViewController::refViewBgColor(int row) {
    if (row < 0 || row >= int(m_trees.size()) || m_state == State::Searching ||
        m_state == State::Stopping)
        return;
    m_remberWitchSelect = row;
    sortList();
    ticksChanged();
    Q_EMIT listChanged();
}

// The order that was asked for is that of every list that is shown then.
bool SameFileDeleteViewController::sortList() {
    struct Column {
        QLatin1String name;
        void (TreeNode::*ascending)();
        void (TreeNode::*descending)();
    };
    static constexpr std::array columns = {
        Column{QLatin1String("NameColumn"), &TreeNode::acendingSortName,
               &TreeNode::decendingSortName},
        Column{QLatin1String("FileSize"), &TreeNode::acendingSortSize,
               &TreeNode::decendingSortSize},
        Column{QLatin1String("ModifyDate"), &TreeNode::acendingSortDate,
               &TreeNode::decendingSortDate},
    };
    for (const Column &each : columns) {
        if (each.name != m_lastColumn || !treeData())
            continue;
        (treeData().get()->*(m_sortDescending ? each.descending : each.ascending))();
        return true;
    }
    return false;
}

void SameFileDeleteViewController::didClickTableColumn(const QString &column) {
    if (refuseUnless(m_state == State::Results, "an order"))
        return;
    m_sortDescending = column == m_lastColumn && !m_sortDescending;
    m_lastColumn = column;
    if (sortList())
        Q_EMIT listChanged();
}

void SameFileDeleteViewController::setFilter(const QString &text) {
    m_filter = text;
    Q_EMIT listChanged();
}

bool SameFileDeleteViewController::isShown(const TreeNode &leaf) const {
    return m_filter.isEmpty() ||
           paths::text(dataOf(leaf).name()).contains(m_filter, Qt::CaseInsensitive);
}

// -- Other actions

void SameFileDeleteViewController::unlockRigths(bool open) {
    if (m_bSearchFinished)
        m_padlock.unlockRigths(open);
}

void SameFileDeleteViewController::shouldSelectItem(const TreeNode &node) {
    m_openItemPath = dataOf(node).isLeaf() ? dataOf(node).name() : std::string();
}

void SameFileDeleteViewController::openFinderBtnClicked() {
    if (!m_openItemPath.empty())
        Platform::current().workspace->open(m_openItemPath);
}

void SameFileDeleteViewController::RevealInFinderBtnClicked() {
    if (!m_openItemPath.empty())
        Platform::current().workspace->reveal(m_openItemPath);
}

void SameFileDeleteViewController::backButtonAction() {
    if (refuseUnless(m_state == State::Results, "the way back"))
        return;
    NotificationCenter::defaultCenter().post(QStringLiteral("refViewBgColor"), this,
                                             {{QStringLiteral("rowNum"), 0}});
    m_hasTicked = false;
    m_view4Duplicates = 0;
    setState(State::Start);
    Q_EMIT displayPanel(QLatin1String(startPanel), true);
}

} // namespace brightsweep
