#include "diskusage/RingChart.h"

#include "core/UtilityFunction.h"
#include "diskusage/ChartCanvas.h"
#include "diskusage/UsageRemoval.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"
#include "removal/NvAuthorization.h"
#include "results/FileClasses.h"

#include <algorithm>
#include <unordered_map>

namespace brightsweep {

namespace {

// The chart reaches so far from its centre along the short side of the view.
constexpr float chartReach = 3;
constexpr double chartDepth = -0.9;
constexpr int centreLevel = 1;
constexpr int lastLevel = 5;

struct HalfExtent {
    double x;
    double y;
};

HalfExtent halfExtent(int width, int height) {
    if (width > height)
        return {chartReach * (float(width) / float(height)), chartReach};
    return {chartReach, chartReach * (float(height) / float(width))};
}

std::uint64_t sizeOf(const AllDir &node) {
    return std::uint64_t(node.iSize.load(std::memory_order_relaxed));
}

struct DirectoryBytes {
    std::uint64_t size = 0;
    std::uint64_t stored = 0;
};

FolderListing::Pointer
listingOf(const std::filesystem::path &folder,
          const std::unordered_map<std::string, DirectoryBytes> &directories) {
    const auto listing = std::make_shared<FolderListing>(folder);
    FileOperations &files = *Platform::current().files;
    const auto directory = files.openDirectory(folder);
    DirectoryBlock block;
    while (directory && !block.atEnd()) {
        if (files.readBlock(*directory, block, WantedAttributes::NonDirectories))
            break;
        for (const DirectoryEntry &entry : block.entries()) {
            const bool isDirectory = entry.type == EntryType::Directory;
            DirectoryBytes bytes{entry.size, entry.stored};
            if (isDirectory) {
                const auto known = directories.find(std::string(entry.nameView()));
                bytes = known == directories.end() ? DirectoryBytes{} : known->second;
            }
            listing->add(entry.nameView(), bytes.size, bytes.stored, isDirectory);
        }
    }
    listing->sort();
    return listing;
}

} // namespace

RingChart::RingChart(QObject *parent) : QObject(parent) {}

RingChart::~RingChart() {
    if (icAllDir)
        icAllDir->FreeAll();
}

// Whatever waits for the file system may come back after the scan was abandoned.
void RingChart::contructPieTree(const std::filesystem::path &path) {
    std::uint64_t scan = 0;
    {
        // Before the new tree can be seen: a stop that comes from then on is meant for this scan.
        const std::lock_guard lock(m_mutex);
        AllDir::bStopScan = false;
        m_scanning = true;
        scan = ++m_scan;
    }
    auto scannedFolder = Platform::current().files->rememberRoot(path);
    W32AllDir *const root = W32AllDir::newRoot();
    W32AllDir *before = root;
    {
        const std::lock_guard lock(m_mutex);
        if (scan == m_scan) {
            letGoLocked();
            m_leftOut.clear();
            m_scannedFolder = std::move(scannedFolder);
            before = std::exchange(icAllDir, root);
            icCurrentPtr = root;
            icFoundPtr = nullptr;
            m_isGrowing = true;
        }
    }
    if (before)
        before->FreeAll();
    if (before == root)
        return;
    NSLog("Construct pie tree for: %@", path);
    const std::string folder = paths::withTrailingSlash(path.native());
    const auto size = std::uint64_t(root->ListAllDir(folder, true));
    auto unread = unreadIn(*root);
    {
        std::unique_lock lock(m_mutex);
        if (scan != m_scan) {
            lock.unlock();
            root->FreeAll();
            return;
        }
        m_isGrowing = false;
        m_scanning = false;
        m_unread = std::move(unread);
    }
    updateLeftView(folder, size);
}

// A tree that is still being filled belongs to the thread that fills it.
void RingChart::letGoLocked() {
    if (!std::exchange(m_isGrowing, false))
        return;
    icAllDir->abandonScan();
    icAllDir = icCurrentPtr = icFoundPtr = nullptr;
    m_leftOut.clear();
    m_scannedFolder = std::errc::no_such_file_or_directory;
}

void RingChart::abandonScan() {
    {
        const std::lock_guard lock(m_mutex);
        ++m_scan;
        m_scanning = false;
        letGoLocked();
    }
    Q_EMIT redrawNeeded();
}

void RingChart::cancelTask() {
    const std::lock_guard lock(m_mutex);
    if (icCurrentPtr)
        AllDir::bStopScan = true;
}

// -- Drawing

void RingChart::drawRect(int width, int height) {
    ChartCanvas *const canvas = ChartCanvas::current();
    if (!canvas || width <= 0 || height <= 0)
        return;
    setProjection(width, height);
    drawScene();
    canvas->flush();
}

void RingChart::setProjection(int width, int height) {
    ChartCanvas &canvas = *ChartCanvas::current();
    canvas.viewport(0, 0, width, height);
    canvas.matrixMode(ChartCanvas::MatrixMode::Projection);
    canvas.loadIdentity();
    const HalfExtent half = halfExtent(width, height);
    canvas.ortho2D(-half.x, half.x, -half.y, half.y);
    canvas.matrixMode(ChartCanvas::MatrixMode::ModelView);
}

void RingChart::drawScene() {
    ChartCanvas &canvas = *ChartCanvas::current();
    canvas.clearColor(0, 0, 0, 0);
    canvas.clear();
    canvas.pushMatrix();
    canvas.translated(0, 0, chartDepth);
    const std::lock_guard lock(m_mutex);
    prepareViewLocked();
    if (icCurrentPtr)
        icCurrentPtr->Paint(360.0, 0.0, centreLevel, 0, false);
    canvas.popMatrix();
    if (!icCurrentPtr)
        return;
    const std::string path = icCurrentPtr->szPath();
    if (icFoundPtr) {
        icFoundPtr->Repaint(true, "", "");
        icFoundPtr->StatusMessage(path.c_str(), icCurrentPtr == icAllDir ? " " : "UP");
    } else {
        icCurrentPtr->StatusMessage(path.c_str(), " ");
    }
}

QPointF RingChart::chartPoint(QPointF point, int width, int height) {
    if (width <= 0 || height <= 0)
        return {};
    const HalfExtent half = halfExtent(width, height);
    return {(2 * point.x() / width - 1) * half.x, (2 * point.y() / height - 1) * half.y};
}

// -- The mouse

void RingChart::mouseMoved(QPointF place, QPointF screen) {
    const auto [radius, angle] = polar(place);
    QVariantMap bubble;
    bool hit = false;
    {
        const std::lock_guard lock(m_mutex);
        AllDir *found = nullptr;
        hit = icCurrentPtr && icCurrentPtr->Find(radius, angle, &found) > 0;
        icFoundPtr = static_cast<W32AllDir *>(hit ? found : nullptr);
        if (hit && !icFoundPtr->bHidden) {
            bubble = {{QStringLiteral("CurrentDir"),
                       paths::display(paths::lastComponent(icFoundPtr->szPath()))},
                      {QStringLiteral("DirSize"),
                       UtilityFunction::convertVolSpace(shownSizeLocked(*icFoundPtr))},
                      {QStringLiteral("MouseXPos"), float(screen.x())},
                      {QStringLiteral("MouseYPos"), float(screen.y())}};
        }
    }
    if (!bubble.isEmpty()) {
        NotificationCenter::defaultCenter().post(QStringLiteral("ShowBubble"), this, bubble);
        bShowBubble = true;
    } else if (!hit && bShowBubble) {
        NotificationCenter::defaultCenter().post(QStringLiteral("HideBubble"), this);
        bShowBubble = false;
    }
    Q_EMIT redrawNeeded();
}

void RingChart::mouseDown(QPointF place, QPointF screen, int clickCount) {
    mouseMoved(place, screen);
    if (clickCount == 0)
        return;
    std::string path;
    std::uint64_t size = 0;
    {
        const std::lock_guard lock(m_mutex);
        if (!icCurrentPtr)
            return;
        if (icFoundPtr && icFoundPtr->iLevel != centreLevel) {
            if (!icFoundPtr->bHidden) {
                icCurrentPtr = icFoundPtr;
                clearHiddenFlagsLocked();
            }
        } else if (icFoundPtr) {
            if (!icFoundPtr->pParent) {
                // The top of the scan: there is nowhere to go, and nothing changes.
                icCurrentPtr = icAllDir;
                icFoundPtr = nullptr;
                return;
            }
            icCurrentPtr = icFoundPtr->pParent;
        }
        icFoundPtr = nullptr;
        path = icCurrentPtr->szPath();
        size = sizeOf(*icCurrentPtr);
    }
    NSLog("Current Directory: %@", path);
    list(path, size);
    Q_EMIT redrawNeeded();
}

// -- Navigation

void RingChart::clearHiddenFlags() {
    const std::lock_guard lock(m_mutex);
    clearHiddenFlagsLocked();
}

// Breadth first. The directory's own flag stays.
void RingChart::clearHiddenFlagsLocked() {
    std::vector<AllDir *> level;
    if (icCurrentPtr)
        level.push_back(icCurrentPtr);
    while (!level.empty()) {
        std::vector<AllDir *> next;
        for (const AllDir *node : level) {
            if (node->iLevel > lastLevel)
                return;
            for (const std::atomic<AllDir *> &slot : node->ppChildren()) {
                if (AllDir *const child = slot.load(std::memory_order_relaxed)) {
                    child->bHidden = false;
                    next.push_back(child);
                }
            }
        }
        level = std::move(next);
    }
}

void RingChart::updateLeftView(const std::filesystem::path &path, std::uint64_t size) {
    std::unordered_map<std::string, DirectoryBytes> directories;
    std::uint64_t stored = 0;
    std::unique_lock lock(m_mutex);
    if (icCurrentPtr && icCurrentPtr->szPath() == paths::withTrailingSlash(path.native())) {
        stored = storedLocked(*icCurrentPtr);
        for (const std::atomic<AllDir *> &slot : icCurrentPtr->ppChildren()) {
            if (const AllDir *const child = slot.load(std::memory_order_relaxed))
                directories.emplace(child->name(),
                                    DirectoryBytes{sizeOf(*child), storedLocked(*child)});
        }
    }
    lock.unlock();
    CleanFileInfo folder(QString(), paths::lastComponent(path), path,
                         UtilityFunction::convertVolSpace(size), size);
    folder.stored = stored;
    NotificationCenter::defaultCenter().post(
        QStringLiteral("RefreshLeftView"), this,
        {{QStringLiteral("RootPath"), QVariant::fromValue(folder)},
         {QStringLiteral("DecendingItem"), QVariant::fromValue(listingOf(path, directories))}});
}

void RingChart::SeekDirectory(std::string_view path) {
    std::string shown;
    std::uint64_t size = 0;
    {
        const std::lock_guard lock(m_mutex);
        icFoundPtr = nullptr;
        if (!icCurrentPtr)
            return;
        AllDir *found = nullptr;
        if (icCurrentPtr->Find(path, &found) > 0) {
            if (found->iLevel != centreLevel) {
                icCurrentPtr = static_cast<W32AllDir *>(found);
                clearHiddenFlagsLocked();
            }
        } else {
            for (AllDir *node = icCurrentPtr->pParent; node && !found; node = node->pParent)
                node->Find(path, &found);
            if (!found)
                found = icAllDir;
            icCurrentPtr = static_cast<W32AllDir *>(found);
        }
        shown = found->szPath();
        size = sizeOf(*found);
    }
    list(shown, size);
    Q_EMIT redrawNeeded();
}

AllDir *RingChart::searchFile(std::string_view path) const {
    const std::lock_guard lock(m_mutex);
    return searchFileLocked(path);
}

AllDir *RingChart::searchFileLocked(std::string_view path) const {
    if (!icAllDir)
        return nullptr;
    const std::string top = icAllDir->szPath();
    if (top.empty() || !path.starts_with(top))
        return nullptr;
    path.remove_prefix(top.size());
    AllDir *node = icAllDir;
    while (node && !path.empty()) {
        const auto slash = path.find('/');
        if (slash == path.npos)
            return nullptr;
        AllDir *next = nullptr;
        for (const std::atomic<AllDir *> &slot : node->ppChildren()) {
            AllDir *const child = slot.load(std::memory_order_relaxed);
            if (child && child->name() == path.substr(0, slash)) {
                next = child;
                break;
            }
        }
        node = next;
        path.remove_prefix(slash + 1);
    }
    return node;
}

std::string RingChart::getCurrentDirectory() const {
    const std::lock_guard lock(m_mutex);
    return icCurrentPtr ? icCurrentPtr->szPath() : std::string();
}

// -- Removal

Result<RemovalTarget> RingChart::removalTarget(const std::filesystem::path &item) const {
    const std::lock_guard lock(m_mutex);
    if (!m_scannedFolder)
        return m_scannedFolder.error();
    std::string top = icAllDir->szPath();
    // The item goes by the path that was given, the folder by its canonical one.
    RemovalRoot root = *m_scannedFolder;
    root.path = top;
    auto target = UsageRemoval::targetOf(root, item);
    if (target)
        target->root = *m_scannedFolder;
    return target;
}

bool RingChart::removeItem(const CleanFileInfo &item, bool isDirectory, const Remover &remove) {
    const auto target = removalTarget(item.path);
    if (!target) {
        NSLog("Not removed: %@-%@", item.path, target.error());
        return false;
    }
    if (!(remove ? remove(*target) : NvAuthorization::synFastRemovePath(*target)))
        return false;
    removeFile(item, isDirectory);
    return true;
}

void RingChart::removeFile(const CleanFileInfo &item, bool isDirectory) {
    std::string path = item.path.native();
    if (isDirectory)
        path = paths::withTrailingSlash(std::move(path));
    else
        path.resize(path.rfind('/') + 1);
    const std::lock_guard lock(m_mutex);
    if (m_scanning) {
        NSLog("Not taken out of the chart during a scan: %@", item.path);
        return;
    }
    AllDir *const node = searchFileLocked(path);
    if (!node)
        return;
    // A size text shorter than a unit is none.
    const std::uint64_t bytes =
        item.size.size() < 2 ? 0 : UtilityFunction::getVolSpaceFromString(item.size);
    ContentFacts gone;
    if (isDirectory) {
        gone = node->facts;
    } else {
        gone.stored = item.stored;
        gone.byClass[std::size_t(fileTypeOfExtension(paths::extension(item.path)))] = float(bytes);
    }
    node->subtract(bytes, gone);
    if (!isDirectory)
        return;
    if (!node->pParent) {
        // The scanned folder itself is gone: an empty centre remains.
        icFoundPtr = nullptr;
        icCurrentPtr = icAllDir;
        icAllDir->iSize = 0;
        for (std::atomic<AllDir *> &slot : icAllDir->ppChildren())
            slot.store(nullptr, std::memory_order_relaxed);
        return;
    }
    leaveLocked(*node);
    node->FreeAll();
}

} // namespace brightsweep
