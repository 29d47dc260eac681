#include "foundation/NotificationCenter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

namespace brightsweep {
namespace {

const QString event = QStringLiteral("event");

TEST(NotificationCenter, DeliversAtOnceInOrderByNameAndPoster) {
    NotificationCenter center;
    QObject context;
    QObject poster;
    std::string calls;
    center.addObserver(&context, event, [&](const Notification &) { calls += 'a'; });
    center.addObserver(
        &context, event, [&](const Notification &) { calls += 'b'; }, &poster);
    center.addObserver(&context, QStringLiteral("other"),
                       [&](const Notification &) { calls += 'c'; });
    center.addObserver(&context, event, [&](const Notification &notification) {
        calls += notification.userInfo.value(QStringLiteral("n")).toString().toStdString();
    });
    center.post(event, nullptr, {{QStringLiteral("n"), 1}});
    center.post(event, &poster, {{QStringLiteral("n"), 2}});
    center.post(QStringLiteral("nobody"));
    EXPECT_EQ(calls, "a1ab2");
    center.removeObserver(&context, event);
    center.post(event);
    center.post(QStringLiteral("other"));
    EXPECT_EQ(calls, "a1ab2c");
}

TEST(NotificationCenter, ObserversChangeDuringAPost) {
    NotificationCenter center;
    QObject first;
    QObject second;
    QObject third;
    std::string calls;
    center.addObserver(&first, event, [&](const Notification &) {
        calls += '1';
        center.removeObserver(&first);  // itself, while it runs
        center.removeObserver(&second); // one that is still to come
        center.addObserver(&third, event, [&](const Notification &) { calls += '3'; });
    });
    center.addObserver(&second, event, [&](const Notification &) { calls += '2'; });
    center.post(event);
    EXPECT_EQ(calls, "1"); // the new one hears the next
    center.post(event);
    EXPECT_EQ(calls, "13");
}

TEST(NotificationCenter, ObserverGoesWithItsContext) {
    NotificationCenter center;
    auto dying = std::make_unique<QObject>();
    QObject other;
    int calls = 0;
    center.addObserver(&other, event, [&](const Notification &) { dying.reset(); });
    center.addObserver(dying.get(), event, [&](const Notification &) { ++calls; });
    center.post(event); // dies just before its turn
    center.post(event);
    EXPECT_EQ(calls, 0);
}

TEST(NotificationCenter, RemovalWaitsForADeliveryUnderWay) {
    NotificationCenter center;
    QObject context;
    std::promise<void> entered;
    std::promise<void> leave;
    std::atomic<bool> left{false};
    center.addObserver(&context, event, [&](const Notification &) {
        entered.set_value();
        leave.get_future().wait();
        left = true;
    });
    std::thread poster([&] { center.post(event); });
    entered.get_future().wait();
    std::thread helper([&] { leave.set_value(); });
    center.removeObserver(&context);
    EXPECT_TRUE(left);
    poster.join();
    helper.join();
}

// Two observers that post to one another on two threads must neither block each other nor lose
// a call, while others come and go.
TEST(NotificationCenter, TwoThreadsPostAcross) {
    NotificationCenter center;
    QObject left;
    QObject right;
    const QString back = QStringLiteral("back");
    std::atomic<int> calls{0};
    center.addObserver(&left, event, [&](const Notification &) { center.post(back); });
    center.addObserver(&right, back, [&](const Notification &) { ++calls; });
    const auto work = [&] {
        for (int i = 0; i < 2'000; ++i) {
            QObject passing;
            center.addObserver(&passing, event, [](const Notification &) {});
            center.post(event);
            center.removeObserver(&passing);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(calls, 4'000);
}

} // namespace
} // namespace brightsweep
