#pragma once

#include <gtest/gtest.h>

#include <functional>

namespace brightsweep::test {

/// Tries until it holds; false after half a minute. The event loop of the main thread runs
/// meanwhile; other threads only wait.
bool eventually(const std::function<bool()> &condition);

/// The same, with a failure of the test where it never holds.
template <typename Condition>
void waitUntil(Condition condition) {
    EXPECT_TRUE(eventually(condition)) << "it never came to that";
}

} // namespace brightsweep::test
