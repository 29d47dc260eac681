#pragma once

#include "results/TreeNode.h"

#include <array>
#include <optional>
#include <string_view>

namespace brightsweep {

/// Which file of a group stays when all others are ticked at once.
enum class KeepRule {
    Last,  ///< of the group as the search made it: the one that was found first
    First, ///< of that group
    Newest,
    Oldest,
    ShortestPath,
};

struct KeepRuleName {
    KeepRule rule;
    std::string_view name; ///< on the command line
};

inline constexpr std::array keepRuleNames = {
    KeepRuleName{KeepRule::Last, "last"},
    KeepRuleName{KeepRule::First, "first"},
    KeepRuleName{KeepRule::Newest, "newest"},
    KeepRuleName{KeepRule::Oldest, "oldest"},
    KeepRuleName{KeepRule::ShortestPath, "shortest"},
};

std::optional<KeepRule> keepRuleOf(std::string_view name);

/// The leaf that stays, whatever order is shown: never a link while there is a file. Of equals the
/// one that was found first. A bundle is as old as the latest change of a file in it. Null for a
/// group without leaves.
TreeNode::Pointer leafToKeep(const TreeNode &group, KeepRule rule);

} // namespace brightsweep
