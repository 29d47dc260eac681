#include "helper/PathRules.h"

#include "helper/Frame.h"
#include "linux/RemovalWay.h"

#include <algorithm>
#include <optional>

namespace brightsweep::helper {

namespace {

// The number of components of a path without its leading slash; nothing where one is not plain.
std::optional<std::size_t> plainComponents(std::string_view path) {
    std::size_t count = 0;
    while (!path.empty()) {
        const auto end = std::min(path.find('/'), path.size());
        if (!isPlainName(path.substr(0, end)) || end + 1 == path.size())
            return std::nullopt;
        path.remove_prefix(std::min(end + 1, path.size()));
        ++count;
    }
    return count;
}

} // namespace

std::string_view refusalOfWords(const RemoveItems &removal) {
    if (!removal.root.starts_with('/'))
        return "the path is not absolute";
    const auto above = plainComponents(std::string_view(removal.root).substr(1));
    const auto way = plainComponents(removal.way);
    if (!above || !way)
        return "the path has a component that is no name";
    for (const RemoveItems::Item &item : removal.items) {
        if (!isPlainName(item.name))
            return "the item's name is no name";
    }
    return *above + *way == 0 ? "the path has fewer than two components" : std::string_view();
}

} // namespace brightsweep::helper
