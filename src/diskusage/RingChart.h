#pragma once

#include "diskusage/FolderListing.h"
#include "diskusage/UnreadFolders.h"
#include "diskusage/W32AllDir.h"
#include "foundation/Result.h"
#include "platform/FileOperations.h"
#include "results/CleanFileInfo.h"

#include <QObject>
#include <QPointF>

#include <atomic>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// The ring chart without its screen: owns the size tree, turns places into nodes, navigates, and
/// keeps the tree right after removals. It draws on the ChartCanvas in use on the calling thread.
///
/// contructPieTree() runs on a worker; every other call belongs to the main thread and may come
/// while the scan runs: the chart then grows from frame to frame. The lock between the two is held
/// for a frame at most, and never during a scan. Nodes handed out live until the next
/// contructPieTree(). Destroy it only when no scan runs, an abandoned one included.
///
/// Posts, with itself as the object: "RefreshLeftView" ("RootPath": a CleanFileInfo,
/// "DecendingItem": a FolderListing::Pointer, largest first), on the thread that scanned or
/// navigated; "ShowBubble" ("CurrentDir", "DirSize", "MouseXPos", "MouseYPos"); "HideBubble".
class RingChart : public QObject {
    Q_OBJECT

public:
    explicit RingChart(QObject *parent = nullptr);
    ~RingChart() override;

    /// Replaces the tree by the one of that folder, and lists it. Returns when the scan has ended.
    void contructPieTree(const std::filesystem::path &path);
    /// Stops the scan, if there is a tree.
    void cancelTask();
    /// For an owner who does not wait for a scan that hangs: lets go of its tree, which its thread
    /// then frees, and has it change nothing here when it goes on. The chart is empty.
    void abandonScan();

    /// One frame for a view of that size.
    void drawRect(int width, int height);
    /// The same in two parts, for a view that keeps the first: the chart, and over it what the
    /// mouse has found. Neither clears what is below the other.
    void drawChart(int width, int height);
    void drawFound(int width, int height);
    /// Sets the canvas in use up for a view of that size, for one chart in its middle.
    static void setProjection(int width, int height);
    /// The chart's place of a point of a view of that size, y growing downwards.
    static QPointF chartPoint(QPointF point, int width, int height);

    /// The mouse is at that place of the chart, and there on the screen.
    void mouseMoved(QPointF place, QPointF screen);
    /// A click on a ring goes into the directory, one on the centre up; one beside the chart lists
    /// the current directory again.
    void mouseDown(QPointF place, QPointF screen, int clickCount);

    /// How the chart is painted and what the sizes of Facts are. A scan under way is always painted
    /// by place and size.
    void setView(const ChartView &view);
    const ChartView &view() const { return m_view; }

    /// Has navigation leave the listing of a directory to somebody else, who calls
    /// updateLeftView() from another thread; the function gets its arguments.
    using Listing = std::function<void(const std::filesystem::path &, std::uint64_t)>;
    void setListing(Listing listing) { m_listing = std::move(listing); }
    /// Lists the directory: its items with their sizes in words, child directories with what the
    /// tree says of them.
    void updateLeftView(const std::filesystem::path &path, std::uint64_t size);
    /// Goes to a directory, given with a trailing "/": a child of the current one or of one of its
    /// ancestors; to the root when there is none such.
    void SeekDirectory(std::string_view path);
    /// Finds a child of the current directory as if the mouse were on it, without a bubble; nothing
    /// where no path is given or the child is not drawn.
    void findChild(std::string_view path);
    enum class Step { Next, Previous, Outwards, Inwards };
    /// Moves what is found along its ring or to a neighbouring one, over what is drawn; from
    /// nowhere to the largest child.
    void step(Step step);
    /// Goes into what is found, and to the parent.
    void enterFound();
    void goUp();

    /// What a screen says of a directory of the chart.
    struct Facts {
        std::string path;        ///< with a trailing "/"; empty where there is none
        std::uint64_t bytes = 0; ///< by the measure of the view
        int level = 0;
        std::uint64_t size = 0;   ///< of the files, whatever the measure
        std::uint64_t stored = 0; ///< what they take on the disk; 0 during a scan
    };
    Facts foundFacts() const;
    /// Of the directory whose gap lies at that place of the chart: the part of its ring that stands
    /// for its own files and for what is too narrow to be drawn, with the bytes of those alone.
    Facts gapAt(QPointF place) const;
    Facts currentFacts() const;
    Facts rootFacts() const;
    /// Of the directory with that path, with a trailing "/".
    std::optional<Facts> factsOf(std::string_view path) const;
    /// What the last scan could not read.
    UnreadFolders unreadDirectories() const;
    /// The same of a tree that is complete.
    static UnreadFolders unreadIn(const AllDir &root);

    /// The item as removals take it: its way down from the scanned folder, which was remembered
    /// when the scan began. An error for what does not lie below that folder, and for the folder
    /// itself.
    Result<RemovalTarget> removalTarget(const std::filesystem::path &item) const;
    /// Removes an item, by NvAuthorization unless another operation is given, and where that says
    /// that it has gone takes it out of the tree. False when it stays.
    using Remover = std::function<bool(const RemovalTarget &)>;
    bool removeItem(const CleanFileInfo &item, bool isDirectory, const Remover &remove = {});
    /// Takes what has just been deleted out of the tree, by the size in words that it was listed
    /// with. Of the root itself an empty chart remains. Does nothing while a scan runs.
    void removeFile(const CleanFileInfo &item, bool isDirectory);
    /// The node of a path with a trailing "/", null when there is none.
    AllDir *searchFile(std::string_view path) const;
    /// Puts a directory that was scanned anew, as the root of a tree of its own that is this
    /// chart's from then on, in the place of the one with that path; nothing where there is none
    /// such, where it is the scanned folder, and during a scan. What is shown stays as far as it is
    /// still there.
    void replaceFolder(std::string_view path, W32AllDir *scanned);
    /// Leaves a directory below the scanned folder out of the chart and of the sums above it, until
    /// showLeftOut() or the next scan. On the disk nothing happens. False where it is not there.
    bool leaveOut(std::string_view path);
    void showLeftOut();
    bool isLeftOut(std::string_view path) const;
    /// Something below that directory is left out.
    bool holdsLeftOut(std::string_view path) const;
    std::size_t leftOut() const;

    /// Makes what was too narrow below the current directory a candidate for the mouse again, until
    /// it is painted.
    void clearHiddenFlags();
    /// Empty without a tree.
    std::string getCurrentDirectory() const;

    W32AllDir *root() const { return icAllDir; }
    W32AllDir *found() const { return icFoundPtr; }
    W32AllDir *current() const { return icCurrentPtr; }

Q_SIGNALS:
    /// Something that a frame shows has changed. On the main thread.
    void redrawNeeded();

private:
    struct Polar {
        double radius;
        double angle; ///< degrees
    };
    static Polar polar(QPointF place);
    void drawScene();
    void drawParts(int width, int height, void (RingChart::*draw)());
    void drawBase();
    void drawOver();
    void clearHiddenFlagsLocked();
    void list(const std::filesystem::path &path, std::uint64_t size);
    void goTo(W32AllDir &node);
    void letGoLocked();
    void prepareViewLocked() const;
    std::uint64_t shownSizeLocked(const AllDir &node) const;
    std::uint64_t storedLocked(const AllDir &node) const;
    Facts factsLocked(const AllDir *node) const;
    void leaveLocked(const AllDir &node);
    bool isInTreeLocked(const AllDir &node) const;
    AllDir *searchFileLocked(std::string_view path) const;

    // For the three pointers, the life of what they point at, and the scanned folder.
    mutable std::mutex m_mutex;
    W32AllDir *icAllDir = nullptr;
    W32AllDir *icFoundPtr = nullptr;
    W32AllDir *icCurrentPtr = nullptr;
    Result<RemovalRoot> m_scannedFolder = std::errc::no_such_file_or_directory;
    std::atomic<bool> m_scanning{false};
    std::uint64_t m_scan = 0; // the number of the scan that counts
    bool m_isGrowing = false; // its thread fills icAllDir
    UnreadFolders m_unread;
    bool bShowBubble = false;
    ChartView m_view;
    struct LeftOut {
        AllDir *node;
        std::atomic<AllDir *> *slot;
        std::string path;
    };
    std::vector<LeftOut> m_leftOut;
    Listing m_listing;
};

} // namespace brightsweep
