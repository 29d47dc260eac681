#pragma once

#include "platform/LoginItemSource.h"

#include <mutex>

namespace brightsweep {

/// The desktop entries of the user's autostart folder, $XDG_CONFIG_HOME/autostart, and those of
/// the system's, of $XDG_CONFIG_DIRS. An entry is changed byte for byte where it has to be and
/// nowhere else, by a file beside it that takes its name.
class LinuxLoginItemSource final : public LoginItemSource {
public:
    Result<std::vector<LoginItemEntry>> items() override;
    Result<std::vector<LoginItemEntry>> systemItems() override;
    Result<std::string> add(const std::filesystem::path &path, bool hidden) override;
    std::error_code remove(const std::string &file) override;
    std::error_code setHidden(const std::string &file, bool hidden) override;
    std::error_code setSystemItemStarted(const std::string &file, bool started) override;
    std::error_code start(const std::string &file) override;
    std::filesystem::path pathOf(const std::string &file) override;
    std::shared_ptr<void> watch(std::function<void()> changed) override;

private:
    std::mutex m_mutex; // one change at a time
};

} // namespace brightsweep
