#pragma once

#include "diskusage/ChartView.h"
#include "diskusage/ContentFacts.h"
#include "diskusage/Displayer.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace brightsweep {

class NodeArena;
class SizeScan;
class W32AllDir;

/// One directory of the size tree: the bytes of everything below it, its child directories, and
/// where the ring chart last drew it. Files have no nodes.
///
/// A tree is filled by one scan, on any thread, while one other thread paints it: what the painter
/// reads is atomic or set before the node can be reached, and child arrays are published whole. The
/// fields of the last paint belong to the painting thread. Nodes live in the tree's arena and go
/// with the tree, never singly; nothing is taken out of a tree while it is scanned.
class AllDir : public Displayer {
public:
    /// One slot per child directory in iChildCount order; a slot turns null when that directory is
    /// taken out of the tree, and stays.
    using Slots = std::span<std::atomic<AllDir *>>;

    /// A new, empty node below this one; it gets no slot by that.
    virtual AllDir *newAllDir() = 0;

    /// Scans the directory into this node, a new root, and returns its bytes, at most 2^63 - 1.
    /// `path` ends in "/". At the top of a scan, a directory named "Volumes" is left out and the
    /// progress is posted: "GetDirTotalLevel" once, with the number of top-level directories under
    /// "DirLevels", and "NeedUpdateProgress" as each of them is finished, all on the calling
    /// thread. A directory that cannot be opened has no children and size 0. While bStopScan is
    /// set nothing more is read, and the result is what was counted so far.
    std::int64_t ListAllDir(std::string_view path, bool isTop);
    /// Ends the scan of this tree for good, and no other one. From any thread while the tree lives.
    void abandonScan();
    /// Ends the tree when called on its root; the nodes are gone then. Any other node is taken out
    /// of its parent, and its storage goes with the tree.
    void FreeAll();

    /// Looks among the direct children for the one with exactly that path. 1 when found, else -1
    /// with `*out` untouched.
    int Find(std::string_view path, AllDir **out) const;
    /// The hit test over what the last paint stored: 1 when found, -1 when the angle lies outside
    /// this node's sector, -2 when no node below matches. A sector too narrow to be drawn is found
    /// too. On the border of two rings the inner one is found.
    int Find(double radius, double angle, AllDir **out);

    /// Lays out and draws this node and what lies below, up to level 5. Returns the node's sweep in
    /// degrees. A sector of 3 degrees or less is hidden with all below it.
    double Paint(double sweep, double start, int level, std::int64_t parentSize, bool selected);
    /// Draws the node again from what Paint() stored. The texts are ignored.
    double Repaint(bool selected, const char *, const char *);
    /// The radii of a level, 1 being the centre disc.
    static void GetRangeFromStep(int step, double &inner, double &outer);
    /// The sector's colour. Level 2 sets the colour that the levels outside it use, so that it must
    /// be asked in painting order.
    void GetColor(bool selected, int &r, int &g, int &b) const;

    void setActivity();

    /// The absolute path with a trailing "/". Empty for a node that no scan has named.
    std::string szPath() const;
    /// The name in the parent, without a slash; for a root as szPath().
    const char *name() const { return m_name.load(std::memory_order_acquire); }
    std::int64_t iChildCount() const;
    Slots ppChildren() const;
    /// Puts a whole tree of its own, scanned anew, in the place of this node, which goes out of the
    /// tree; the sums above follow. Not of a root, and not while either is scanned.
    void replaceBy(AllDir &root);
    /// Takes what has gone below this node out of its sums and of those above.
    void subtract(std::uint64_t bytes, const ContentFacts &gone);
    /// Puts it back.
    void add(std::uint64_t bytes, const ContentFacts &found);

    /// Bytes by the measure that charts are painted with.
    std::int64_t shownSize() const;

    /// Bytes of storage that the whole tree uses.
    std::size_t storage() const;

    /// Program-wide: stops the scan and, as long as it is set, painting below the node painted.
    static std::atomic<bool> bStopScan;

    /// How everything is painted; one painter at a time.
    static ChartView view;

    std::atomic<std::int64_t> iSize{0};
    /// Of all that lies below; only after a scan that came to its end.
    ContentFacts facts;
    std::int64_t tActivity = 0; ///< seconds since the epoch
    double dStartAngle = 0;
    double dSweepAngle = 0;
    W32AllDir *pParent = nullptr;
    std::int32_t iLevel = 0; ///< ring number at the last paint, 0 before
    std::int8_t iSortChildren = 1;
    bool bHidden = false;
    bool isUnread = false; ///< could not be opened, or not read to its end; known after the scan

protected:
    struct Children;

    AllDir() = default;
    ~AllDir() override = default;

    NodeArena &arena() const;
    /// Makes this the first node of a tree that owns the arena.
    void becomeRoot(NodeArena *arena);
    /// Notes where the node stands.
    void becomeChildOf(W32AllDir &parent);

private:
    friend class SizeScan;

    // The sizes of the root and of two levels below grow with every block that is read.
    static constexpr std::uint8_t lastGrowingDepth = 2;

    std::uint8_t m_depth = 0; // no more than lastGrowingDepth + 1
    std::atomic<Children *> m_children{nullptr};
    // A scan names its root while the painter may see it.
    std::atomic<const char *> m_name{""};
    // The root's arena; the root, of a node whose size grows at once; the nearest such node of
    // every other.
    void *m_upper = nullptr;
};

/// Orders children by descending size. It never answers 0: of two equals each comes first.
int compare(const void *first, const void *second);

/// Adds up to 2^63 - 1 and stays there.
void addSaturating(std::atomic<std::int64_t> &sum, std::uint64_t value);

inline constexpr std::int32_t palettelen = 28;
extern const std::int32_t palette[palettelen * 3];
/// What the levels beyond 2 are coloured with; one painter at a time.
extern std::int32_t curcolor[3];

} // namespace brightsweep
