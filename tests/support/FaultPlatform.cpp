#include "support/FaultPlatform.h"

#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/linux/LinuxFileOperations.h"

#include <map>
#include <mutex>
#include <utility>

namespace brightsweep::test {

struct FaultPlatform::State {
    std::mutex mutex;
    Fault fault;
    bool waits = false;
    std::map<std::string, std::vector<std::filesystem::path>, std::less<>> calls;

    std::error_code tell(std::string_view call, const std::filesystem::path &argument) {
        std::unique_lock lock(mutex);
        calls[std::string(call)].push_back(argument);
        if (waits) {
            const Fault waiting = fault;
            lock.unlock();
            return waiting(call, argument);
        }
        return fault ? fault(call, argument) : std::error_code();
    }
};

namespace {

std::filesystem::path pathOf(const FileDescriptor &descriptor) {
    std::error_code ignored;
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor.get()),
                                         ignored);
}

} // namespace

// What is not overridden is not told of.
class FaultPlatform::Files final : public LinuxFileOperations {
public:
    Files(std::shared_ptr<State> state, std::unique_ptr<FileOperations> before)
        : m_state(std::move(state)), m_before(std::move(before)) {}

    Result<OpenDirectory> openDirectoryAt(const OpenDirectory &parent, const char *name) override {
        if (const auto error =
                m_state->tell("openDirectoryAt", paths::join(pathOf(parent.descriptor), name)))
            return error;
        return LinuxFileOperations::openDirectoryAt(parent, name);
    }
    std::error_code readBlock(const OpenDirectory &directory, DirectoryBlock &block,
                              WantedAttributes wanted) override {
        if (const auto error = m_state->tell("readBlock", pathOf(directory.descriptor))) {
            block.fill().clear();
            block.setAtEnd(true);
            return error;
        }
        return LinuxFileOperations::readBlock(directory, block, wanted);
    }
    bool isMountPoint(const std::filesystem::path &path) override {
        return m_state->tell("isMountPoint", path) || LinuxFileOperations::isMountPoint(path);
    }
    Result<FileDescriptor> openListedFile(const std::string &path) override {
        if (const auto error = m_state->tell("openListedFile", path))
            return error;
        return LinuxFileOperations::openListedFile(path);
    }
    Result<std::uint64_t> cachedPages(const FileDescriptor &file, std::uint64_t offset,
                                      std::uint64_t length) override {
        if (const auto error = m_state->tell("cachedPages", pathOf(file)))
            return error;
        return LinuxFileOperations::cachedPages(file, offset, length);
    }
    Result<std::size_t> readAt(const FileDescriptor &file, void *data, std::size_t size,
                               std::uint64_t offset) override {
        if (const auto error = m_state->tell("readAt", pathOf(file)))
            return error;
        return LinuxFileOperations::readAt(file, data, size, offset);
    }
    Result<std::size_t> readCachedAt(const FileDescriptor &file, void *data, std::size_t size,
                                     std::uint64_t offset) override {
        if (const auto error = m_state->tell("readCachedAt", pathOf(file)))
            return error;
        return LinuxFileOperations::readCachedAt(file, data, size, offset);
    }
    void dropCached(const FileDescriptor &file, std::uint64_t offset,
                    std::uint64_t length) override {
        if (!m_state->tell("dropCached", pathOf(file)))
            LinuxFileOperations::dropCached(file, offset, length);
    }
    Result<std::uint64_t> nextData(const FileDescriptor &file, std::uint64_t offset) override {
        if (const auto error = m_state->tell("nextData", pathOf(file)))
            return error;
        return LinuxFileOperations::nextData(file, offset);
    }
    bool isDeletable(const OpenItem &item) override {
        return !m_state->tell("isDeletable", item.path) && LinuxFileOperations::isDeletable(item);
    }
    std::error_code removeItem(const OpenItem &item, const RemovalOptions &options) override {
        const auto error = m_state->tell("removeItem", item.path);
        return error ? error : LinuxFileOperations::removeItem(item, options);
    }

private:
    const std::shared_ptr<State> m_state;
    const std::unique_ptr<FileOperations> m_before; ///< a thread may still be in a call of it
};

FaultPlatform::FaultPlatform() : m_state(std::make_shared<State>()) {
    auto &files = Platform::current().files;
    files = std::make_unique<Files>(m_state, std::move(files));
}

void FaultPlatform::setFault(Fault fault, bool waits) {
    const std::lock_guard lock(m_state->mutex);
    m_state->fault = std::move(fault);
    m_state->waits = waits;
}

std::vector<std::filesystem::path> FaultPlatform::argumentsOf(std::string_view name) const {
    const std::lock_guard lock(m_state->mutex);
    const auto found = m_state->calls.find(name);
    return found == m_state->calls.end() ? std::vector<std::filesystem::path>() : found->second;
}

} // namespace brightsweep::test
