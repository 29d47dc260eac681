#pragma once

#include "platform/Workspace.h"

#include <QObject>

#include <memory>

namespace brightsweep {

class SessionBus;

/// Names by the path, types by the shared MIME database, opening by the desktop's own opener,
/// revealing by the file manager's service.
class LinuxWorkspace final : public QObject, public Workspace {
    Q_OBJECT

public:
    explicit LinuxWorkspace(std::shared_ptr<SessionBus> bus);

    QString displayName(const std::filesystem::path &path) override;
    bool isPackage(const std::filesystem::path &path) override;
    QString typeOf(const std::filesystem::path &path) override;
    Result<FileTime> created(const std::filesystem::path &path) override;
    bool isMissing(const std::string &program) override;
    bool mayLieOnAbsentVolume(const std::filesystem::path &path) override;
    bool open(const std::filesystem::path &path) override;
    bool reveal(const std::filesystem::path &path) override;

private:
    std::shared_ptr<SessionBus> m_bus;
};

} // namespace brightsweep
