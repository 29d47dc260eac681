#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace brightsweep {

/// One item of the list mode's tree: a file or a folder of at least the size limit.
///
/// A node owns its children; only a root carries a whole path. Trees of any depth are sorted and
/// destroyed without recursion.
class FSNode {
public:
    /// A root.
    FSNode(const std::filesystem::path &path, bool isDirectory);
    ~FSNode();
    FSNode(const FSNode &) = delete;
    FSNode &operator=(const FSNode &) = delete;

    /// A new last child.
    FSNode &addChild(std::string_view name, bool isDirectory, std::uint64_t bytes);

    std::filesystem::path _path() const;
    /// The last path component.
    std::string displayName() const;

    /// Below 0 when this node is the larger one, above 0 when it is the smaller.
    int compareSize(const FSNode &other) const;
    /// Sorts the children and what lies below by size, the largest first; equals stay as they are.
    void decendingSort();

    const bool _isDirectory;
    bool isComplete = false; ///< of a folder: all below it is there, and counts in its size
    std::vector<std::unique_ptr<FSNode>> children;
    FSNode *father = nullptr;
    std::uint64_t size = 0;
    std::int64_t _state = 0; ///< check state
    std::int32_t isButtonState = 0;
    std::error_code refusal; ///< why no removal would take it, as far as that is known

private:
    std::string m_name; // of a root the path
};

} // namespace brightsweep
