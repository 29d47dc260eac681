#pragma once

#include "platform/VolumeSource.h"

#include <algorithm>
#include <map>
#include <mutex>

namespace brightsweep::test {

/// Volumes as a test says, which note every attempt to eject one. The fields are a test's own
/// while no other thread ejects; remove() is safe at any time.
class FakeVolumeSource final : public VolumeSource {
public:
    std::vector<VolumeFacts> mounted;
    std::map<std::int16_t, EjectResult> refusals;
    std::vector<std::int16_t> ejected;
    std::function<void(const MountEvent &)> mountHandler;
    std::function<void()> factsHandler;
    /// Called on the ejecting thread before anything else; may take its time.
    std::function<void()> beforeEject;

    /// A volume with capacity whose number is its place in the list.
    VolumeFacts &add(const std::string &root) {
        VolumeFacts facts;
        facts.refNumber = std::int16_t(mounted.size() + 1);
        facts.name = "volume";
        facts.root = root;
        facts.totalBytes = 2'000'000'000;
        facts.freeBytes = 500'000'000;
        facts.deviceId = "sda1";
        facts.optical = OpticalMedia::No;
        return mounted.emplace_back(facts);
    }
    void remove(std::int16_t refNumber) {
        const std::lock_guard lock(m_mutex);
        std::erase_if(mounted,
                      [&](const VolumeFacts &facts) { return facts.refNumber == refNumber; });
    }

    std::vector<VolumeFacts> volumes() override {
        const std::lock_guard lock(m_mutex);
        return mounted;
    }
    void settle(int) override {}
    EjectResult eject(std::int16_t refNumber) override {
        if (beforeEject)
            beforeEject();
        EjectResult result;
        {
            const std::lock_guard lock(m_mutex);
            ejected.push_back(refNumber);
            if (const auto refusal = refusals.find(refNumber); refusal != refusals.end())
                result = refusal->second;
        }
        if (result.status == 0 || result.driveStays)
            remove(refNumber);
        return result;
    }
    void setMountHandler(std::function<void(const MountEvent &)> handler) override {
        mountHandler = std::move(handler);
    }
    void setFactsHandler(std::function<void()> handler) override {
        factsHandler = std::move(handler);
    }

private:
    std::mutex m_mutex;
};

} // namespace brightsweep::test
