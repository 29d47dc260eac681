#pragma once

#include "memory/getMemoryInfo.h"

#include <QString>

namespace brightsweep {

/// The memory's figures in words, as the pages show them.
struct cleanMemoryInfo {
    QString freeMem;
    QString inactiveMem;
    QString activeMem;
    QString wiredMem;
    QString usedMem;
    QString totalMem;

    cleanMemoryInfo() = default;
    explicit cleanMemoryInfo(const MemoryInfo &info);
};

} // namespace brightsweep
