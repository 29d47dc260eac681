#include "system/SilentServer.h"

#include "system/PrivateMachine.h"

#include <fcntl.h>
#include <linux/fuse.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace brightsweep::test {

namespace {

[[noreturn]] void swallow(int device) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    static std::array<char, 1 << 18> question;
    for (;;) {
        if (::read(device, question.data(), question.size()) < ssize_t(sizeof(fuse_in_header)))
            ::_exit(0);
        fuse_in_header header;
        std::memcpy(&header, question.data(), sizeof header);
        if (header.opcode != FUSE_INIT)
            continue;
        struct {
            fuse_out_header header;
            fuse_init_out init;
        } answer = {};
        answer.header.len = sizeof answer;
        answer.header.unique = header.unique;
        answer.init.major = FUSE_KERNEL_VERSION;
        answer.init.minor = 31;
        answer.init.max_write = 4096;
        if (::write(device, &answer, sizeof answer) < 0)
            ::_exit(1);
    }
}

} // namespace

SilentServer::SilentServer(const std::filesystem::path &place, Manner manner)
    : m_place(place), m_device(::open("/dev/fuse", O_RDWR | O_CLOEXEC)) {
    std::filesystem::create_directories(place);
    const std::string options =
        "fd=" + std::to_string(m_device.get()) + ",rootmode=40000,user_id=0,group_id=0";
    if (::mount("silent", place.c_str(), "fuse.silent", MS_NOSUID | MS_NODEV, options.c_str()) != 0)
        throw std::runtime_error("no user file system");
    if (manner == Manner::NeverReads)
        return;
    m_server = ::fork();
    if (m_server == 0)
        swallow(m_device.get());
    m_device.reset();
}

SilentServer::~SilentServer() {
    // With the last descriptor every open question fails, and its asker goes on.
    m_device.reset();
    if (m_server > 0) {
        ::kill(m_server, SIGKILL);
        ::waitpid(m_server, nullptr, 0);
    }
    // Askers that have just been let go may still be there.
    eventually(
        [this] { return ::umount2(m_place.c_str(), UMOUNT_NOFOLLOW) == 0 || errno == EINVAL; });
}

} // namespace brightsweep::test
