#pragma once

#include "foundation/FileDescriptor.h"

namespace brightsweep {

/// Wakes a thread that waits in poll(2). wake() is safe from every thread.
class WakePipe {
public:
    WakePipe();

    int descriptor() const { return m_readEnd.get(); }
    void wake();
    /// Takes the wakings so far.
    void drain();

private:
    FileDescriptor m_readEnd;
    FileDescriptor m_writeEnd;
};

} // namespace brightsweep
