#pragma once

#include "platform/linux/OwnFilesSource.h"

namespace brightsweep {

/// AppImages, type 1 and 2: in the folders where people keep them, and wherever an entry starts
/// one. Never run to find something out.
class AppImageSource final : public OwnFilesSource {
public:
    explicit AppImageSource(OwnedPaths owned) : OwnFilesSource(std::move(owned)) {}
    ApplicationKind kind() const override { return ApplicationKind::AppImage; }
    Result<std::vector<InstalledApplication>> applications() override;
    std::vector<std::filesystem::path> watched() const override;
};

/// True for a regular file that is an AppImage by its first bytes.
bool isAppImage(const std::filesystem::path &file);

} // namespace brightsweep
