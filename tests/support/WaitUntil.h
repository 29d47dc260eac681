#pragma once

#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

namespace brightsweep::test {

/// Runs the event loop until the condition holds; a failure of the test after half a minute.
template <typename Condition>
void waitUntil(Condition condition) {
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition())
            loop.quit();
    });
    poll.start(1);
    QTimer::singleShot(30'000, &loop, [&] { loop.exit(1); });
    if (!condition()) {
        EXPECT_EQ(loop.exec(), 0) << "it never came to that";
    }
}

} // namespace brightsweep::test
