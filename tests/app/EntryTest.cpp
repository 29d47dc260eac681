#include "app/Entry.h"
#include "app/Guide.h"
#include "core/MacLog.h"
#include "foundation/FileDescriptor.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "memory/ClearMemory.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "support/ChildProcess.h"
#include "support/FakeDesktop.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "support/WaitUntil.h"
#include "volumes/FakeVolumeSource.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace brightsweep {
namespace {

using test::textOf;

class FixedFolder final : public StandardDirectories {
public:
    explicit FixedFolder(std::filesystem::path folder) : m_folder(std::move(folder)) {}
    std::vector<std::filesystem::path> paths(StandardDirectory) override { return {m_folder}; }
    CleanFolders cleanFolders(CleanPlace) override { return {}; }
    CleanFolders trashesOfVolume(const std::filesystem::path &) override { return {}; }
    std::filesystem::path systemPath(const std::filesystem::path &path) override { return path; }

private:
    std::filesystem::path m_folder;
};

// Standard error in a file, until the end of the scope; with the text that came there.
class CapturedErrors {
public:
    explicit CapturedErrors(const std::filesystem::path &file)
        : m_file(file), m_before(::dup(STDERR_FILENO)) {
        const FileDescriptor target(::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600));
        ::dup2(target.get(), STDERR_FILENO);
    }
    ~CapturedErrors() { ::dup2(m_before.get(), STDERR_FILENO); }
    std::string text() const { return textOf(m_file); }

private:
    std::filesystem::path m_file;
    FileDescriptor m_before;
};

// The messages of a log, without their heads.
std::vector<std::string> messages(const std::string &log) {
    std::vector<std::string> messages;
    for (std::size_t start = 0; start < log.size();) {
        const auto end = log.find('\n', start);
        const std::string line = log.substr(start, end - start);
        messages.push_back(line.substr(line.find("] ") + 2));
        start = end + 1;
    }
    return messages;
}

class MacLogTest : public testing::Test {
protected:
    MacLogTest() : errors(tree.path("stderr")) {
        Platform &platform = Platform::current();
        platform.directories = std::make_unique<FixedFolder>(tree.directory("data"));
        facts.running = SystemVersion{10, 6, 0};
        facts.value = [](std::string_view name) -> Result<std::string> {
            if (name == "hw.memsize")
                return std::string("\xff\xff\xff\x7f\0\0\0\0", 8); // one byte short of 2 GiB
            if (name == "machdep.cpu.vendor")
                return std::errc::no_such_file_or_directory;
            return std::string(name) + "\nforged";
        };
        auto volumes = std::make_unique<test::FakeVolumeSource>();
        VolumeFacts &root = volumes->add("/");
        root.name = "root";
        root.totalBytes = (10ull << 30) - 1;
        root.freeBytes = 3ull << 30;
        root.attributes = 0x20;
        root.extendedAttributes = volumeIsEjectableBit;
        volumes->add("/empty").totalBytes = 0;
        VolumeFacts &unknown = volumes->add("/mnt/u");
        unknown.name = "unknown";
        unknown.totalBytes = unknown.freeBytes = 1;
        unknown.parametersKnown = false;
        platform.volumes = std::move(volumes);
    }
    ~MacLogTest() override { Log::setRenewal(nullptr); }

    test::TestTree tree;
    CapturedErrors errors;
    test::FakeFacts &facts = test::FakeFacts::install();
    std::string log = "data/Brightsweep/norvex.log";
};

TEST_F(MacLogTest, NewFileBeginsWithTheMachine) {
    tree.directory("data/Brightsweep");
    MacLog::setLogFile(logFileName);
    NSLog("first line");
    const std::vector<std::string> wanted = {
        "Norvex Log file: " + tree.path(log).native(),
        "hardware info",
        "machine: hw.machine\\nforged",
        "model: hw.model\\nforged",
        "memsize: 1 GB",
        "cpu type: machdep.cpu.brand_string\\nforged",
        "os type: kern.ostype\\nforged",
        "os version: kern.osrelease\\nforged",
        "host name: kern.hostname\\nforged",
        " ",
        "volume list",
        "volname=root,totalSpace:9 GB, freeSpace:3 GB, root=/",
        "default volume",
        "vMDeviceID:sda1,Attrib:0x20,ExtAttrib:0x1,Server:0x0",
        "volname=unknown,totalSpace:0 GB, freeSpace:0 GB, root=/mnt/u",
        " ",
        "first line",
    };
    EXPECT_EQ(messages(textOf(tree.path(log))), wanted);
    EXPECT_EQ(errors.text(), "");
}

TEST_F(MacLogTest, WithoutAFileStandardErrorStays) {
    MacLog::setLogFile(logFileName);
    EXPECT_FALSE(tree.exists(log));
    EXPECT_EQ(messages(errors.text()).at(0), "Norvex Log file: " + tree.path(log).native());
    tree.directory("d\xc3\xa4ta/Brightsweep");
    Platform::current().directories = std::make_unique<FixedFolder>(tree.path("d\xc3\xa4ta"));
    MacLog::setLogFile(logFileName);
    EXPECT_FALSE(tree.exists("d\xc3\xa4ta/Brightsweep/norvex.log"));
    tree.directory("data/Brightsweep/norvex.log");
    Platform::current().directories = std::make_unique<FixedFolder>(tree.path("data"));
    MacLog::setLogFile(logFileName);
    NSLog("still here");
    EXPECT_EQ(messages(errors.text()).back(), "still here");
    std::filesystem::remove(tree.path(log));
    tree.link(log, tree.file("another's", "text"));
    MacLog::setLogFile(logFileName);
    EXPECT_EQ(textOf(tree.path("another's")), "text");
}

TEST_F(MacLogTest, CommandLineHasADescriptorOfItsOwn) {
    const int before = Log::descriptor();
    MacLog::setLogFileForCommandLine(logFileName);
    NSLog("lost");
    ASSERT_TRUE(MacLog::createSupportFolder());
    MacLog::setLogFileForCommandLine(logFileName);
    NSLog("kept");
    EXPECT_EQ(messages(textOf(tree.path(log))).back(), "kept");
    EXPECT_EQ(errors.text(), "");
    EXPECT_TRUE(::fcntl(Log::descriptor(), F_GETFD) & FD_CLOEXEC);
    const auto folder = tree.path(log).parent_path();
    std::filesystem::remove_all(folder);
    NSLog("lost with its folder");
    EXPECT_FALSE(std::filesystem::exists(folder));
    std::filesystem::create_directory(folder);
    EXPECT_TRUE(test::eventually([&] {
        NSLog("again");
        return tree.exists(log);
    }));
    EXPECT_EQ(messages(textOf(tree.path(log))).back(), "again");
    EXPECT_TRUE(::fcntl(Log::descriptor(), F_GETFD) & FD_CLOEXEC);
    Log::setDescriptor(before);
}

TEST_F(MacLogTest, GateComesFirst) {
    tree.directory("data/Brightsweep");
    char program[] = "brightsweep";
    char fr[] = "fr";
    char value[] = "1024";
    char *arguments[] = {program, fr, value, nullptr};
    int runs = 0;
    const auto application = [&] {
        ++runs;
        return 7;
    };
    facts.running = SystemVersion{10, 5, 19};
    EXPECT_EQ(runEntry(3, arguments, MacLog::setLogFile, ClearMemory::freeMemory, application), 0);
    EXPECT_FALSE(tree.exists(log));
    facts.running = SystemVersion{10, 6, 0};
    EXPECT_EQ(runEntry(3, arguments, MacLog::setLogFile, ClearMemory::freeMemory, application), 0);
    EXPECT_EQ(messages(textOf(tree.path(log))).back(), "freeMemoy size=1024");
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(runEntry(2, arguments, MacLog::setLogFile, ClearMemory::freeMemory, application), 7);
    EXPECT_EQ(runs, 1);
}

TEST(Guide, IsFoundBesideTheProgramAndWhole) {
    EXPECT_NE(textOf(guidePath()).find("</html>"), std::string::npos);
}

TEST(Process, CommandFrLogsAndEnds) {
    // A bus that takes connections and never greets: nobody is to ask it.
    const auto bus = test::TestEnvironment::current().work() / "bus";
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_un place{.sun_family = AF_UNIX, .sun_path = {}};
    bus.native().copy(place.sun_path, sizeof place.sun_path - 1);
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<sockaddr *>(&place), sizeof place), 0);
    ASSERT_EQ(::listen(socket.get(), 1), 0);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + bus.native()).c_str(), 1);
    ::setenv("DISPLAY", ":not-there", 1);
    for (const auto &arguments : {std::vector<std::string>{BRIGHTSWEEP_PROGRAM, "fr", "1024"},
                                  std::vector<std::string>{BRIGHTSWEEP_PROGRAM, "x", "fr", "1"}}) {
        const auto result = test::runProgram(arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output, "");
        EXPECT_NE(result.errors.find("freeMemoy size=" + arguments.back() + "\n"),
                  std::string::npos);
    }
    EXPECT_EQ(::accept(socket.get(), nullptr, nullptr), -1);
    // Such a run is no launch: there is still no folder for a log.
    EXPECT_TRUE(
        std::filesystem::is_empty(test::TestEnvironment::current().home() / ".local/share"));
}

} // namespace
} // namespace brightsweep
