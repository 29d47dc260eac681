#pragma once

#include <malloc.h>

namespace brightsweep {

/// Thousands of lists and entries have been read in its time: what that took goes back to the
/// system at its end, and not only to the worker that read them.
struct GivesMemoryBack {
    GivesMemoryBack() = default;
    GivesMemoryBack(const GivesMemoryBack &) = delete;
    GivesMemoryBack &operator=(const GivesMemoryBack &) = delete;
    ~GivesMemoryBack() { ::malloc_trim(0); }
};

} // namespace brightsweep
