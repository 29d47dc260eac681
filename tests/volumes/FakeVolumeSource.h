#pragma once

#include "platform/VolumeSource.h"

#include <algorithm>
#include <map>

namespace brightsweep::test {

/// Volumes as a test says, which note every attempt to eject one.
class FakeVolumeSource final : public VolumeSource {
public:
    std::vector<VolumeFacts> mounted;
    std::map<std::int16_t, EjectResult> refusals;
    std::vector<std::int16_t> ejected;
    std::function<void(const MountEvent &)> mountHandler;

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

    std::vector<VolumeFacts> volumes() override { return mounted; }
    void settle(int) override {}
    EjectResult eject(std::int16_t refNumber) override {
        ejected.push_back(refNumber);
        if (const auto refusal = refusals.find(refNumber); refusal != refusals.end())
            return refusal->second;
        std::erase_if(mounted,
                      [&](const VolumeFacts &facts) { return facts.refNumber == refNumber; });
        return {};
    }
    void setMountHandler(std::function<void(const MountEvent &)> handler) override {
        mountHandler = std::move(handler);
    }
    void setFactsHandler(std::function<void()>) override {}
};

} // namespace brightsweep::test
