#pragma once

#include "platform/linux/OwnFilesSource.h"

namespace brightsweep {

/// Programs that lie in a folder of their own, such as "/opt/X" or "~/.local/opt/X", of which no
/// package has a file and from which nothing else starts.
class FolderSource final : public OwnFilesSource {
public:
    explicit FolderSource(OwnedPaths owned) : OwnFilesSource(std::move(owned)) {}
    ApplicationKind kind() const override { return ApplicationKind::Folder; }
    Result<std::vector<InstalledApplication>> applications() override;
};

} // namespace brightsweep
