#include "memory/getMemoryInfo.h"

#include "platform/MemorySource.h"
#include "platform/Platform.h"
#include "platform/SystemFacts.h"

#include <cstring>

namespace brightsweep {

namespace {

constexpr std::uint64_t usualPageSize = 4096;

} // namespace

int getMemoryInfo(MemoryInfo *info) {
    if (!info)
        return -1;
    int lastError = 0;
    std::uint64_t pageSize = usualPageSize;
    std::uint64_t thrownAway = 0;
    const struct {
        const char *name;
        std::uint64_t *value;
    } names[] = {
        {"hw.pagesize", &pageSize},
        {"hw.physmem", &thrownAway},
        {"hw.memsize", &info->totalMem},
    };
    for (const auto &each : names) {
        const auto read = Platform::current().facts->kernelValue(each.name);
        if (!read)
            lastError = read.error().value();
        else if (read->size() == sizeof *each.value)
            std::memcpy(each.value, read->data(), sizeof *each.value);
    }
    if (const auto counts = Platform::current().memory->counts()) {
        info->freeMem = counts->free * pageSize;
        info->inactiveMem = counts->inactive * pageSize;
        info->activeMem = counts->active * pageSize;
        info->wiredMem = counts->wired * pageSize;
        info->pageIn = counts->pageIn * pageSize;
        info->pageOut = counts->pageOut * pageSize;
        info->vMem = counts->faults * pageSize;
    }
    info->usedMem = info->totalMem - info->freeMem;
    return lastError;
}

} // namespace brightsweep
