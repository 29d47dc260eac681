#pragma once

#include "duplicates/KeepRule.h"
#include "results/TreeNode.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

namespace brightsweep {

/// The ticks on the groups of a search, and the rule that protects the user: of each group at least
/// one file stays, unless the user has said otherwise for that very group.
///
/// The ticks are kept in the nodes (`selectNum` of leaf and group, and the group's text "2/3"), and
/// in a list of the ticked leaves in the order of ticking. Main thread.
class DuplicateSelection {
public:
    /// The leaves that are ticked now, across all lists, in the order of ticking.
    TreeNode::List allSelectNumArr() const;
    std::size_t count() const { return m_count; }
    bool isEmpty() const { return m_count == 0; }
    std::uint64_t bytes() const { return m_bytes; }

    /// True for a leaf whose row is shown; a filter hides others. Null where all are.
    using IsShown = std::function<bool(const TreeNode &leaf)>;

    /// A click on a group: one without ticks gets them on all but its last file, any other loses
    /// them. Here and below, a file that is hidden is never ticked along with others.
    void clickGroup(const TreeNode::Pointer &group, const IsShown &isShown = nullptr);
    /// False, and nothing ticked, where that would tick the last file of its group: that is asked
    /// about first.
    bool tickLeaf(const TreeNode::Pointer &leaf);
    /// After the user has said so.
    void tickLastLeaf(const TreeNode::Pointer &leaf);
    void untickLeaf(const TreeNode::Pointer &leaf);
    /// All but the last of each group, or none. Groups without a row shown are left alone.
    void setAllSelectOrNoSelect(const TreeNode &list, bool on, const IsShown &isShown = nullptr);
    /// Groups as by a click and leaves, in one change. The last file of a group is never ticked.
    void setTicked(const TreeNode::List &nodes, bool ticks, const IsShown &isShown);
    /// Ticks every file of the leaf's group but this one.
    void keepOnly(const TreeNode::Pointer &leaf, const IsShown &isShown);
    /// Ticks every file of the groups but the one that the rule keeps. Groups without a row shown
    /// are left alone.
    void tickAllBut(const TreeNode::List &groups, KeepRule rule, const IsShown &isShown);
    /// The same for all files that do not lie below a folder. A group without a file there is left
    /// alone.
    void tickAllOutside(const TreeNode::List &groups, const std::filesystem::path &folder,
                        const IsShown &isShown);
    bool canUndo() const { return !m_before.empty(); }
    /// Takes the last change of many ticks back, in whatever groups it touched.
    void undo();

    /// The leaf has gone from its group, ticked or not.
    void forget(const TreeNode::Pointer &leaf);
    /// Without a word to the nodes, which are thrown away.
    void clear();
    /// Makes state and text of a group those of its leaves.
    static void refreshGroup(TreeNode &group);
    /// How many of a group's leaves are ticked, as the column shows it whenever it is drawn: "1/2".
    static std::string countOf(const TreeNode &group);

private:
    struct Before {
        TreeNode::Pointer leaf;
        bool ticked = false;
    };

    void set(const TreeNode::Pointer &leaf, bool ticked);
    void beginBulk();
    void remember(const TreeNode &group);
    template <typename Stays>
    void tickByRule(const TreeNode::Pointer &group, const IsShown &isShown, Stays stays);

    TreeNode::List m_ticked; ///< with gaps; see DuplicateLeaf::selectionPlace()
    std::size_t m_count = 0;
    std::uint64_t m_bytes = 0;
    std::vector<Before> m_before;
};

} // namespace brightsweep
