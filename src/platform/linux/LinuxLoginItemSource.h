#pragma once

#include "platform/LoginItemSource.h"

#include <map>
#include <memory>
#include <mutex>

namespace brightsweep {

class DesktopEntry;
class DirectoryWatch;

/// The desktop entries of the user's autostart folder, $XDG_CONFIG_HOME/autostart, and those of
/// the system's, of $XDG_CONFIG_DIRS. An entry is changed byte for byte where it has to be and
/// nowhere else, by a file beside it that takes its name.
class LinuxLoginItemSource final : public LoginItemSource {
public:
    LinuxLoginItemSource();
    ~LinuxLoginItemSource() override;

    Result<std::vector<LoginItemEntry>> items() override;
    Result<std::vector<LoginItemEntry>> systemItems() override;
    Result<std::string> add(const std::filesystem::path &path, bool hidden) override;
    std::error_code remove(const std::string &file) override;
    std::error_code setHidden(const std::string &file, bool hidden) override;
    std::error_code setSystemItemStarted(const std::string &file, bool started) override;
    std::error_code start(const std::string &file) override;
    std::filesystem::path pathOf(const std::string &file) override;
    void setChangedHandler(std::function<void()> changed) override;

private:
    std::mutex m_mutex; // one change at a time
    std::unique_ptr<DirectoryWatch> m_watch;
};

} // namespace brightsweep
