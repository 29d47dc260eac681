#include "foundation/CallQueue.h"

#include "support/WaitUntil.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <thread>

namespace brightsweep {
namespace {

using test::eventually;

// The functions touch plain data: the queue alone must order the two threads.
TEST(CallQueue, KeepsTheOrderOfEachThread) {
    constexpr int each = 5'000;
    CallQueue queue;
    std::vector<int> seen[2];
    std::thread posters[2];
    for (int who : {0, 1}) {
        posters[who] = std::thread([&, who] {
            for (int i = 0; i < each; ++i)
                queue.post([&, who, i] { seen[who].push_back(i); });
        });
    }
    EXPECT_TRUE(eventually([&] { return seen[0].size() + seen[1].size() == 2 * each; }));
    for (std::thread &poster : posters)
        poster.join();
    for (const auto &numbers : seen) {
        ASSERT_EQ(numbers.size(), std::size_t(each));
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST(CallQueue, DropsWhatWaitsWithIt) {
    const auto payload = std::make_shared<int>(1);
    {
        CallQueue queue;
        queue.post([payload] { ADD_FAILURE(); });
        EXPECT_EQ(payload.use_count(), 2);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(payload.use_count(), 1);
}

} // namespace
} // namespace brightsweep
