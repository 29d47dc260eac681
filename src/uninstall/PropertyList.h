#pragma once

#include <QString>

#include <map>
#include <string>
#include <string_view>

namespace brightsweep {

/// The texts at the top of a property list, by their keys: an XML or binary property list, or a
/// JSON object. Values of other types are left out. Empty for what cannot be read. Any thread.
std::map<std::string, QString> readPropertyList(std::string_view bytes);

} // namespace brightsweep
