#pragma once

#include <string>

namespace brightsweep {

/// The payload of a TreeNode. Comparisons are negative, 0 or positive; the ones named R have the
/// sides swapped. Without a rule of its own a payload is equal to every other.
class TreeNodeData {
public:
    virtual ~TreeNodeData() = default;

    virtual int compareName(const TreeNodeData &) const { return 0; }
    virtual int compareSize(const TreeNodeData &) const { return 0; }
    virtual int compareDate(const TreeNodeData &) const { return 0; }
    int compareNameR(const TreeNodeData &other) const { return other.compareName(*this); }
    int compareSizeR(const TreeNodeData &other) const { return other.compareSize(*this); }
    int compareDateR(const TreeNodeData &other) const { return other.compareDate(*this); }

    virtual std::string description() const { return {}; }
};

} // namespace brightsweep
