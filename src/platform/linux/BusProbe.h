#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

// libdbus waits half a minute for a bus that takes a connection and says nothing, and all
// connections of the process, Qt's included, wait with it. So each bus is looked at here
// first, by a socket alone. Addresses of a form that only the library knows are left to it. Any
// thread.

/// Longer than a bus that runs takes to greet.
inline constexpr std::chrono::milliseconds busPatience(1'000);
/// The same for one that the first connection of a session may have to start.
inline constexpr std::chrono::milliseconds startPatience(3'000);

/// Empty where there is no session bus. The library's own search would start one.
std::string sessionBusAddress();
std::string systemBusAddress();

/// False where nobody takes connections. Sends nothing and waits for nothing.
bool busListens(std::string_view address);
/// True where somebody takes connections but does not greet in that time.
bool busIsSilent(std::string_view address, std::chrono::milliseconds patience = busPatience);

/// True where leaveSilentSessionBus() has found the bus silent. sessionBusAddress() still gives it.
bool sessionBusIsLeft();
/// The environment for programs that this one starts: with the session bus even where it is left.
std::vector<std::string> environmentOfChildren();

} // namespace brightsweep
