#pragma once

#include "platform/Workspace.h"

namespace brightsweep {

/// Names by the path, types by the shared MIME database, opening by the desktop's own opener.
class LinuxWorkspace final : public Workspace {
public:
    QString displayName(const std::filesystem::path &path) override;
    bool isPackage(const std::filesystem::path &path) override;
    QString typeOf(const std::filesystem::path &path) override;
    bool open(const std::filesystem::path &path) override;
    bool reveal(const std::filesystem::path &path) override;
};

} // namespace brightsweep
