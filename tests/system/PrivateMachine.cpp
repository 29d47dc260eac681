#include "system/PrivateMachine.h"

#include "linux/MountTable.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

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
#include <stdexcept>

namespace brightsweep::test {

namespace {

namespace fs = std::filesystem;

constexpr const char wordsFile[] = "/run/words";

// Does what the tool of that name does for the tests in other languages.
std::string machine(const std::string &words) {
    const auto done = shell(quoted(BRIGHTSWEEP_TEST_MACHINE) + " " + words + " 2>&1");
    if (done.status != 0)
        throw std::runtime_error("no " + words + ": " + done.output);
    return done.output.substr(0, done.output.find('\n'));
}

pid_t start(std::vector<const char *> arguments) {
    arguments.push_back(nullptr);
    const pid_t parent = ::getpid();
    const pid_t process = ::fork();
    if (process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() == parent)
            ::execv(arguments[0], const_cast<char *const *>(arguments.data()));
        ::_exit(127);
    }
    return process;
}

constexpr char disksService[] = "wait org.freedesktop.UDisks2";

} // namespace

PrivateMachine &PrivateMachine::current() {
    static PrivateMachine machine;
    return machine;
}

PrivateMachine::PrivateMachine() {
    needRoot();
    if (!enterPrivateMounts())
        throw std::runtime_error("no private mounts");
    m_images = makeTemporaryFolder();
    machine("places");
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
    m_bus = start({BRIGHTSWEEP_TEST_MACHINE, "bus"});
    machine("wait org.freedesktop.DBus");
}

void PrivateMachine::startDisks() {
    startBus();
    if (m_deviceManager <= 0) {
        m_deviceManager = start({BRIGHTSWEEP_TEST_MACHINE, "devices"});
        machine("plug");
    }
    if (m_disks <= 0)
        m_disks = start({BRIGHTSWEEP_TEST_MACHINE, "disks"});
    machine(disksService);
}

void PrivateMachine::startDisks(const std::vector<const char *> &program) {
    stopDisks();
    startBus();
    m_disks = start(program);
    machine(disksService);
}

std::string PrivateMachine::wordsOfDisks() const {
    return textOf(wordsFile);
}

void PrivateMachine::stopDisks() {
    stop(m_disks);
}

void PrivateMachine::stopBus() {
    stop(m_bus);
    ::unlink("/run/dbus/system_bus_socket");
}

std::string PrivateMachine::makeDisk(const std::string &label, const std::string &type) {
    const std::string image = m_images / ("image" + std::to_string(m_devices.size()));
    m_devices.push_back(machine("disk " + quoted(label) + " " + type + " " + quoted(image)));
    return m_devices.back();
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
        if (isAttached(device))
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
