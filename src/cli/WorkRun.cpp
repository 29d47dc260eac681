#include "cli/WorkRun.h"

#include "core/ThreadWorker.h"

#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <exception>
#include <memory>

namespace brightsweep::cli {

namespace {

constexpr std::chrono::milliseconds pollInterval(50);

struct Job {
    explicit Job(const Work &toRun) : work(toRun) {}
    void run(int) { work.run(); }
    void ended() {
        failure = worker->failure();
        loop.quit();
    }

    const Work &work;
    QEventLoop loop;
    std::shared_ptr<ThreadWorker> worker;
    std::exception_ptr failure;
};

} // namespace

void runWork(const Work &work, Output &output) {
    Job job(work);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        if (interrupted())
            work.stop();
        if (output.showsProgress())
            output.progress(work.progress());
    });
    poll.start(pollInterval);
    job.worker = ThreadWorker::workOn(&job, &Job::run, 0, &Job::ended);
    job.loop.exec();
    output.progress({});
    if (job.failure)
        std::rethrow_exception(job.failure);
}

} // namespace brightsweep::cli
