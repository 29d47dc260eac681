#pragma once

#include "platform/VolumeSource.h"
#include "volumes/VolumesManager.h"

#include <QObject>

#include <memory>
#include <set>
#include <vector>

namespace brightsweep {

/// Ejects volumes on workers of their own, as many at once as are asked for, and says which ones
/// are under way. Main thread; the destructor waits for what runs.
class VolumeEjector : public QObject {
    Q_OBJECT

public:
    explicit VolumeEjector(VolumeSource &source, QObject *parent = nullptr);
    ~VolumeEjector() override;

    /// False where that volume is on its way already.
    bool ejectSingleVolume(std::int16_t volRefNumber);
    /// `expected` are those that count as under way while it lasts. False while a run over all
    /// lasts.
    bool ejectAllVolumes(std::set<std::int16_t> expected);

    bool isEjecting(std::int16_t volRefNumber) const;
    bool isEjectingAll() const;

Q_SIGNALS:
    /// The answer of VolumesManager::ejectSingleVolume() and its attempts.
    void singleEjected(bool gone, const std::vector<brightsweep::VolumeEjectAttempt> &attempts);
    /// The answer of VolumesManager::ejectAllVolumes() and its attempts.
    void allEjected(int result, const std::vector<brightsweep::VolumeEjectAttempt> &attempts);

private:
    struct Job;
    void start(std::unique_ptr<Job> job);
    void finish(Job *job);

    VolumeSource &m_source;
    std::vector<std::unique_ptr<Job>> m_jobs;
};

} // namespace brightsweep
