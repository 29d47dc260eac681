#pragma once

#include "platform/Platform.h"

#include <filesystem>
#include <functional>
#include <string_view>
#include <system_error>

namespace brightsweep::test {

/// Told of calls that open, read and remove before they are made, by the name of the function and
/// the path (of an open file or directory its own, of a child the joined one); of the privileged
/// removal as "rights.removeItems" with the folder of its items. An error keeps the call from being
/// made and becomes its result: the code itself, or the value that the call fails with. Called on
/// every thread that makes calls.
using PlatformHook =
    std::function<std::error_code(std::string_view call, const std::filesystem::path &argument)>;

/// The platform with its files and its administrator rights behind the hook.
Platform wrapPlatform(Platform wrapped, PlatformHook hook);

} // namespace brightsweep::test
