#include "cli/WorkRun.h"

#include "cli/Interruption.h"
#include "cli/JsonWriter.h"
#include "core/ThreadWorker.h"
#include "removal/NvAuthorization.h"
#include "removal/RemovalRun.h"

#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <exception>
#include <memory>
#include <utility>

namespace brightsweep::cli {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds pollInterval(50);

struct Job {
    explicit Job(const Work &toRun) : work(toRun) {}
    void run(int) { work.run(); }
    void ended() { loop.quit(); }

    const Work &work;
    QEventLoop loop;
    std::shared_ptr<ThreadWorker> worker;
};

} // namespace

bool waitInterruptibly(QEventLoop &loop, Output &output, const std::function<void()> &stop,
                       const std::function<std::string()> &progress) {
    constexpr int leftBehind = 1;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (Interruption::signal() != 0)
            stop();
        if (Interruption::timeIsUp())
            loop.exit(leftBehind);
        else if (output.showsProgress())
            output.progress(progress());
    });
    poll.start(pollInterval);
    const bool ended = loop.exec() != leftBehind;
    output.progress({});
    // The folders that a removal has opened up are closed by nobody else.
    if (!ended)
        RemovalRun::endForQuit(milliseconds(0));
    return ended;
}

int runWork(const Work &work, Output &output) {
    Job job(work);
    job.worker = ThreadWorker::workOn(&job, &Job::run, 0, &Job::ended);
    const bool ended = waitInterruptibly(job.loop, output, work.stop, work.progress);
    if (const auto failure = ended ? job.worker->failure() : nullptr)
        std::rethrow_exception(failure);
    // To make it up may take a while, too.
    Interruption::outputBegins();
    if (Interruption::signal() != 0 && !output.json)
        output.warning("Interrupted: this is what was known by then.");
    const int status = work.tell(!ended);
    if (!ended)
        Interruption::end(status);
    return status;
}

void writeInterrupted(JsonWriter &json) {
    if (Interruption::signal() != 0)
        json.key("interrupted").value(true);
}

bool RemovalJob::begin(const std::string &command, Output &output) {
    auto begun = RemovalRun::begin("brightsweep-cli " + command);
    if (!begun.run)
        output.warning(RemovalRun::refusal(begun).toStdString());
    run = std::move(begun.run);
    return run != nullptr;
}

int runRemoval(RemovalJob &job, const std::function<void()> &work, const std::function<int()> &tell,
               Output &output) {
    return runWork({work,
                    [&job] {
                        job.stop = true;
                        if (job.run)
                            job.run->stop();
                    },
                    [&job] {
                        const std::lock_guard lock(job.mutex);
                        return job.current;
                    },
                    [&](bool leftBehind) {
                        if (!leftBehind)
                            NvAuthorization::shareNvAuthorization().freeAuthorization();
                        job.run.reset();
                        const std::lock_guard lock(job.mutex);
                        return tell();
                    }},
                   output);
}

} // namespace brightsweep::cli
