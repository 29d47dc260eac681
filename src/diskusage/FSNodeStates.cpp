#include "diskusage/FSNodeStates.h"

#include <algorithm>

namespace brightsweep {

namespace {

void refreshAbove(FSNode *node) {
    for (; node; node = node->father) {
        const bool anyTicked =
            std::any_of(node->children.begin(), node->children.end(),
                        [](const auto &child) { return child->_state != NodeOff; });
        const bool allTicked =
            std::all_of(node->children.begin(), node->children.end(),
                        [](const auto &child) { return child->_state == NodeOn; });
        // The tick of a folder ends with the first one below.
        if (node->_state == NodeOn && allTicked)
            return;
        node->_state = anyTicked ? NodeMixed : NodeOff;
    }
}

} // namespace

void setChildrenState(FSNode &node, NodeState state) {
    std::vector<FSNode *> waiting{&node};
    while (!waiting.empty()) {
        FSNode &each = *waiting.back();
        waiting.pop_back();
        each._state = state;
        for (const auto &child : each.children)
            waiting.push_back(child.get());
    }
    refreshAbove(node.father);
}

std::vector<FSNode *> prePareDelData(FSNode &root) {
    std::vector<FSNode *> ticked;
    std::vector<FSNode *> waiting{&root};
    while (!waiting.empty()) {
        FSNode &node = *waiting.back();
        waiting.pop_back();
        for (const auto &child : node.children) {
            if (child->_state == NodeOn)
                ticked.push_back(child.get());
            else if (child->_state == NodeMixed)
                waiting.push_back(child.get());
        }
    }
    return ticked;
}

void removeNode(FSNode &node) {
    FSNode *const father = node.father;
    if (!father)
        return;
    for (FSNode *above = father; above; above = above->father)
        above->size -= std::min(above->size, node.size);
    const auto place = std::find_if(father->children.begin(), father->children.end(),
                                    [&node](const auto &child) { return child.get() == &node; });
    father->children.erase(place);
    refreshAbove(father);
}

} // namespace brightsweep
