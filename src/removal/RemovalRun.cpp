#include "removal/RemovalRun.h"

#include "core/Texts.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <string_view>

namespace brightsweep {

namespace {

constexpr char journalName[] = "opened-modes";
constexpr std::size_t longestHolder = 4096;

std::mutex &currentMutex() {
    static std::mutex mutex;
    return mutex;
}
std::weak_ptr<RemovalRun> &currentRun() {
    static std::weak_ptr<RemovalRun> run;
    return run;
}

std::filesystem::path journalPath() {
    const auto support =
        Platform::current().directories->first(StandardDirectory::ApplicationSupport);
    return support.empty() ? support
                           : paths::join(paths::join(support, supportFolderName), journalName);
}

// The session's own folder, or where there is no session the one that is the user's in any case.
FileDescriptor openLockFile() {
    const char *runtime = std::getenv("XDG_RUNTIME_DIR");
    const std::array<std::filesystem::path, 4> folders = {
        runtime ? runtime : "", "/run/user/" + std::to_string(::geteuid()),
        environmentFolder("XDG_CONFIG_HOME", ".config"), homeFolder()};
    for (const std::filesystem::path &folder : folders) {
        const FileDescriptor directory(
            ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
        struct stat status;
        if (!directory || ::fstat(directory.get(), &status) != 0 || status.st_uid != ::geteuid())
            continue;
        const std::string name = std::string(bundleIdentifier) + ".removal";
        FileDescriptor lock(::openat(directory.get(), name.c_str(),
                                     O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
        if (lock)
            return lock;
    }
    return {};
}

// The holder's words: a process number, a blank, and what it does.
void readHolder(int lock, RemovalRun::Begun &begun) {
    std::string text(longestHolder, '\0');
    const ssize_t got = ::pread(lock, text.data(), text.size(), 0);
    text.resize(got > 0 ? std::size_t(got) : 0);
    const auto blank = text.find(' ');
    if (blank == text.npos)
        return;
    std::from_chars(text.data(), text.data() + blank, begun.process);
    begun.heldBy = text.substr(blank + 1);
}

void openJournal() {
    const auto journal = journalPath();
    if (journal.empty())
        return;
    if (const auto error = Platform::current().files->openModeJournal(journal))
        NSLog("Modes of folders cannot be opened up: %@", error);
}

} // namespace

RemovalRun::RemovalRun(FileDescriptor lock) : m_lock(std::move(lock)) {
    openJournal();
}

RemovalRun::~RemovalRun() {
    Platform::current().files->closeModeJournal();
}

RemovalRun::Begun RemovalRun::begin(const std::string &what) {
    const std::lock_guard guard(currentMutex());
    Begun begun;
    FileDescriptor lock = openLockFile();
    struct stat status;
    if (!lock || ::fstat(lock.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        NSLog("The lock of removals cannot be opened");
        return begun;
    }
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        readHolder(lock.get(), begun);
        return begun;
    }
    const std::string words = std::to_string(::getpid()) + ' ' + what;
    if (::ftruncate(lock.get(), 0) != 0 || ::pwrite(lock.get(), words.data(), words.size(), 0) < 0)
        NSLog("The lock of removals does not name its holder");
    begun.run.reset(new RemovalRun(std::move(lock)));
    currentRun() = begun.run;
    return begun;
}

QString RemovalRun::refusal(const Begun &begun) {
    if (begun.heldBy.empty())
        return localizedText("REMOVAL_NO_LOCK");
    return localizedText("REMOVAL_RUNS")
        .arg(localizedText(paths::display(begun.heldBy)))
        .arg(begun.process);
}

std::shared_ptr<RemovalRun> RemovalRun::current() {
    const std::lock_guard guard(currentMutex());
    return currentRun().lock();
}

void RemovalRun::putBackLeftModes() {
    struct stat status;
    const auto journal = journalPath();
    // Beginning a run puts them back.
    if (!journal.empty() && ::lstat(journal.c_str(), &status) == 0)
        begin(QT_TRID_NOOP("Start"));
}

void RemovalRun::endForQuit(std::chrono::milliseconds patience) {
    const auto run = current();
    if (!run)
        return;
    run->stop();
    {
        std::unique_lock lock(run->m_mutex);
        run->m_idle.wait_for(lock, patience, [&] { return run->m_busy == 0; });
    }
    Platform::current().files->putModesBack();
}

RemovalRun::Busy::Busy(RemovalRun &run) : m_run(run) {
    const std::lock_guard lock(run.m_mutex);
    ++run.m_busy;
}

RemovalRun::Busy::~Busy() {
    const std::lock_guard lock(m_run.m_mutex);
    if (--m_run.m_busy == 0)
        m_run.m_idle.notify_all();
}

} // namespace brightsweep
