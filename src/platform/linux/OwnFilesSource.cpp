#include "platform/linux/OwnFilesSource.h"

#include "foundation/PathBytes.h"
#include "foundation/SaturatingSum.h"
#include "platform/DirectoryWalk.h"
#include "platform/MountsBelow.h"
#include "platform/Platform.h"
#include "platform/linux/RunningPrograms.h"

#include <algorithm>
#include <memory>
#include <mutex>

namespace brightsweep {

namespace {

class SizeOfFolder final : public DirectoryWalk::Visitor {
public:
    SizeOfFolder(FileOperations &files, OpenDirectory folder)
        : m_mounts(MountsBelow::of(files, folder)), m_walk(files, *this, {}) {
        m_walk.addRoot(std::make_shared<const OpenDirectory>(std::move(folder)), nullptr);
        m_walk.run();
    }

    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override {
        const std::lock_guard lock(m_mutex);
        for (const DirectoryEntry &entry : block.entries()) {
            if (entry.type != EntryType::Directory)
                bytes = addSaturating(bytes, entry.size);
            else if (!m_mounts.isAt(directory, entry.nameView()))
                m_walk.enter(directory, entry.nameView(), nullptr);
        }
    }

    std::uint64_t bytes = 0;

private:
    const MountsBelow m_mounts;
    DirectoryWalk m_walk;
    std::mutex m_mutex;
};

} // namespace

std::vector<std::string>
OwnFilesSource::runningOf(const std::vector<InstalledApplication> &applications) {
    std::vector<std::string> keys;
    if (applications.empty())
        return keys;
    const auto programs = runningPrograms();
    for (const InstalledApplication &application : applications) {
        if (std::any_of(programs.begin(), programs.end(), [&](const RunningProgram &program) {
                return paths::isSameOrBelow(program.file, application.path.native());
            }))
            keys.push_back(application.key);
    }
    return keys;
}

std::vector<std::filesystem::path> OwnFilesSource::watched() const {
    return desktopEntryFolders();
}

RemovalPlan OwnFilesSource::plan(const InstalledApplication &application) {
    RemovalPlan plan;
    plan.application = application;
    if (!application.usedBy.empty()) {
        plan.blocker = Blocker::Unsupported;
        plan.reason = "used by " + application.usedBy.native();
    }
    return plan;
}

RemovalResult OwnFilesSource::remove(const RemovalPlan &, const RightsToken *) {
    return {UninstallOutcome::Failed, "no manager knows of it", {}};
}

std::uint64_t OwnFilesSource::sizeOf(const InstalledApplication &application) {
    if (application.bytes)
        return *application.bytes;
    FileOperations &files = *Platform::current().files;
    auto folder = files.openDirectory(application.path);
    return folder ? SizeOfFolder(files, *std::move(folder)).bytes : 0;
}

} // namespace brightsweep
