#include "volumes/VolumeEjector.h"

#include "core/ThreadWorker.h"

#include <algorithm>

namespace brightsweep {

namespace {

constexpr std::int16_t allVolumes = 0;

} // namespace

// What one worker does and leaves; its fields pass between the threads by the worker's own order.
struct VolumeEjector::Job {
    Job(VolumeEjector &its, std::int16_t number, std::set<std::int16_t> underWay)
        : ejector(its), reference(number), expected(std::move(underWay)) {}

    void work(std::int16_t number) {
        VolumesManager manager(ejector.m_source);
        if (number == allVolumes)
            result = manager.ejectAllVolumes();
        else
            result = manager.ejectSingleVolume(number) ? 0 : 1;
        attempts = manager.lastEjects();
    }
    void didEnd() { ejector.finish(this); }

    VolumeEjector &ejector;
    const std::int16_t reference;
    const std::set<std::int16_t> expected;
    std::int32_t result = 1; // unless the work says otherwise
    std::vector<VolumeEjectAttempt> attempts;
    std::shared_ptr<ThreadWorker> worker;
};

VolumeEjector::VolumeEjector(VolumeSource &source, QObject *parent)
    : QObject(parent), m_source(source) {}

VolumeEjector::~VolumeEjector() {
    for (const auto &job : m_jobs)
        job->worker->abandon();
}

bool VolumeEjector::ejectSingleVolume(std::int16_t volRefNumber) {
    if (isEjecting(volRefNumber))
        return false;
    start(std::make_unique<Job>(*this, volRefNumber, std::set{volRefNumber}));
    return true;
}

bool VolumeEjector::ejectAllVolumes(std::set<std::int16_t> expected) {
    if (isEjectingAll())
        return false;
    start(std::make_unique<Job>(*this, allVolumes, std::move(expected)));
    return true;
}

bool VolumeEjector::isEjecting(std::int16_t volRefNumber) const {
    return std::any_of(m_jobs.begin(), m_jobs.end(),
                       [&](const auto &job) { return job->expected.contains(volRefNumber); });
}

bool VolumeEjector::isEjectingAll() const {
    return std::any_of(m_jobs.begin(), m_jobs.end(),
                       [](const auto &job) { return job->reference == allVolumes; });
}

void VolumeEjector::start(std::unique_ptr<Job> job) {
    job->worker = ThreadWorker::workOn(job.get(), &Job::work, job->reference, &Job::didEnd);
    m_jobs.push_back(std::move(job));
}

void VolumeEjector::finish(Job *job) {
    const auto found = std::find_if(m_jobs.begin(), m_jobs.end(),
                                    [&](const auto &each) { return each.get() == job; });
    // The job that ends lives until its signal has been heard.
    const std::unique_ptr<Job> ended = std::move(*found);
    m_jobs.erase(found);
    if (ended->reference == allVolumes)
        Q_EMIT allEjected(ended->result, ended->attempts);
    else
        Q_EMIT singleEjected(ended->result == 0, ended->attempts);
}

} // namespace brightsweep
