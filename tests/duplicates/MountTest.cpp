#include "duplicates/SearchSupport.h"
#include "foundation/FileDescriptor.h"
#include "support/NeedsRoot.h"
#include "support/TestTree.h"

#include <fcntl.h>
#include <linux/fuse.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <thread>

namespace brightsweep::test {
namespace {

// Runs the function on a thread with mounts of its own; false where the system does not allow it.
bool withOwnMounts(const std::function<void()> &function) {
    bool allowed = false;
    std::thread([&] {
        allowed = ::unshare(CLONE_FS | CLONE_NEWNS) == 0 &&
                  ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        if (allowed)
            function();
    }).join();
    return allowed;
}

bool bind(const std::filesystem::path &from, const std::filesystem::path &to) {
    return ::mount(from.c_str(), to.c_str(), nullptr, MS_BIND, nullptr) == 0;
}

// The same file by another way is not a second one; a hard link is.
TEST(Mounts, AFileIsNeverItsOwnDuplicate) {
    needRoot();
    TestTree tree;
    const std::string data = bytes(50'000, 1);
    tree.file("real/sub/f", data);
    tree.file("real/sub/A.app/m", data);
    tree.directory("bound");
    tree.file("single", "");
    tree.link("link", tree.path("real"));
    tree.link("up", tree.top());
    const bool allowed = withOwnMounts([&] {
        ASSERT_TRUE(bind(tree.path("real/sub"), tree.path("bound")));
        ASSERT_TRUE(bind(tree.path("real/sub/f"), tree.path("single")));
        EXPECT_EQ(search(tree.top(), {.limit = 1000}), Groups());
        // With a second name of its own it is found under these two, however often it is mounted.
        tree.hardLink("real/other", tree.path("real/sub/f"));
        const Groups groups = search(tree.top(), {.limit = 1000});
        ASSERT_EQ(groups.size(), 1u);
        ASSERT_EQ(groups[0].size(), 2u);
        int others = 0;
        for (const std::string &path : groups[0]) {
            EXPECT_NE(path, tree.path("single").native());
            others += path.ends_with("/other");
        }
        EXPECT_EQ(others, 1);
        ASSERT_EQ(::umount(tree.path("single").c_str()), 0);
        ASSERT_EQ(::umount(tree.path("bound").c_str()), 0);
    });
    EXPECT_TRUE(allowed);
}

// A file system in this process: files "1" to "4" of the same contents, and those with an even
// number cannot be read past half of them.
class BrokenDisk {
public:
    static constexpr std::uint64_t size = 300'000;

    bool start(const std::filesystem::path &place) {
        m_device = FileDescriptor(::open("/dev/fuse", O_RDWR | O_CLOEXEC));
        const std::string options =
            "fd=" + std::to_string(m_device.get()) + ",rootmode=40000,user_id=0,group_id=0";
        if (!m_device || ::mount("broken", place.c_str(), "fuse", 0, options.c_str()) != 0)
            return false;
        m_place = place;
        m_thread = std::thread([this] { serve(); });
        return true;
    }
    ~BrokenDisk() {
        if (m_thread.joinable()) {
            ::umount2(m_place.c_str(), MNT_DETACH);
            m_thread.join();
        }
    }

private:
    void serve() {
        std::vector<char> request(1 << 20);
        for (;;) {
            const ssize_t got = ::read(m_device.get(), request.data(), request.size());
            if (got < 0 && (errno == EINTR || errno == EAGAIN || errno == ENOENT))
                continue;
            if (got < ssize_t(sizeof(fuse_in_header)))
                return; // It has been unmounted.
            fuse_in_header header;
            std::memcpy(&header, request.data(), sizeof header);
            answer(header, request.data() + sizeof header);
        }
    }

    void answer(const fuse_in_header &header, const char *body) {
        switch (header.opcode) {
        case FUSE_INIT: {
            fuse_init_out out{};
            out.major = FUSE_KERNEL_VERSION;
            out.minor = FUSE_KERNEL_MINOR_VERSION;
            out.max_write = 4096;
            return reply(header, 0, &out, sizeof out);
        }
        case FUSE_LOOKUP: {
            fuse_entry_out out{};
            out.nodeid = std::uint64_t(body[0] - '0') + 1;
            out.attr = attributes(out.nodeid);
            const bool known = out.nodeid >= 2 && out.nodeid <= 5 && body[1] == '\0';
            return known ? reply(header, 0, &out, sizeof out) : reply(header, -ENOENT, nullptr, 0);
        }
        case FUSE_GETATTR: {
            fuse_attr_out out{};
            out.attr = attributes(header.nodeid);
            return reply(header, 0, &out, sizeof out);
        }
        case FUSE_OPEN:
        case FUSE_OPENDIR: {
            const fuse_open_out out{};
            return reply(header, 0, &out, sizeof out);
        }
        case FUSE_READDIR: {
            fuse_read_in in;
            std::memcpy(&in, body, sizeof in);
            std::string entries;
            for (std::uint64_t i = in.offset; i < 4; ++i) {
                fuse_dirent entry{};
                entry.ino = i + 2;
                entry.off = i + 1;
                entry.namelen = 1;
                entry.type = S_IFREG >> 12;
                std::string record(FUSE_DIRENT_ALIGN(FUSE_NAME_OFFSET + 1), '\0');
                std::memcpy(record.data(), &entry, FUSE_NAME_OFFSET);
                record[FUSE_NAME_OFFSET] = char('1' + i);
                entries += record;
            }
            return reply(header, 0, entries.data(), entries.size());
        }
        case FUSE_READ: {
            fuse_read_in in;
            std::memcpy(&in, body, sizeof in);
            const bool broken = header.nodeid % 2 == 1;
            if (broken && in.offset + in.size > size / 2)
                return reply(header, -EIO, nullptr, 0);
            const std::string data(std::min<std::uint64_t>(in.size, size - in.offset), 'x');
            return reply(header, 0, data.data(), data.size());
        }
        case FUSE_FORGET:
        case FUSE_BATCH_FORGET:
            return;
        case FUSE_RELEASE:
        case FUSE_RELEASEDIR:
        case FUSE_FLUSH:
            return reply(header, 0, nullptr, 0);
        default:
            return reply(header, -ENOSYS, nullptr, 0);
        }
    }

    static fuse_attr attributes(std::uint64_t node) {
        fuse_attr attr{};
        attr.ino = node;
        attr.mode = node == 1 ? S_IFDIR | 0755 : S_IFREG | 0644;
        attr.nlink = 1;
        attr.size = node == 1 ? 0 : size;
        return attr;
    }

    void reply(const fuse_in_header &to, int error, const void *body, std::size_t length) {
        fuse_out_header header{};
        header.len = std::uint32_t(sizeof header + length);
        header.error = error;
        header.unique = to.unique;
        std::string message(reinterpret_cast<const char *>(&header), sizeof header);
        if (length > 0)
            message.append(static_cast<const char *>(body), length);
        EXPECT_EQ(::write(m_device.get(), message.data(), message.size()), ssize_t(message.size()));
    }

    FileDescriptor m_device;
    std::filesystem::path m_place;
    std::thread m_thread;
};

TEST(Mounts, AFileOnABrokenDiskIsNobodysDuplicate) {
    needRoot();
    TestTree tree;
    tree.directory("disk");
    tree.file("sound", std::string(BrokenDisk::size, 'x'));
    BrokenDisk disk;
    ASSERT_TRUE(disk.start(tree.path("disk")));
    EXPECT_EQ(unordered(search(tree.top())),
              (Groups{{tree.path("disk/1"), tree.path("disk/3"), tree.path("sound")}}));
}

} // namespace
} // namespace brightsweep::test
