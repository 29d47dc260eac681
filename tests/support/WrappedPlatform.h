#pragma once

#include "platform/Platform.h"

#include <filesystem>
#include <functional>
#include <string_view>
#include <system_error>

namespace brightsweep::test {

/// Told of every call of a platform before it is made, by the name of the function and its main
/// argument: a path (of an open file or directory its own, of a child the joined one), a kernel
/// name, a number as text. An error keeps the call from being made and becomes its result: the
/// code itself, or the value that the call fails with. Called on every thread that makes calls.
using PlatformHook =
    std::function<std::error_code(std::string_view call, const std::filesystem::path &argument)>;

/// Every facility of the platform, each behind the hook.
Platform wrapPlatform(Platform wrapped, PlatformHook hook);

} // namespace brightsweep::test
