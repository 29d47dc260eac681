#pragma once

#include <map>
#include <string>
#include <string_view>

namespace brightsweep {

/// The folders that a user-dirs.dirs names, by keys such as "XDG_DOWNLOAD_DIR". Its values are
/// "$HOME/…" or an absolute path in double quotes, with backslash escapes; relative ones count as
/// not configured. See xdg-user-dirs.
std::map<std::string, std::string> parseUserDirectories(std::string_view text,
                                                        std::string_view home);

} // namespace brightsweep
