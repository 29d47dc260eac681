#pragma once

#include "platform/FileIdentity.h"

#include <string>
#include <vector>

namespace brightsweep {

/// A file or directory that a running program has open, as its working folder, as its program or
/// mapped.
struct HeldFile {
    std::string path;    ///< absolute, without links; bytes
    std::string program; ///< its name
};

/// Which files running programs hold. Safe from every thread; looks at every process and is not for
/// the main thread.
class FileHolders {
public:
    virtual ~FileHolders();
    virtual std::string unavailableReason() const { return {}; }

    /// Of processes of other users only what the system shows, and none of this process. Asks no
    /// file system for any of the files.
    virtual std::vector<HeldFile> heldFiles() = 0;
    /// The files that they have open, or mapped and shared, for writing; sorted. Likewise.
    virtual std::vector<FileIdentity> writtenFiles() = 0;
};

} // namespace brightsweep
