#include "core/ThreadWorker.h"

#include "core/TaskStopper.h"
#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <future>
#include <stdexcept>
#include <thread>

namespace brightsweep {
namespace {

// A target with one job of each shape, which counts without locks on purpose: what the work wrote
// must be there in the end call.
struct Target {
    ~Target() {
        if (worker)
            worker->abandon();
    }
    void work(const std::string &argument, ThreadWorker *given) {
        seenArgument = argument;
        seenWorker = given;
        workThread = std::this_thread::get_id();
        if (hold)
            hold->wait();
        ++works;
        sawCancel = given->cancelled();
    }
    void workWithArgumentAlone(std::filesystem::path argument) {
        seenArgument = argument.native();
        ++works;
    }
    void failingWork(int, ThreadWorker *) {
        entered = true;
        throw std::runtime_error("as told");
    }
    void didEnd() {
        endThread = std::this_thread::get_id();
        worksAtEnd = works;
        ++ends;
        if (dieInEnd) {
            worker->abandon();
            worker.reset();
        }
    }

    std::shared_ptr<ThreadWorker> worker;
    std::shared_future<void> *hold = nullptr;
    std::string seenArgument;
    ThreadWorker *seenWorker = nullptr;
    std::thread::id workThread;
    std::thread::id endThread;
    int works = 0;
    int worksAtEnd = 0;
    int ends = 0;
    bool sawCancel = false;
    bool dieInEnd = false;
    std::atomic<bool> entered{false};
};

using test::eventually;

TEST(ThreadWorker, EndCallComesOnTheStartingThread) {
    Target target;
    target.worker =
        ThreadWorker::workOn(&target, &Target::work, std::string("what"), &Target::didEnd);
    ASSERT_TRUE(target.worker);
    ASSERT_TRUE(eventually([&] { return target.ends > 0; }));
    EXPECT_EQ(target.ends, 1);
    EXPECT_EQ(target.worksAtEnd, 1);
    EXPECT_EQ(target.seenArgument, "what");
    EXPECT_EQ(target.seenWorker, target.worker.get());
    EXPECT_EQ(target.endThread, std::this_thread::get_id());
    EXPECT_NE(target.workThread, std::this_thread::get_id());
}

TEST(ThreadWorker, CancellingOnlyRaisesAFlag) {
    std::promise<void> go;
    auto hold = go.get_future().share();
    Target target;
    target.hold = &hold;
    target.worker = ThreadWorker::workOn(&target, &Target::work, "", &Target::didEnd);
    EXPECT_FALSE(target.worker->cancelled());
    target.worker->markAsCancelled();
    target.worker->markAsCancelled();
    go.set_value();
    ASSERT_TRUE(eventually([&] { return target.ends > 0; }));
    EXPECT_TRUE(target.sawCancel);
    EXPECT_EQ(target.works, 1);
}

TEST(ThreadWorker, RunsWithoutAnEndCallAndWithoutAnOwner) {
    Target target;
    std::weak_ptr<ThreadWorker> watched;
    {
        const auto worker =
            ThreadWorker::workOn(&target, &Target::workWithArgumentAlone, "/b", nullptr);
        watched = worker;
        worker->abandon(); // only waits here
    }
    EXPECT_EQ(target.works, 1);
    EXPECT_EQ(target.ends, 0);
    // The thread lets go of it by itself, with no help of an event loop.
    QDeadlineTimer deadline(20'000);
    while (!watched.expired() && !deadline.hasExpired())
        std::this_thread::yield();
    EXPECT_TRUE(watched.expired());
}

// The thread is there until its end call has returned, so that nobody takes the work for over.
TEST(ThreadWorker, WaitsForItsEndCall) {
    Target target;
    target.worker = ThreadWorker::workOn(&target, &Target::work, "", &Target::didEnd);
    std::weak_ptr<ThreadWorker> watched = target.worker;
    while (watched.use_count() < 3) // the target, the thread, the end call that waits
        std::this_thread::yield();
    EXPECT_EQ(target.ends, 0);
    EXPECT_TRUE(eventually([&] { return watched.use_count() == 1; }));
    EXPECT_EQ(target.ends, 1);
}

TEST(ThreadWorker, TheEndCallComesAfterAnExceptionToo) {
    Target target;
    target.worker = ThreadWorker::workOn(&target, &Target::failingWork, 1, &Target::didEnd);
    ASSERT_TRUE(eventually([&] { return target.ends > 0; }));
    EXPECT_TRUE(target.entered);
    EXPECT_THROW(std::rethrow_exception(target.worker->failure()), std::runtime_error);
}

// As a user who may not have another thread.
TEST(ThreadWorker, TheEndCallComesWithoutAThreadToo) {
    test::needRoot();
    const int status = test::runInChild([] {
        const auto user = uid_t(1'000'000 + ::getpid());
        const rlimit none = {1, 1};
        if (::setrlimit(RLIMIT_NPROC, &none) != 0 || ::setresuid(user, user, user) != 0)
            return 1;
        for (const bool runs : {false, true}) {
            ThreadWorker::setRunsWithoutThreads(runs);
            Target target;
            target.worker = ThreadWorker::workOn(&target, &Target::workWithArgumentAlone, "/c",
                                                 &Target::didEnd);
            if (target.ends != 0 || target.works != 0)
                return 2;
            if (!eventually([&] { return target.ends > 0; }))
                return 3;
            if (target.works != int(runs) || bool(target.worker->failure()) == runs)
                return 4;
            // One that nobody waits for runs no more.
            Target gone;
            gone.worker =
                ThreadWorker::workOn(&gone, &Target::workWithArgumentAlone, "/d", &Target::didEnd);
            gone.worker->abandon();
            QCoreApplication::processEvents();
            if (gone.ends + gone.works != 0)
                return 5;
        }
        return 0;
    });
    EXPECT_EQ(status, 0);
}

TEST(ThreadWorker, AbandonedWorkIsWaitedForAndEndsSilently) {
    int ends = 0;
    for (int round = 0; round < 200; ++round) {
        std::promise<void> go;
        auto hold = go.get_future().share();
        auto target = std::make_unique<Target>();
        target->hold = &hold;
        target->worker = ThreadWorker::workOn(target.get(), &Target::work, "", &Target::didEnd);
        go.set_value();
        if (round % 2) // half of them while the end call is on its way
            std::this_thread::yield();
        target->worker->abandon();
        EXPECT_EQ(target->works, 1);
        ends += target->ends;
        target.reset();
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(ends, 0);
}

TEST(ThreadWorker, OwnerMayGoInTheEndCall) {
    auto target = std::make_unique<Target>();
    target->dieInEnd = true;
    target->worker = ThreadWorker::workOn(target.get(), &Target::work, "", &Target::didEnd);
    const std::weak_ptr<ThreadWorker> watched = target->worker;
    ASSERT_TRUE(eventually([&] { return target->ends > 0; }));
    target.reset();
    ASSERT_TRUE(eventually([&] { return watched.expired(); }));
}

} // namespace
} // namespace brightsweep
