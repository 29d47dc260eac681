#include "system/PrivateMachine.h"

#include "linux/MountTable.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace brightsweep::test {

namespace {

namespace fs = std::filesystem;

constexpr struct {
    const char *name;
    unsigned majorNumber;
    unsigned minorNumber;
    mode_t type;
} nodes[] = {
    {"null", 1, 3, S_IFCHR},    {"zero", 1, 5, S_IFCHR},    {"random", 1, 8, S_IFCHR},
    {"urandom", 1, 9, S_IFCHR}, {"fuse", 10, 229, S_IFCHR}, {"loop-control", 10, 237, S_IFCHR},
};
constexpr const char wordsFile[] = "/run/words";
constexpr unsigned loopMajor = 7;
constexpr unsigned loopCount = 16;

void mountOver(const fs::path &place) {
    fs::create_directories(place);
    if (::mount("brightsweep", place.c_str(), "tmpfs", 0, "mode=755") != 0)
        throw std::runtime_error("no private " + place.string());
}

pid_t start(const std::vector<const char *> &candidates, std::vector<const char *> arguments) {
    const auto program = std::find_if(candidates.begin(), candidates.end(),
                                      [](const char *path) { return ::access(path, X_OK) == 0; });
    if (program == candidates.end())
        throw std::runtime_error(std::string("not installed: ") + candidates.front());
    arguments.insert(arguments.begin(), *program);
    arguments.push_back(nullptr);
    const pid_t parent = ::getpid();
    const pid_t process = ::fork();
    if (process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::dup2(::open("/dev/null", O_RDONLY), 0);
        const int words = ::open(wordsFile, O_CREAT | O_APPEND | O_WRONLY, 0600);
        for (const int descriptor : {1, 2})
            ::dup2(words, descriptor);
        if (::getppid() == parent)
            ::execv(*program, const_cast<char *const *>(arguments.data()));
        ::_exit(127);
    }
    return process;
}

void waitForDisks() {
    const bool up = eventually([] {
        return shell("dbus-send --system --print-reply --dest=org.freedesktop.DBus / "
                     "org.freedesktop.DBus.GetNameOwner string:org.freedesktop.UDisks2 2>&1")
                   .status == 0;
    });
    if (!up)
        throw std::runtime_error("the disks service does not come up");
}

} // namespace

PrivateMachine &PrivateMachine::current() {
    static PrivateMachine machine;
    return machine;
}

PrivateMachine::PrivateMachine() {
    needRoot();
    if (::unshare(CLONE_NEWNS) != 0 ||
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        throw std::runtime_error("no private mounts");
    m_images = makeTemporaryFolder();
    for (const char *place : {"/run", "/media", "/boot", "/var/lib/udisks2", "/dev"})
        mountOver(place);
    for (const auto &node : nodes) {
        const fs::path path = fs::path("/dev") / node.name;
        ::mknod(path.c_str(), node.type | 0666, ::makedev(node.majorNumber, node.minorNumber));
    }
    for (unsigned i = 0; i < loopCount; ++i)
        ::mknod(("/dev/loop" + std::to_string(i)).c_str(), S_IFBLK | 0600, ::makedev(loopMajor, i));
    fs::create_directories("/run/dbus");
}

PrivateMachine::~PrivateMachine() {
    clear();
    stopDisks();
    stopBus();
    stop(m_deviceManager);
    removeTree(m_images);
}

void PrivateMachine::stop(pid_t &process) {
    if (process <= 0)
        return;
    ::kill(process, SIGTERM);
    ::waitpid(process, nullptr, 0);
    process = -1;
}

void PrivateMachine::startBus() {
    if (m_bus > 0)
        return;
    m_bus = start({"/usr/bin/dbus-daemon"}, {"--system", "--nofork", "--nopidfile"});
    if (!eventually([] { return fs::exists("/run/dbus/system_bus_socket"); }))
        throw std::runtime_error("the bus does not come up");
}

void PrivateMachine::startDisks() {
    startBus();
    if (m_deviceManager <= 0) {
        m_deviceManager = start(
            {"/usr/lib/systemd/systemd-udevd", "/lib/systemd/systemd-udevd", "/sbin/udevd"}, {});
        if (!eventually([] { return fs::exists("/run/udev/control"); }))
            throw std::runtime_error("the device manager does not come up");
        shell("udevadm trigger --subsystem-match=block --action=add --settle");
    }
    if (m_disks <= 0)
        m_disks = start({"/usr/libexec/udisks2/udisksd", "/usr/lib/udisks2/udisksd"}, {});
    waitForDisks();
}

void PrivateMachine::startDisks(const std::vector<const char *> &program) {
    stopDisks();
    startBus();
    m_disks = start({program.front()}, {program.begin() + 1, program.end()});
    waitForDisks();
}

std::string PrivateMachine::wordsOfDisks() const {
    std::ifstream file(wordsFile);
    return {std::istreambuf_iterator<char>(file), {}};
}

void PrivateMachine::stopDisks() {
    stop(m_disks);
}

void PrivateMachine::stopBus() {
    stop(m_bus);
    ::unlink("/run/dbus/system_bus_socket");
}

std::string PrivateMachine::makeDisk(const std::string &label, const std::string &type) {
    // The least that each can be made in, with room for the tests.
    const bool isSmall = type == "ext4";
    const std::string maker =
        isSmall ? "mkfs.ext4 -q -F -L " : "mkfs." + type + (type == "xfs" ? " -q" : "") + " -f -L ";
    const std::string image = m_images / ("image" + std::to_string(m_devices.size()));
    const std::string made = "truncate -s " + std::string(isSmall ? "64M " : "512M ") +
                             quoted(image) + " && " + maker + quoted(label) + " " + quoted(image) +
                             " > /dev/null && losetup -f --show " + quoted(image);
    std::string device = shell(made).output;
    device.erase(std::min(device.find('\n'), device.size()));
    m_devices.push_back(device);
    if (m_deviceManager > 0)
        shell("udevadm settle");
    return device;
}

std::string PrivateMachine::makeMemoryDisk() {
    std::ifstream("/sys/class/zram-control/hot_add") >> m_memoryDisk;
    if (m_memoryDisk.empty())
        return {};
    const std::string name = "zram" + m_memoryDisk;
    std::ofstream("/sys/block/" + name + "/disksize") << "32M";
    std::string number;
    std::ifstream("/sys/block/" + name + "/dev") >> number;
    const auto colon = number.find(':');
    const std::string device = "/dev/" + name;
    ::mknod(
        device.c_str(), S_IFBLK | 0600,
        ::makedev(unsigned(std::stoul(number)), unsigned(std::stoul(number.substr(colon + 1)))));
    shell("mkfs.ext4 -q -F " + device);
    return device;
}

void PrivateMachine::mountDisk(const std::string &device, const fs::path &place,
                               const std::string &type) {
    fs::create_directories(place);
    if (::mount(device.c_str(), place.c_str(), type.c_str(), 0, nullptr) != 0)
        throw std::runtime_error("cannot mount " + device);
}

bool PrivateMachine::isAttached(const std::string &device) const {
    return fs::exists("/sys/block/" + fs::path(device).filename().string() + "/loop/backing_file");
}

void PrivateMachine::clear() {
    auto mounts = currentMounts();
    std::reverse(mounts.begin(), mounts.end());
    for (const Mount &mount : mounts) {
        const std::string &place = mount.mountPoint;
        if (place.starts_with("/media/") || place.starts_with("/boot/"))
            ::umount2(place.c_str(), UMOUNT_NOFOLLOW);
    }
    for (const std::string &device : m_devices) {
        if (!device.empty() && isAttached(device))
            shell("losetup -d " + quoted(device));
    }
    m_devices.clear();
    if (!m_memoryDisk.empty()) {
        shell("echo 1 >/sys/block/zram" + m_memoryDisk + "/reset; echo " + m_memoryDisk +
              " >/sys/class/zram-control/hot_remove; rm -f /dev/zram" + m_memoryDisk);
        m_memoryDisk.clear();
    }
    if (m_deviceManager > 0)
        shell("udevadm settle");
}

CommandResult shell(const std::string &command) {
    CommandResult result;
    std::FILE *const pipe = ::popen(command.c_str(), "re");
    if (!pipe)
        throw std::runtime_error("no shell");
    std::array<char, 4096> block;
    while (const std::size_t got = std::fread(block.data(), 1, block.size(), pipe))
        result.output.append(block.data(), got);
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

std::string quoted(const std::string &text) {
    std::string word = "'";
    for (const char byte : text)
        word += byte == '\'' ? std::string("'\\''") : std::string(1, byte);
    return word + "'";
}

} // namespace brightsweep::test
