#include "cleaning/BrowseFolderOperation.h"

#include "cleaning/CleanNotifications.h"
#include "cleaning/ItemSizes.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/SaturatingSum.h"
#include "platform/MountsBelow.h"
#include "platform/Platform.h"

namespace brightsweep {

namespace {

constexpr char rule[] = "=======================================================";

void post(QLatin1String name, const QVariantMap &userInfo = {}) {
    NotificationCenter::defaultCenter().post(name, nullptr, userInfo);
}

// One thread: the lines of one object stay together, and the order of objects is that of the walk.
class LoggingVisitor final : public DirectoryWalk::Visitor {
public:
    LoggingVisitor(const std::filesystem::path &top, MountsBelow mounts,
                   const std::atomic<bool> &stop)
        : m_top(top), m_mounts(std::move(mounts)), m_stop(stop) {}

    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override {
        const std::filesystem::path folder = paths::join(m_top, directory.wayTo({}));
        for (const DirectoryEntry &entry : block.entries()) {
            if (m_stop)
                return;
            m_log.log(rule);
            m_log.log("%@", paths::join(folder, entry.nameView()));
            m_log.log(rule);
            if (entry.type == EntryType::Directory) {
                if (!m_mounts.isAt(directory, entry.nameView()))
                    walk->enter(directory, entry.nameView(), nullptr);
            } else if (entry.hasAttributes) {
                size = addSaturating(size, entry.size);
            }
            ++count;
        }
    }

    void read(DirectoryWalk::Directory &directory, std::error_code) override {
        // Every level that sees the stop tells of it.
        for (const auto *level = &directory; level && m_stop; level = level->parent())
            post(DSCleanCanceled);
    }

    DirectoryWalk *walk = nullptr;
    std::uint64_t size = 0;
    std::uint64_t count = 0;

private:
    const std::filesystem::path &m_top;
    const MountsBelow m_mounts;
    const std::atomic<bool> &m_stop;
    ObjectLog m_log;
};

} // namespace

BrowseFolderOperation::BrowseFolderOperation(std::vector<RemovalRoot> rootPath)
    : folderPathArr(std::move(rootPath)) {}

void BrowseFolderOperation::main() {
    if (isCancelled())
        return post(DSCleanCanceled);
    std::uint64_t folderSize = 0;
    std::uint64_t fileCount = 0;
    for (const RemovalRoot &folder : folderPathArr) {
        if (isCancelled())
            return post(DSCleanCanceled);
        post(DSScanSingleFolder, {{QStringLiteral("FolderPath"), paths::toVariant(folder.path)}});
        folderSize = addSaturating(folderSize, sizeOfItemAtPath(folder, fileCount));
    }
    post(DSScanOperationFinish, {{QStringLiteral("FolderSize"), qulonglong(folderSize)},
                                 {QStringLiteral("FileCount"), qulonglong(fileCount)}});
}

std::uint64_t BrowseFolderOperation::sizeOfItemAtPath(const RemovalRoot &path,
                                                      std::uint64_t &filesNum) {
    NSLog("It will get size of directory: %@", path.path);
    FileOperations &files = *Platform::current().files;
    auto folder = files.openRoot(path);
    if (!folder)
        return 0;
    LoggingVisitor visitor(path.path, MountsBelow::of(files, *folder), cancelledFlag());
    DirectoryWalk walk(files, visitor, {WantedAttributes::NonDirectories, 1, &cancelledFlag()});
    visitor.walk = &walk;
    walk.addRoot(std::make_shared<const OpenDirectory>(std::move(*folder)), nullptr);
    walk.run();
    filesNum += visitor.count;
    return visitor.size;
}

} // namespace brightsweep
