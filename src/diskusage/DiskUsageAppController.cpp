#include "diskusage/DiskUsageAppController.h"

#include "core/RecentFolders.h"
#include "core/SettingKeys.h"
#include "core/TaskStopper.h"
#include "core/ThreadWorker.h"
#include "core/UtilityFunction.h"
#include "diskusage/FSNodeStates.h"
#include "diskusage/NodeTreeOperator.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "platform/Platform.h"
#include "volumes/VolumesInfo.h"

#include <algorithm>
#include <map>

namespace brightsweep {

namespace {

// A stop is answered within a second, whatever the file system that is being read does.
constexpr std::chrono::milliseconds stopPatience{700};
constexpr std::chrono::milliseconds alertDelay{1000};

constexpr QLatin1String DSDiskUsageFolders("DSDiskUsageFolders");

const QString volumesImage = QStringLiteral("list_1.png");
const QString homeImage = QStringLiteral("home_disk.png");

// Items go by the path that was chosen, their folder by its canonical one.
Result<RemovalTarget> targetIn(const std::filesystem::path &chosen, const RemovalRoot &root,
                               const std::filesystem::path &item) {
    auto target = UsageRemoval::targetOf({chosen, 0, 0, false}, item);
    if (target)
        target->root = root;
    return target;
}

} // namespace

// One scan. It is its worker's until that has ended, which may be long after the page has gone on
// without it.
struct DiskUsageAppController::Scan {
    Scan(DiskUsageAppController &owner, std::filesystem::path folder, bool chart)
        : page(owner), path(std::move(folder)), isChart(chart) {}

    DiskUsageAppController &page;
    const std::filesystem::path path;
    const bool isChart;
    std::shared_ptr<ThreadWorker> twSearch;
    TaskStopper stopper;
    NodeTreeOperator treeOperator{stopper};
    std::unique_ptr<FSNode> node; // of the list mode, as the root
    Result<RemovalRoot> root = std::errc::no_such_file_or_directory;

    static thread_local const Scan *current;

    void browserFiles(std::nullptr_t);
    void scanList();
    void askBeforehand();
    void browseFilesFinished() { page.browseFilesFinished(*this); }
};

thread_local const DiskUsageAppController::Scan *DiskUsageAppController::Scan::current = nullptr;

DiskUsageAppController::DiskUsageAppController(QObject *parent)
    : DiskUsageAppController(Surroundings{}, parent) {}

DiskUsageAppController::DiskUsageAppController(Surroundings surroundings, QObject *parent)
    : QObject(parent),
      m_surroundings(surroundings),
      m_diskView(*this, std::move(surroundings)),
      m_listTicks([this](const std::filesystem::path &item) { return listTarget(item); }) {
    if (!m_surroundings.clock)
        m_surroundings.clock = &Clock::eventLoop();
    bind();
}

DiskUsageAppController::~DiskUsageAppController() {
    m_surroundings.clock->cancel(m_giveUp);
    m_surroundings.clock->cancel(m_alert);
    NotificationCenter::defaultCenter().removeObserver(this);
    if (m_scan)
        giveUp();
    for (const auto &scan : m_leftBehind)
        scan->twSearch->abandon();
}

void DiskUsageAppController::bind() {
    NotificationCenter &center = NotificationCenter::defaultCenter();
    // On the scan's thread. The command line's scans post the same, but never in one process with
    // this page.
    center.addObserver(
        this, QStringLiteral("GetDirTotalLevel"), [this](const Notification &notification) {
            const auto levels = notification.userInfo[QStringLiteral("DirLevels")].toLongLong();
            m_calls.post(
                [this, scan = Scan::current, levels] { getDirLevels4PieTree(scan, levels); });
        });
    center.addObserver(this, QStringLiteral("NeedUpdateProgress"), [this](const Notification &) {
        m_calls.post([this, scan = Scan::current] { finishADirLevel(scan); });
    });
    center.addObserver(
        this, QStringLiteral("refDiskusageView"), [this](const Notification &notification) {
            refDiskusageView(
                paths::fromVariant(notification.userInfo.value(QStringLiteral("path"))));
        });
    connect(&m_listTicks, &UsageTicks::asked, this, &DiskUsageAppController::showAlertView);
    connect(&m_listTicks, &UsageTicks::changed, this, &DiskUsageAppController::boxesChanged);
    connect(&m_listTicks, &UsageTicks::refused, this,
            [this](const std::filesystem::path &path, std::error_code) {
                if (FSNode *const node = nodeOf(path))
                    setChildrenState(*node, NodeOff);
                Q_EMIT boxesChanged();
            });
    connect(&m_listTicks, &UsageTicks::itemGone, this, [this](const CleanFileInfo &item) {
        FSNode *const node = nodeOf(item.path);
        if (!node)
            return;
        Q_EMIT rowsWillChange();
        removeNode(*node);
        Q_EMIT rowsChanged();
    });
    connect(&m_listTicks, &UsageTicks::removalRefused, this, [this] { Q_EMIT sheetEnded(); });
    connect(&m_listTicks, &UsageTicks::removalEnded, this,
            &DiskUsageAppController::listRemovalEnded);
}

void DiskUsageAppController::show(State state, const char *panel) {
    constexpr int parts[] = {0, 1, 1, 2};
    m_state = state;
    m_view4DiskUsage = parts[int(state)];
    Q_EMIT stateChanged();
    if (panel)
        Q_EMIT displayPanel(QLatin1String(panel), true);
}

void DiskUsageAppController::switch2QcAnimation(bool scanning) {
    if (scanning)
        show(State::Scanning, "QC_DiskUsage");
    else
        show(State::Results, "DATA_DiskUsage");
}

// -- Choosing a folder

std::vector<std::filesystem::path> DiskUsageAppController::lastFolders() const {
    return recentFolders(DSDiskUsageFolders);
}

void DiskUsageAppController::getLocalDiskInfo() {
    m_leftCellArr.clear();
    m_leftCellArr.push_back(
        {paths::display(paths::lastComponent(homeFolder())), homeFolder(), homeImage, 0, 0, true});
    VolumesInfo volumes;
    for (const DSVolumeInfo &volume : volumes.getAllVolsInfo()) {
        const QString image = volume.volIcon.isEmpty() ? volumesImage : volume.volIcon;
        m_leftCellArr.push_back({volume.volumeName, volume.volRootDir, image, volume.nTotalSize,
                                 volume.nFreeSize, false});
    }
    Q_EMIT cellsChanged();
}

void DiskUsageAppController::clickIconAction() {
    if (m_bSearchFinished)
        Q_EMIT askForFolder(m_scanPathStr.empty() ? std::filesystem::path("/") : m_scanPathStr);
}

void DiskUsageAppController::viewDragAction(const std::filesystem::path &path) {
    if (!m_bSearchFinished)
        return;
    if (path.empty()) {
        Q_EMIT alert(QT_TRID_NOOP("Please select some path to scan."));
        return;
    }
    begin(path);
}

bool DiskUsageAppController::displayMode() const {
    return UserDefaults::standardUserDefaults().boolForKey(DSDiskUsageShowStyle);
}

void DiskUsageAppController::changeDisplayMode(bool chart) {
    if (chart == displayMode())
        return;
    UserDefaults::standardUserDefaults().setObject(DSDiskUsageShowStyle, chart);
    Q_EMIT displayModeChanged();
}

// -- The scan

void DiskUsageAppController::begin(const std::filesystem::path &path) {
    m_scanPathStr = paths::withoutTrailingSlashes(path.native());
    m_isChart = displayMode();
    m_bSearchFinished = false;
    m_bStopTask = false;
    m_rootDirLevels = 0;
    m_levelsDone = 0;
    m_listTicks.clear();
    m_diskView.scanBegins();
    switch2QcAnimation(true);
    Q_EMIT progressChanged();
    m_scan = std::make_shared<Scan>(*this, m_scanPathStr, m_isChart);
    m_scan->twSearch = ThreadWorker::workOn(m_scan.get(), &Scan::browserFiles, nullptr,
                                            &Scan::browseFilesFinished);
}

void DiskUsageAppController::Scan::browserFiles(std::nullptr_t) {
    current = this;
    if (isChart)
        page.m_diskView.drawPieTree(path);
    else
        scanList();
    current = nullptr;
}

// The first level one after the other, by name, for the progress; what is below each of them on
// several directories at once.
void DiskUsageAppController::Scan::scanList() {
    FileOperations &files = *Platform::current().files;
    node = std::make_unique<FSNode>(path, true);
    root = files.rememberRoot(path);
    std::vector<std::pair<std::string, EntryType>> names;
    const auto directory = files.openDirectory(path);
    if (!directory) {
        NSLog("%@-%@", path, directory.error());
        treeOperator.noteUnread(path);
    }
    DirectoryBlock block;
    while (directory && !block.atEnd()) {
        if (files.readBlock(*directory, block, WantedAttributes::None)) {
            treeOperator.noteUnread(path);
            break;
        }
        for (const DirectoryEntry &entry : block.entries())
            names.emplace_back(entry.nameView(), entry.type);
    }
    std::sort(names.begin(), names.end());
    page.m_calls.post([&page = page, scan = this, count = std::int64_t(names.size())] {
        page.getDirLevels4PieTree(scan, count);
    });
    const std::uint64_t limit = getLimitSize();
    FSNode &top = *node;
    for (const auto &[name, type] : names) {
        if (stopper.getStopFlags())
            break;
        const auto place = paths::join(path, name);
        if (type == EntryType::Directory) {
            FSNode &child = top.addChild(name, true, 0);
            child.size = treeOperator.getFistListTree(place, child, limit);
            top.size += child.size;
            if (child.size < limit)
                top.children.pop_back();
        } else {
            top.size += treeOperator.getFistListTree(place, top, limit);
        }
        page.m_calls.post([&page = page, scan = this] { page.finishADirLevel(scan); });
    }
    top.decendingSort();
    askBeforehand();
}

// Level by level, the largest of each first.
void DiskUsageAppController::Scan::askBeforehand() {
    if (!root)
        return;
    OpenItem previous;
    std::vector<FSNode *> nodes{node.get()};
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (stopper.getStopFlags())
            return;
        if (const auto target = i > 0 ? targetIn(path, *root, nodes[i]->_path())
                                      : Result<RemovalTarget>(std::errc::invalid_argument))
            nodes[i]->refusal = UsageRemoval::refusalBeforehand(*target, previous);
        for (const auto &child : nodes[i]->children) {
            if (nodes.size() > UsageRemoval::mostAskedBeforehand)
                break;
            nodes.push_back(child.get());
        }
    }
}

void DiskUsageAppController::getDirLevels4PieTree(const Scan *scan, std::int64_t levels) {
    if (scan != m_scan.get())
        return;
    m_rootDirLevels = levels;
    m_levelsDone = 0;
    Q_EMIT progressChanged();
}

void DiskUsageAppController::finishADirLevel(const Scan *scan) {
    if (scan != m_scan.get())
        return;
    ++m_levelsDone;
    Q_EMIT progressChanged();
}

void DiskUsageAppController::stopBtnClick() {
    if (m_state != State::Scanning)
        return;
    m_bStopTask = true;
    if (m_isChart)
        m_diskView.stopScanTask();
    else
        m_scan->stopper.setStopFlags(true);
    show(State::Stopping, nullptr);
    // A scan that waits for a file system cannot be ended; the page goes on without it.
    m_giveUp = m_surroundings.clock->callAfter(stopPatience, [this] {
        m_giveUp = 0;
        NSLog("The scan of %@ waits for its file system", m_scanPathStr);
        giveUp();
        show(State::Start, "disk_usage");
    });
}

void DiskUsageAppController::giveUp() {
    m_scan->stopper.setStopFlags(true);
    if (m_scan->isChart)
        m_diskView.abandonScan();
    m_leftBehind.push_back(std::exchange(m_scan, nullptr));
    m_bSearchFinished = true;
}

std::filesystem::path DiskUsageAppController::leftBehind() const {
    return m_leftBehind.empty() ? std::filesystem::path() : m_leftBehind.back()->path;
}

void DiskUsageAppController::browseFilesFinished(Scan &ended) {
    if (&ended != m_scan.get()) {
        std::erase_if(m_leftBehind, [&ended](const auto &scan) { return scan.get() == &ended; });
        Q_EMIT stateChanged();
        return;
    }
    m_surroundings.clock->cancel(std::exchange(m_giveUp, 0));
    const std::shared_ptr<Scan> scan = std::exchange(m_scan, nullptr);
    m_bSearchFinished = true;
    if (m_bStopTask) {
        show(State::Start, "disk_usage");
        return;
    }
    rememberFolder(DSDiskUsageFolders, m_scanPathStr);
    if (m_isChart) {
        m_diskView.scanEnded();
        switch2QcAnimation(false);
        return;
    }
    if (scan->node->children.empty()) {
        show(State::Start, "disk_usage");
        Q_EMIT alert(QT_TRID_NOOP("No items found in selected folder. Please try another one."));
        return;
    }
    Q_EMIT rowsWillChange();
    m_rootNode = std::move(scan->node);
    m_listUnread = scan->treeOperator.unread();
    {
        const std::lock_guard lock(m_mutex);
        m_listRoot = std::move(scan->root);
        m_listPath = m_rootNode->_path();
    }
    Q_EMIT rowsChanged();
    switch2QcAnimation(false);
}

void DiskUsageAppController::refDiskusageView(const std::filesystem::path &path) {
    m_diskView.updateOpenGLView(path.empty() ? m_scanPathStr : path);
}

void DiskUsageAppController::clickBackBtn() {
    m_listTicks.clear();
    show(State::Start, "disk_usage");
}

// -- The list mode

Result<RemovalTarget> DiskUsageAppController::listTarget(const std::filesystem::path &item) {
    const std::lock_guard lock(m_mutex);
    if (!m_listRoot)
        return m_listRoot.error();
    return targetIn(m_listPath, *m_listRoot, item);
}

FSNode *DiskUsageAppController::nodeOf(const std::filesystem::path &path) {
    if (!m_rootNode)
        return nullptr;
    const std::string top = paths::withTrailingSlash(m_rootNode->_path().native());
    if (!path.native().starts_with(top))
        return nullptr;
    FSNode *node = m_rootNode.get();
    for (const auto &name : std::filesystem::path(path.native().substr(top.size()))) {
        const auto child =
            std::find_if(node->children.begin(), node->children.end(), [&name](const auto &each) {
                return each->displayName() == name.native();
            });
        if (child == node->children.end())
            return nullptr;
        node = child->get();
    }
    return node;
}

// The ticks follow the boxes: what is ticked without a ticked folder above it.
void DiskUsageAppController::setNodeTicked(FSNode &node, bool ticked) {
    if (m_listTicks.isRemoving() || &node == m_rootNode.get())
        return;
    if (ticked && node.refusal) {
        Q_EMIT refused(node._path(), node.refusal);
        return;
    }
    setChildrenState(node, ticked ? NodeOn : NodeOff);
    const auto wanted = prePareDelData(*m_rootNode);
    std::map<std::string, const FSNode *> wantedPaths;
    for (const FSNode *each : wanted)
        wantedPaths.emplace(each->_path().native(), each);
    for (const CleanFileInfo &item : m_listTicks.allSelectArr()) {
        if (!wantedPaths.contains(item.path.native()))
            m_listTicks.untick(item.path);
    }
    for (const auto &[path, each] : wantedPaths) {
        CleanFileInfo item({}, each->displayName(), path,
                           UtilityFunction::convertVolSpace(each->size), each->size);
        item.isDirectory = each->_isDirectory;
        m_listTicks.tick(item);
    }
    Q_EMIT boxesChanged();
}

void DiskUsageAppController::removeBtnClick() {
    if (m_surroundings.licenceGate())
        m_listTicks.ask();
}

void DiskUsageAppController::listRemovalEnded() {
    // Ticks go with every removal, and the boxes with them.
    if (m_rootNode) {
        for (const auto &child : m_rootNode->children)
            setChildrenState(*child, NodeOff);
    }
    Q_EMIT boxesChanged();
    Q_EMIT sheetEnded();
    Q_EMIT removalEnded();
    if (m_listTicks.report().failed > 0) {
        m_alert = m_surroundings.clock->callAfter(alertDelay, [this] {
            m_alert = 0;
            Q_EMIT canNotRemoveSome();
        });
    }
}

} // namespace brightsweep
