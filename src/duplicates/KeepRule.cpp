#include "duplicates/KeepRule.h"
#include "duplicates/DuplicateNodes.h"

#include <algorithm>
#include <cstdint>
#include <tuple>

namespace brightsweep {

namespace {

std::int64_t timeOf(const DuplicateLeaf &leaf) {
    const auto date = leaf.ModificationDate();
    return date ? date->time_since_epoch().count() : leaf.searched().changed;
}

// The greater, the rather it stays.
std::int64_t worthOf(const DuplicateLeaf &leaf, KeepRule rule) {
    switch (rule) {
    case KeepRule::Last:
        return leaf.place();
    case KeepRule::First:
        return -std::int64_t(leaf.place());
    case KeepRule::Newest:
        return timeOf(leaf);
    case KeepRule::Oldest:
        return -timeOf(leaf);
    case KeepRule::ShortestPath:
        return -std::int64_t(leaf.name().size());
    }
    return 0;
}

} // namespace

std::optional<KeepRule> keepRuleOf(std::string_view name) {
    const auto found = std::find_if(keepRuleNames.begin(), keepRuleNames.end(),
                                    [&](const KeepRuleName &row) { return row.name == name; });
    return found == keepRuleNames.end() ? std::nullopt : std::optional(found->rule);
}

TreeNode::Pointer leafToKeep(const TreeNode &group, KeepRule rule) {
    const auto rank = [rule](const TreeNode::Pointer &node) {
        const DuplicateLeaf &leaf = leafOf(*node);
        return std::tuple(leaf.searched().kind != SearchedFile::Kind::Link, worthOf(leaf, rule),
                          leaf.place());
    };
    TreeNode::Pointer kept;
    for (std::int32_t i = 0; i < group.numberOfChildren(); ++i) {
        const auto node = group.childAtIndex(i);
        if (!kept || rank(node) > rank(kept))
            kept = node;
    }
    return kept;
}

} // namespace brightsweep
