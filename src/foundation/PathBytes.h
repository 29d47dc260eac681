#pragma once

#include <string>
#include <string_view>

namespace brightsweep::paths {

inline std::string withTrailingSlash(std::string path) {
    if (!path.ends_with('/'))
        path += '/';
    return path;
}

/// The path without slashes at its end; the root stays "/".
inline std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

/// True when `path` equals `ancestor` or lies below it. Both are absolute and lexically normal; the
/// test is on components, so "/a/bc" does not lie below "/a/b".
inline bool isSameOrBelow(std::string_view path, std::string_view ancestor) {
    ancestor = withoutTrailingSlashes(ancestor);
    if (ancestor == "/")
        return path.starts_with('/');
    return path.starts_with(ancestor) &&
           (path.size() == ancestor.size() || path[ancestor.size()] == '/');
}

} // namespace brightsweep::paths
