#pragma once

#include "cli/Command.h"
#include "diskusage/UsageRemoval.h"

#include <filesystem>
#include <vector>

namespace brightsweep::cli {

/// `usage PATH --remove ITEM…`: removes items below the folder, or moves them to the trash, by the
/// rules of the disk usage page. Without --apply it says what would go.
class UsageRemoving {
public:
    static void configure(QCommandLineParser &parser);
    /// Done, or the exit status after the line of a wrong usage. `removes` is false where nothing
    /// is to be removed.
    static int read(const QCommandLineParser &parser, Output &output, UsageRemoving &removing,
                    bool &removes);

    /// The folder is canonical. Returns the exit status.
    int run(const std::filesystem::path &folder, Output &output);

private:
    struct Job;

    Result<UsageItem> find(const RemovalRoot &root, const std::filesystem::path &given,
                           const std::atomic<bool> &stop);
    void work(Job &job);
    std::string document(const Job &job, const std::filesystem::path &folder) const;
    int tell(const Job &job, const std::filesystem::path &folder, Output &output);

    std::vector<std::filesystem::path> m_given;
    UsageRemoval::Options m_options;
    bool m_admin = false;
};

} // namespace brightsweep::cli
