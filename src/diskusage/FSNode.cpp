#include "diskusage/FSNode.h"

#include "foundation/Paths.h"

#include <algorithm>
#include <iterator>

namespace brightsweep {

FSNode::FSNode(const std::filesystem::path &path, bool isDirectory)
    : _isDirectory(isDirectory), m_name(path.native()) {}

// Children are taken over before they go, so that no destructor calls another one's.
FSNode::~FSNode() {
    std::vector<std::unique_ptr<FSNode>> going = std::move(children);
    while (!going.empty()) {
        const std::unique_ptr<FSNode> last = std::move(going.back());
        going.pop_back();
        going.insert(going.end(), std::make_move_iterator(last->children.begin()),
                     std::make_move_iterator(last->children.end()));
        last->children.clear();
    }
}

FSNode &FSNode::addChild(std::string_view name, bool isDirectory, std::uint64_t bytes) {
    FSNode &child =
        *children.emplace_back(std::make_unique<FSNode>(std::filesystem::path(name), isDirectory));
    child.father = this;
    child.size = bytes;
    return child;
}

std::filesystem::path FSNode::_path() const {
    std::vector<const FSNode *> way;
    for (const FSNode *node = this; node; node = node->father)
        way.push_back(node);
    std::string path;
    for (auto node = way.rbegin(); node != way.rend(); ++node) {
        if (!path.empty() && !path.ends_with('/'))
            path += '/';
        path += (*node)->m_name;
    }
    return path;
}

std::string FSNode::displayName() const {
    return father ? m_name : paths::lastComponent(m_name);
}

int FSNode::compareSize(const FSNode &other) const {
    return other.size < size ? -1 : other.size > size ? 1 : 0;
}

void FSNode::decendingSort() {
    std::vector<FSNode *> waiting{this};
    while (!waiting.empty()) {
        FSNode &node = *waiting.back();
        waiting.pop_back();
        std::stable_sort(
            node.children.begin(), node.children.end(),
            [](const auto &first, const auto &second) { return first->compareSize(*second) < 0; });
        for (const auto &child : node.children)
            waiting.push_back(child.get());
    }
}

} // namespace brightsweep
