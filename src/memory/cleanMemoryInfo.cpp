#include "memory/cleanMemoryInfo.h"

#include "core/UtilityFunction.h"

namespace brightsweep {

cleanMemoryInfo::cleanMemoryInfo(const MemoryInfo &info)
    : freeMem(UtilityFunction::covertCleanMemory(info.freeMem)),
      inactiveMem(UtilityFunction::covertCleanMemory(info.inactiveMem)),
      activeMem(UtilityFunction::covertCleanMemory(info.activeMem)),
      wiredMem(UtilityFunction::covertCleanMemory(info.wiredMem)),
      usedMem(UtilityFunction::covertCleanMemory(info.usedMem)),
      totalMem(UtilityFunction::covertCleanMemory(info.totalMem)) {}

} // namespace brightsweep
