#include "diskusage/V4DiskUsageViewController.h"

#include "core/ThreadWorker.h"
#include "core/UtilityFunction.h"
#include "diskusage/DiskUsageAppController.h"
#include "diskusage/NodeTreeOperator.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"

#include <algorithm>
#include <system_error>

namespace brightsweep {

namespace {

bool isGone(const std::filesystem::path &path) {
    return Platform::current().files->attributes(path).error() ==
           std::errc::no_such_file_or_directory;
}

} // namespace

// One listing of a folder. Its worker may hang in a file system that does not answer, while the
// page goes on without it.
struct V4DiskUsageViewController::Listing {
    V4DiskUsageViewController *page = nullptr;
    std::filesystem::path path;
    std::uint64_t size = 0;
    std::uint64_t generation = 0;
    std::shared_ptr<ThreadWorker> worker;
    CleanFileInfo root;
    FolderListing::Pointer items;
    std::vector<std::error_code> refusals;
    std::uint64_t volumeBytes = 0;
    bool hasGone = false;

    static thread_local Listing *current;

    void list(std::nullptr_t) {
        current = this;
        page->m_openGLView.updateLeftView(path, size);
        current = nullptr;
    }
    void ended() { page->endListing(self.lock()); }
    void take(const Notification &notification);
    void askBeforehand(const RingChart &chart);

    std::weak_ptr<Listing> self;
};

thread_local V4DiskUsageViewController::Listing *V4DiskUsageViewController::Listing::current =
    nullptr;

void V4DiskUsageViewController::Listing::take(const Notification &notification) {
    root = notification.userInfo[QStringLiteral("RootPath")].value<CleanFileInfo>();
    items = notification.userInfo[QStringLiteral("DecendingItem")].value<FolderListing::Pointer>();
    askBeforehand(page->m_openGLView);
}

void V4DiskUsageViewController::Listing::askBeforehand(const RingChart &chart) {
    OpenItem previous;
    for (std::size_t i = 0; i < std::min(items->size(), UsageRemoval::mostAskedBeforehand); ++i) {
        std::error_code &refusal = refusals.emplace_back();
        if (const auto target = chart.removalTarget((*items)[i].path))
            refusal = UsageRemoval::refusalBeforehand(*target, previous);
    }
}

// One directory that is being scanned anew.
struct V4DiskUsageViewController::Reading {
    V4DiskUsageViewController *page = nullptr;
    std::string path; ///< with a trailing "/"
    W32AllDir *root = W32AllDir::newRoot();
    std::shared_ptr<ThreadWorker> worker;

    bool hasGone = false;

    void read(std::nullptr_t) {
        root->ListAllDir(path, false);
        hasGone = root->isUnread && isGone(path);
    }
    void ended() { page->endReading(*this); }
};

V4DiskUsageViewController::V4DiskUsageViewController(DiskUsageAppController &diskUsageAppCon,
                                                     Surroundings surroundings, QObject *parent)
    : QObject(parent),
      m_diskUsageAppCon(diskUsageAppCon),
      m_surroundings(std::move(surroundings)),
      m_ticks(
          [this](const std::filesystem::path &item) { return m_openGLView.removalTarget(item); }),
      m_allShowListArr([this](const std::filesystem::path &item) { return isTicked(item); }) {
    if (!m_surroundings.clock)
        m_surroundings.clock = &Clock::eventLoop();
    m_openGLView.setListing(
        [this](const std::filesystem::path &path, std::uint64_t size) { listOn(path, size); });
    bind();
}

V4DiskUsageViewController::~V4DiskUsageViewController() {
    m_surroundings.clock->cancel(m_alert);
    NotificationCenter::defaultCenter().removeObserver(this);
    for (const auto &listing : m_listings) {
        if (listing->worker)
            listing->worker->abandon();
    }
    for (const auto &reading : m_readings) {
        reading->root->abandonScan();
        if (reading->worker)
            reading->worker->abandon();
        reading->root->FreeAll();
    }
}

void V4DiskUsageViewController::bind() {
    NotificationCenter &center = NotificationCenter::defaultCenter();
    // On the thread that lists, to which the listing belongs until it ends.
    center.addObserver(
        this, QStringLiteral("RefreshLeftView"),
        [](const Notification &notification) {
            if (Listing::current)
                Listing::current->take(notification);
        },
        &m_openGLView);
    center.addObserver(
        this, QStringLiteral("ShowBubble"),
        [this](const Notification &notification) {
            const QVariantMap &info = notification.userInfo;
            m_pieBubble = {info[QStringLiteral("CurrentDir")].toString(),
                           info[QStringLiteral("DirSize")].toString(),
                           QPointF(info[QStringLiteral("MouseXPos")].toDouble(),
                                   info[QStringLiteral("MouseYPos")].toDouble()),
                           true};
            Q_EMIT bubbleChanged();
        },
        &m_openGLView);
    center.addObserver(
        this, QStringLiteral("HideBubble"),
        [this](const Notification &) {
            m_pieBubble.isShowBubble = false;
            Q_EMIT bubbleChanged();
        },
        &m_openGLView);
    connect(&m_ticks, &UsageTicks::changed, this, [this] {
        m_hasSelected = m_hasSelected || m_ticks.count() > 0;
        Q_EMIT marksChanged();
        Q_EMIT selectionChanged();
    });
    connect(&m_ticks, &UsageTicks::refused, this, &V4DiskUsageViewController::refused);
    connect(&m_ticks, &UsageTicks::asked, this, &V4DiskUsageViewController::showAlertView);
    connect(&m_ticks, &UsageTicks::itemGone, this, [this](const CleanFileInfo &item) {
        m_openGLView.removeFile(item, item.isDirectory);
        Q_EMIT m_openGLView.redrawNeeded();
    });
    connect(&m_ticks, &UsageTicks::removalRefused, this, [this] { Q_EMIT sheetEnded(); });
    connect(&m_ticks, &UsageTicks::removalEnded, this, &V4DiskUsageViewController::removeEnded);
}

// -- The scan

void V4DiskUsageViewController::drawPieTree(const std::filesystem::path &path) {
    const std::shared_ptr<Listing> listing = m_scanListing;
    Listing::current = listing.get();
    m_openGLView.contructPieTree(path);
    Listing::current = nullptr;
    std::error_code error;
    const auto space = std::filesystem::space(path, error);
    listing->volumeBytes = error ? 0 : space.capacity;
    listing->hasGone = isGone(path);
}

void V4DiskUsageViewController::scanBegins() {
    stopReading();
    m_keepsTicks = false;
    m_scanListing = std::make_shared<Listing>();
    m_scanListing->page = this;
}

void V4DiskUsageViewController::abandonScan() {
    m_scanListing.reset();
    m_openGLView.abandonScan();
}

void V4DiskUsageViewController::scanEnded() {
    const auto listing = std::exchange(m_scanListing, nullptr);
    ++m_generation;
    m_isListing = false;
    m_isReadingAgain = false;
    m_isFirstIn = true;
    // A new scan is of other objects, but for the same folder read again: what has changed there is
    // told before a removal.
    if (!std::exchange(m_keepsTicks, false)) {
        m_ticks.clear();
        m_hasSelected = false;
    }
    if (listing) {
        m_volumeBytes = listing->volumeBytes;
        m_hasGone = listing->hasGone;
        leftViewContent(*listing);
    }
    m_unread = m_openGLView.unreadDirectories();
    Q_EMIT scanFactsChanged();
}

// -- The left list and the path control

void V4DiskUsageViewController::listOn(const std::filesystem::path &path, std::uint64_t size) {
    const auto listing = std::make_shared<Listing>();
    listing->self = listing;
    listing->page = this;
    listing->path = path;
    listing->size = size;
    listing->generation = ++m_generation;
    m_isListing = true;
    m_listings.push_back(listing);
    listing->worker = ThreadWorker::workOn(listing.get(), &Listing::list, nullptr, &Listing::ended);
}

void V4DiskUsageViewController::endListing(const std::shared_ptr<Listing> &listing) {
    m_listings.erase(std::remove(m_listings.begin(), m_listings.end(), listing), m_listings.end());
    if (listing->generation != m_generation)
        return;
    m_isListing = false;
    leftViewContent(*listing);
}

void V4DiskUsageViewController::leftViewContent(Listing &listing) {
    NSLog("rootDir path:%@", listing.root.path);
    m_rootItem = std::move(listing.root);
    m_currentPath = paths::withoutTrailingSlashes(m_rootItem.path.native());
    m_rootItem.path = m_currentPath;
    m_rootItem.isDirectory = true;
    if (m_isFirstIn) {
        m_firstInPath = m_currentPath;
        m_isFirstIn = false;
        m_isRootPath = m_firstInPath == "/";
    }
    if (m_firstInPath == homeFolder()) {
        m_pathNumber = m_currentPath == m_firstInPath ? 0 : pathCells().size();
        if (m_pathNumber == 0)
            NSLog("back to home");
        else
            NSLog("home dir navigation count:%d", int(m_pathNumber));
    }
    const std::string folder = paths::withTrailingSlash(m_currentPath.native());
    m_allShowListArr.show(std::move(listing.items), std::move(listing.refusals), getLimitSize(),
                          [&](std::string_view name) {
                              return m_openGLView.leftOut() > 0 &&
                                     m_openGLView.isLeftOut(folder + std::string(name) + "/");
                          });
    Q_EMIT listChanged();
}

std::size_t V4DiskUsageViewController::rowOf(const std::filesystem::path &path) const {
    const std::string folder = paths::withTrailingSlash(m_currentPath.native());
    std::string_view name = path.native();
    if (name.size() <= folder.size() || !name.starts_with(folder))
        return m_allShowListArr.size();
    name.remove_prefix(folder.size());
    return m_allShowListArr.find(name.substr(0, name.find('/')));
}

std::uint64_t V4DiskUsageViewController::shownRootBytes() const {
    return bytesBy(m_openGLView.view().measure, m_rootItem.fileSizeNum, m_rootItem.stored);
}

void V4DiskUsageViewController::setView(const ChartView &view) {
    m_openGLView.setView(view);
    m_allShowListArr.setMeasure(view.measure);
    Q_EMIT listChanged();
}

std::vector<PathCell> V4DiskUsageViewController::pathCells() const {
    std::vector<PathCell> cells{{paths::lastComponent(m_firstInPath), m_firstInPath}};
    const std::string top = paths::withTrailingSlash(m_firstInPath.native());
    const std::string &shown = m_currentPath.native();
    if (!shown.starts_with(top))
        return cells;
    for (const auto &name : std::filesystem::path(shown.substr(top.size()))) {
        if (!name.empty())
            cells.push_back({name.native(), paths::join(cells.back().path, name.native())});
    }
    return cells;
}

void V4DiskUsageViewController::refresh() {
    if (!m_currentPath.empty())
        m_openGLView.SeekDirectory(paths::withTrailingSlash(m_currentPath.native()));
}

void V4DiskUsageViewController::updateOpenGLView(const std::filesystem::path &path) {
    // A directory that the scan has seen: the path may be on a file system that does not answer.
    if (!m_openGLView.searchFile(paths::withTrailingSlash(path.native())))
        return;
    const bool hasSlash = path.native().ends_with('/');
    if (hasSlash)
        NSLog("path:%@", path);
    else
        NSLog("newpath:%@", paths::withTrailingSlash(path.native()));
    m_openGLView.SeekDirectory(paths::withTrailingSlash(path.native()));
}

void V4DiskUsageViewController::onChangePath(const std::filesystem::path &cell) {
    updateOpenGLView(cell);
}

void V4DiskUsageViewController::mouseDownClick(std::size_t row) {
    if (row >= m_allShowListArr.size())
        return;
    const BigSizeFilesList clicked = m_allShowListArr[row];
    NSLog("Click left list to draw: %@", clicked.aFileInfo.path);
    if (clicked.isDir)
        m_openGLView.SeekDirectory(paths::withTrailingSlash(clicked.aFileInfo.path.native()));
}

// -- Read again, and left out

void V4DiskUsageViewController::readAgain(const std::filesystem::path &folder) {
    if (m_ticks.isRemoving())
        return;
    const std::string path = paths::withTrailingSlash(folder.native());
    if (path == m_openGLView.rootFacts().path) {
        m_diskUsageAppCon.viewDragAction(folder);
        m_keepsTicks = true;
        return;
    }
    if (!m_openGLView.factsOf(path))
        return;
    stopReading();
    const auto reading = std::make_shared<Reading>();
    reading->page = this;
    reading->path = path;
    m_readings.push_back(reading);
    m_isReadingAgain = true;
    Q_EMIT foldersChanged();
    reading->worker = ThreadWorker::workOn(reading.get(), &Reading::read, nullptr, &Reading::ended);
}

void V4DiskUsageViewController::stopReading() {
    for (const auto &reading : m_readings)
        reading->root->abandonScan();
    if (std::exchange(m_isReadingAgain, false))
        Q_EMIT foldersChanged();
}

// Of several that were asked for the last one counts, and none of an earlier scan.
void V4DiskUsageViewController::endReading(Reading &ended) {
    const auto at = std::find_if(m_readings.begin(), m_readings.end(),
                                 [&](const auto &reading) { return reading.get() == &ended; });
    const auto reading = *at;
    const bool counts = m_isReadingAgain && reading == m_readings.back();
    m_readings.erase(at);
    if (!counts || m_ticks.isRemoving()) {
        reading->root->FreeAll();
    } else {
        if (reading->hasGone) {
            reading->root->FreeAll();
            if (const auto item = itemOf(paths::withoutTrailingSlashes(reading->path)))
                m_openGLView.removeFile(*item, true);
        } else {
            m_openGLView.replaceFolder(reading->path, reading->root);
        }
        m_unread = m_openGLView.unreadDirectories();
        m_openGLView.SeekDirectory(m_openGLView.getCurrentDirectory());
    }
    if (counts)
        m_isReadingAgain = false;
    Q_EMIT foldersChanged();
    Q_EMIT scanFactsChanged();
}

void V4DiskUsageViewController::leaveOut(const std::filesystem::path &folder) {
    if (m_ticks.isRemoving() || !m_openGLView.leaveOut(paths::withTrailingSlash(folder.native())))
        return;
    m_ticks.untickAround(folder, true);
    m_openGLView.SeekDirectory(m_openGLView.getCurrentDirectory());
    Q_EMIT foldersChanged();
}

void V4DiskUsageViewController::showLeftOut() {
    m_openGLView.showLeftOut();
    m_openGLView.SeekDirectory(m_openGLView.getCurrentDirectory());
    Q_EMIT foldersChanged();
}

// -- What is selected

void V4DiskUsageViewController::colorButtonAction(std::size_t row) {
    if (row >= m_allShowListArr.size())
        return;
    const BigSizeFilesList clicked = m_allShowListArr[row];
    if (clicked.refusal && !clicked.isSelected) {
        Q_EMIT refused(clicked.aFileInfo.path, clicked.refusal);
        return;
    }
    changeSelectArr(!clicked.isSelected, clicked.aFileInfo);
}

void V4DiskUsageViewController::toggleFound() {
    const RingChart::Facts found = m_openGLView.foundFacts();
    if (!found.path.empty())
        togglePath(paths::withoutTrailingSlashes(found.path));
}

void V4DiskUsageViewController::togglePath(const std::filesystem::path &path) {
    if (const auto item = itemOf(path))
        changeSelectArr(!isTicked(path), *item);
}

// A directory of the chart, which need not have a row.
std::optional<CleanFileInfo>
V4DiskUsageViewController::itemOf(const std::filesystem::path &path) const {
    const auto facts = m_openGLView.factsOf(paths::withTrailingSlash(path.native()));
    if (!facts)
        return {};
    CleanFileInfo item({}, paths::lastComponent(path), path,
                       UtilityFunction::convertVolSpace(facts->size), facts->size);
    item.stored = facts->stored;
    item.isDirectory = true;
    return item;
}

void V4DiskUsageViewController::changeSelectArr(bool state, const CleanFileInfo &fileInfo) {
    if (!state) {
        // What a folder above took along takes that folder's tick back.
        m_ticks.untickAround(fileInfo.path, false);
        return;
    }
    // What is left out goes with the folder it lies in: it is on show first.
    if (fileInfo.isDirectory &&
        m_openGLView.holdsLeftOut(paths::withTrailingSlash(fileInfo.path.native()))) {
        showLeftOut();
        m_ticks.tick(
            itemOf(paths::withoutTrailingSlashes(fileInfo.path.native())).value_or(fileInfo));
        return;
    }
    m_ticks.tick(fileInfo);
}

// By itself or with a folder above it.
bool V4DiskUsageViewController::isTicked(const std::filesystem::path &path) const {
    return m_ticks.contains(path) || m_ticks.isBelowTick(path);
}

const char *V4DiskUsageViewController::removeImage() const {
    return m_ticks.count() > 0 ? "remove.png" : "remove_d.png";
}

QString V4DiskUsageViewController::selectedText() const {
    return m_hasSelected ? QString::asprintf("%d items are selected.", int(m_ticks.count()))
                         : QString();
}

} // namespace brightsweep
