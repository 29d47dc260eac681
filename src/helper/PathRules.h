#pragma once

#include <string_view>

/// Which requests name items at all. Texts only; nothing here looks at a file.
namespace brightsweep::helper {

struct RemoveItems;

/// Empty, or why the request names no items: a root that is not absolute, a NUL, an empty, "." or
/// ".." component, a name that is no single component, or a direct child of "/".
std::string_view refusalOfWords(const RemoveItems &removal);

} // namespace brightsweep::helper
