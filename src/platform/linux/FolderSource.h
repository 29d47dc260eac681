#pragma once

#include "platform/linux/OwnFilesSource.h"

namespace brightsweep {

/// Programs that lie in a folder of their own, such as "/opt/X" or "~/.local/opt/X", of which no
/// package has a file. One from which something else starts is listed as used by that, and stays;
/// among the user's data, where it may be that one's, it is not listed.
class FolderSource final : public OwnFilesSource {
public:
    explicit FolderSource(OwnedPaths owned) : OwnFilesSource(std::move(owned)) {}
    ApplicationKind kind() const override { return ApplicationKind::Folder; }
    Result<std::vector<InstalledApplication>> applications() override;
};

} // namespace brightsweep
