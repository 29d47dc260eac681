#pragma once

#include "diskusage/FSNode.h"

#include <vector>

namespace brightsweep {

/// What the box of an item of the list shows, as `FSNode::_state` holds it.
enum NodeState : std::int64_t { NodeOff = 0, NodeOn = 1, NodeMixed = 2 };

/// Ticks an item or takes its tick away, and with it all below. What is above shows the third state
/// where anything below is ticked, and is never ticked by that: a folder goes only if it was ticked
/// itself. A ticked folder that loses a tick below is ticked no more; its other children stay so.
void setChildrenState(FSNode &node, NodeState state);

/// The ticked items that no ticked folder holds.
std::vector<FSNode *> prePareDelData(FSNode &root);

/// Takes an item that is gone out of the tree, and its bytes out of all above. The node is
/// destroyed.
void removeNode(FSNode &node);

} // namespace brightsweep
