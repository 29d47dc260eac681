#include "platform/linux/ReferenceNumbers.h"

#include "platform/linux/BlockDevice.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <set>
#include <span>

namespace brightsweep {

namespace {

constexpr std::int16_t lastNumber = 32767;

// listmount(2) and statmount(2), which the system's headers may not know yet. Their numbers are
// the same on every machine.
constexpr long statmountCall = 457;
constexpr long listmountCall = 458;
constexpr std::uint64_t wholeNamespace = ~std::uint64_t(0);
constexpr std::uint64_t basicFacts = 2;

struct MountRequest {
    std::uint32_t size = sizeof(MountRequest);
    std::uint32_t spare = 0;
    std::uint64_t id = 0;
    std::uint64_t parameter = 0;
};

// The head of the answer up to what is read here; the kernel fills the whole buffer.
struct MountAnswer {
    std::uint64_t sizeAndOptions;
    std::uint64_t mask;
    std::uint64_t device;
    std::uint64_t magic;
    std::uint64_t flagsAndType;
    std::uint64_t id;
    std::uint64_t parentId;
    std::uint32_t oldId;
    std::uint32_t oldParentId;
    std::array<std::uint64_t, 56> rest;
};
static_assert(sizeof(MountAnswer) == 512);

// The kernel's lasting ids by those of the mount table, which are soon used again.
std::map<std::int32_t, MountIdentity> kernelIdentities() {
    std::map<std::int32_t, MountIdentity> identities;
    MountRequest list;
    list.id = wholeNamespace;
    std::array<std::uint64_t, 256> ids;
    for (;;) {
        const long count = ::syscall(listmountCall, &list, ids.data(), ids.size(), 0);
        if (count <= 0)
            return identities;
        for (const std::uint64_t id : std::span(ids.data(), std::size_t(count))) {
            MountRequest request;
            request.id = id;
            request.parameter = basicFacts;
            MountAnswer answer = {};
            if (::syscall(statmountCall, &request, &answer, sizeof answer, 0) == 0 &&
                (answer.mask & basicFacts))
                identities[std::int32_t(answer.oldId)] = answer.id;
        }
        list.parameter = ids[std::size_t(count) - 1];
    }
}

// FNV-1a; the number must be the same in every process, which std::hash does not promise.
std::uint64_t mix(std::uint64_t hash, std::string_view bytes) {
    for (const char byte : bytes)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    return hash;
}

MountIdentity derivedIdentity(const Mount &mount) {
    const std::string facts = std::to_string(mount.id) + " " + std::to_string(mount.deviceMajor) +
                              ":" + std::to_string(mount.deviceMinor) + " " +
                              mediumSequence(mount.deviceMajor, mount.deviceMinor) + " " +
                              mount.mountPoint;
    const std::uint64_t hash = mix(0xcbf29ce484222325, facts);
    return hash ^ (hash >> 32);
}

} // namespace

std::vector<MountIdentity> mountIdentities(const std::vector<SelectedVolume> &volumes) {
    const auto known = kernelIdentities();
    std::vector<MountIdentity> identities;
    for (const SelectedVolume &volume : volumes) {
        const auto found = known.find(volume.mount.id);
        identities.push_back(found != known.end() ? found->second : derivedIdentity(volume.mount));
    }
    return identities;
}

std::vector<std::int16_t> ReferenceNumbers::assign(const std::vector<MountIdentity> &identities) {
    const std::lock_guard lock(m_mutex);
    const std::set<MountIdentity> present(identities.begin(), identities.end());
    std::erase_if(m_numbers, [&](const auto &entry) { return !present.contains(entry.first); });
    std::set<std::int16_t> taken;
    for (const auto &[identity, number] : m_numbers)
        taken.insert(number);
    // In the order of the identities, so that of two with the same remainder the older has it in
    // every process.
    for (const MountIdentity identity : present) {
        if (m_numbers.contains(identity))
            continue;
        auto number = std::int16_t(identity % lastNumber + 1);
        while (!taken.insert(number).second)
            number = number == lastNumber ? std::int16_t(1) : std::int16_t(number + 1);
        m_numbers[identity] = number;
    }
    std::vector<std::int16_t> numbers;
    for (const MountIdentity identity : identities)
        numbers.push_back(m_numbers[identity]);
    return numbers;
}

} // namespace brightsweep
