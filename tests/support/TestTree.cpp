#include "support/TestTree.h"

#include "foundation/FileDescriptor.h"
#include "foundation/Paths.h"
#include "support/TestEnvironment.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

namespace brightsweep::test {

namespace {

void check(bool done, const std::filesystem::path &path) {
    if (!done)
        throw std::filesystem::filesystem_error("TestTree", path,
                                                std::error_code(errno, std::generic_category()));
}

} // namespace

TestTree::TestTree() : TestTree(TestEnvironment::current().work()) {}

TestTree::TestTree(std::filesystem::path top) : m_top(std::move(top)) {
    std::filesystem::create_directories(m_top);
}

std::filesystem::path TestTree::path(std::string_view relative) const {
    return relative.empty() ? m_top : paths::join(m_top, relative);
}

std::filesystem::path TestTree::directory(std::string_view relative) {
    std::filesystem::create_directories(path(relative));
    return path(relative);
}

std::filesystem::path TestTree::file(std::string_view relative, std::string_view contents) {
    const auto file = path(relative);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(contents.data(), std::streamsize(contents.size()));
    stream.close();
    check(bool(stream), file);
    return file;
}

std::filesystem::path TestTree::sparseFile(std::string_view relative, std::uint64_t size) {
    const auto file = this->file(relative, "");
    check(::truncate(file.c_str(), off_t(size)) == 0, file);
    return file;
}

std::filesystem::path TestTree::link(std::string_view relative,
                                     const std::filesystem::path &target) {
    std::filesystem::create_directories(path(relative).parent_path());
    check(::symlink(target.c_str(), path(relative).c_str()) == 0, path(relative));
    return path(relative);
}

std::filesystem::path TestTree::hardLink(std::string_view relative,
                                         const std::filesystem::path &target) {
    std::filesystem::create_directories(path(relative).parent_path());
    check(::link(target.c_str(), path(relative).c_str()) == 0, path(relative));
    return path(relative);
}

std::filesystem::path TestTree::fifo(std::string_view relative) {
    std::filesystem::create_directories(path(relative).parent_path());
    check(::mkfifo(path(relative).c_str(), 0600) == 0, path(relative));
    return path(relative);
}

std::filesystem::path TestTree::socket(std::string_view relative) {
    const auto place = path(relative);
    std::filesystem::create_directories(place.parent_path());
    const FileDescriptor descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    check(place.native().copy(address.sun_path, sizeof address.sun_path - 1) ==
              place.native().size(),
          place);
    check(::bind(descriptor.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) ==
              0,
          place);
    return place;
}

std::filesystem::path TestTree::deepChain(std::string_view relative, unsigned levels) {
    const auto first = directory(relative);
    FileDescriptor current(::open(first.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (unsigned level = 1; level < levels; ++level) {
        check(::mkdirat(current.get(), "d", 0755) == 0, first);
        FileDescriptor next(::openat(current.get(), "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        check(bool(next), first);
        current = std::move(next);
    }
    return first;
}

void TestTree::mode(std::string_view relative, unsigned bits) {
    check(::chmod(path(relative).c_str(), bits) == 0, path(relative));
}

void TestTree::own(std::string_view relative, unsigned user) {
    check(::lchown(path(relative).c_str(), user, user) == 0, path(relative));
    if (!std::filesystem::is_directory(std::filesystem::symlink_status(path(relative))))
        return;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(path(relative)))
        check(::lchown(entry.path().c_str(), user, user) == 0, entry.path());
}

bool TestTree::exists(std::string_view relative) const {
    struct stat status;
    return ::lstat(path(relative).c_str(), &status) == 0;
}

std::map<std::string, std::string> TestTree::snapshot(std::string_view relative) const {
    std::map<std::string, std::string> items;
    const auto top = path(relative);
    for (const auto &entry : std::filesystem::recursive_directory_iterator(
             top, std::filesystem::directory_options::skip_permission_denied)) {
        struct stat status {};
        check(::lstat(entry.path().c_str(), &status) == 0, entry.path());
        std::string facts = std::to_string(status.st_ino) + " " + std::to_string(status.st_mode) +
                            " " + std::to_string(status.st_nlink);
        if (S_ISREG(status.st_mode) && status.st_size < (1 << 20)) {
            facts += " " + textOf(entry.path());
        } else if (S_ISLNK(status.st_mode)) {
            facts += " -> " + std::filesystem::read_symlink(entry.path()).native();
        } else if (S_ISREG(status.st_mode)) {
            facts += " " + std::to_string(status.st_size);
        }
        items[entry.path().native().substr(top.native().size() + 1)] = facts;
    }
    return items;
}

std::string textOf(const std::filesystem::path &file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace brightsweep::test
