#include "platform/linux/LinuxLoginItemSource.h"

#include "foundation/DesktopEntryGrammar.h"
#include "foundation/DesktopEntryText.h"
#include "foundation/FileDescriptor.h"
#include "foundation/Identity.h"
#include "foundation/LastError.h"
#include "foundation/Log.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "linux/ProcessStart.h"
#include "platform/LoginItemError.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "platform/linux/AutostartEntry.h"
#include "platform/linux/BusProbe.h"
#include "platform/linux/DirectoryWatch.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <thread>

namespace brightsweep {

namespace {

namespace fs = std::filesystem;

using desktopEntry::fileEnding;
constexpr std::size_t longestName = 255;
constexpr std::size_t roomForNumber = 16; // in the name of a unit
// Padded with comments one may be large.
constexpr std::size_t largestEntry = std::size_t(16) << 20;
constexpr std::size_t roomForKeys = 1024; // in bytes, more than a change adds
constexpr int mostOfOneName = 1000;
constexpr char gnomeKey[] = "X-GNOME-Autostart-enabled";

fs::path userFolder() {
    return environmentFolder("XDG_CONFIG_HOME", ".config") / "autostart";
}

// Those of the system, the one that counts most first.
std::vector<fs::path> systemAutostartFolders() {
    const char *const variable = std::getenv("XDG_CONFIG_DIRS");
    std::string_view rest(variable && *variable ? variable : "/etc/xdg");
    std::vector<fs::path> folders;
    while (!rest.empty()) {
        const auto end = std::min(rest.find(':'), rest.size());
        if (rest.starts_with('/')) {
            const fs::path folder(rest.substr(0, end));
            folders.push_back(Platform::current().directories->systemPath(folder) / "autostart");
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
}

// A hidden name and a backup copy are no entries.
bool isEntryName(std::string_view name) {
    return name.size() > fileEnding.size() && name.ends_with(fileEnding) &&
           !name.starts_with('.') && name.find('/') == name.npos;
}

// The entries' names in order; none where there is no folder.
Result<std::vector<std::string>> entryNames(const fs::path &folder) {
    struct Close {
        void operator()(DIR *stream) const { ::closedir(stream); }
    };
    std::vector<std::string> names;
    const std::unique_ptr<DIR, Close> directory(::opendir(folder.c_str()));
    if (!directory)
        return errno == ENOENT ? Result<std::vector<std::string>>(names) : lastError();
    errno = 0;
    while (const dirent *entry = ::readdir(directory.get())) {
        if (isEntryName(entry->d_name))
            names.emplace_back(entry->d_name);
        errno = 0;
    }
    if (errno != 0)
        return lastError();
    std::sort(names.begin(), names.end());
    return names;
}

// What the system has under that name; nothing where it has none or has it switched off itself.
std::optional<DesktopEntry> systemEntry(const std::string &file, fs::path *place = nullptr) {
    for (const fs::path &folder : systemAutostartFolders()) {
        const fs::path path = paths::join(folder, file);
        auto text = readWholeFile(path, largestEntry);
        if (!text)
            continue;
        DesktopEntry entry(std::move(*text));
        if (!entry.isValid() || entry.boolean("Hidden"))
            return {};
        if (place)
            *place = path;
        return entry;
    }
    return {};
}

// Of this user, by this and other processes of the program.
class FolderLock {
public:
    explicit FolderLock(const fs::path &folder)
        : m_folder(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (m_folder)
            ::flock(m_folder.get(), LOCK_EX);
    }
    explicit operator bool() const { return bool(m_folder); }
    int descriptor() const { return m_folder.get(); }

private:
    FileDescriptor m_folder;
};

// A link leads to the user's own file in the home, or what it leads to is not for us to change.
std::error_code refusalOfLink(const fs::path &path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        return lastError();
    if (S_ISREG(status.st_mode))
        return {};
    if (!S_ISLNK(status.st_mode))
        return LoginItemError::NotAnEntry;
    std::error_code error;
    const fs::path target = fs::canonical(path, error);
    std::error_code homeError;
    const fs::path home = fs::canonical(homeFolder(), homeError);
    if (error || homeError || !paths::isSameOrBelow(target.native(), home.native()) ||
        ::lstat(target.c_str(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_uid != ::geteuid())
        return LoginItemError::LinkElsewhere;
    return {};
}

Result<std::string> withHidden(const std::string &text, bool hidden) {
    auto changed = withEntryValue(text, "Hidden", hidden ? "true" : "false");
    // GNOME heeds a key of its own as well.
    if (changed && !hidden && DesktopEntry(text).has(gnomeKey))
        changed = withEntryValue(*changed, gnomeKey, "true");
    // It could not be read again, or not be shown again.
    if (changed && changed->size() + (hidden ? roomForKeys : 0) > largestEntry)
        return std::errc::file_too_large;
    if (changed)
        return *std::move(changed);
    return text.find(desktopEntry::mainGroup) != text.npos && text.find('\r') != text.npos
               ? LoginItemError::LoneReturns
               : LoginItemError::NoEntryInside;
}

// The text of an entry once nobody is at writing it in place: it is empty or half there meanwhile,
// and what came after our reading would be lost.
Result<std::string> readSettled(const fs::path &path) {
    constexpr int tries = 10;
    constexpr std::chrono::milliseconds pause{20};
    auto text = readWholeFile(path, largestEntry);
    for (int tried = 1; text && tried < tries; ++tried) {
        std::error_code error;
        const auto age = fs::file_time_type::clock::now() - fs::last_write_time(path, error);
        if (!error && age > tries * pause)
            break;
        std::this_thread::sleep_for(pause);
        auto again = readWholeFile(path, largestEntry);
        const bool isSettled = again && *again == *text && DesktopEntry(*text).isValid();
        text = std::move(again);
        if (isSettled)
            break;
    }
    return text;
}

// An entry that says no more than that the system's is hidden would start nothing once it is shown,
// so that it gets what the system's has.
std::string completed(std::string text, const DesktopEntry &systems) {
    const DesktopEntry own(text);
    if (own.has("Exec") || own.has("Type"))
        return text;
    for (const std::string_view key : systems.keys()) {
        if (own.has(key))
            continue;
        if (auto more = withEntryValue(text, key, systems.raw(key)))
            text = *std::move(more);
    }
    return text;
}

// The window's program that belongs to the one that runs.
bool isOwnProgram(const fs::path &path) {
    std::error_code error;
    const fs::path running = fs::read_symlink("/proc/self/exe", error);
    return !error && path == paths::join(paths::parent(running), "brightsweep");
}

// The name that an entry for that path begins with, short enough for a number and the ending.
std::string entryNameFor(const fs::path &path) {
    std::string name = paths::lastComponent(path);
    if (name.ends_with(fileEnding))
        name.resize(name.size() - fileEnding.size());
    name.erase(0, std::min(name.find_first_not_of('.'), name.size()));
    name.resize(std::min(name.size(), longestName - fileEnding.size() - 5));
    while (!paths::isValidUtf8(name) || unitNameLength(name) > longestUnitName - roomForNumber)
        name.pop_back();
    return name.empty() || name == "/" ? "entry" : name;
}

Result<std::string> textFor(const fs::path &path) {
    if (isOwnProgram(path))
        return newEntryText(path, "Brightsweep", bundleIdentifier);
    if (paths::extension(path) == "desktop") {
        auto text = readWholeFile(path);
        if (text) {
            // GLib refuses a file that begins with it.
            if (text->starts_with(desktopEntry::byteOrderMark))
                text->erase(0, desktopEntry::byteOrderMark.size());
            const DesktopEntry entry(*text);
            if (!entry.isValid() || !execCommand(entry.string("Exec"), {}))
                return LoginItemError::NothingToStart;
        }
        // A folder of such a name is opened as any other.
        if (text || text.error() != std::errc::invalid_argument)
            return text;
    }
    return newEntryText(path, paths::display(paths::lastComponent(path)).toStdString(), {});
}

} // namespace

fs::path LinuxLoginItemSource::pathOf(const std::string &file) {
    return paths::join(userFolder(), file);
}

Result<std::vector<LoginItemEntry>> LinuxLoginItemSource::items() {
    const auto names = entryNames(userFolder());
    if (!names)
        return names.error();
    const AutostartSession session = AutostartSession::current();
    std::vector<LoginItemEntry> items;
    std::vector<std::pair<std::uint64_t, LoginItemEntry>> added;
    for (const std::string &name : *names) {
        const fs::path path = pathOf(name);
        auto text = readWholeFile(path, largestEntry);
        struct stat status {};
        if (!text && (text.error() == std::errc::timed_out ||
                      text.error() == std::errc::device_or_resource_busy))
            return text.error();
        // A folder, a FIFO, or what has gone meanwhile. A link that leads nowhere can be removed.
        if (!text && (::lstat(path.c_str(), &status) != 0 ||
                      (!S_ISREG(status.st_mode) && text.error() == std::errc::invalid_argument)))
            continue;
        const bool isReadable = bool(text);
        const DesktopEntry entry(isReadable ? std::move(*text) : std::string());
        const auto fallback = systemEntry(name);
        // Where the system's own has gone, what is left of the switch can be removed.
        if (entry.has(entryOverrideKey) && fallback)
            continue;
        LoginItemEntry item = loginItemOf(entry, path, session, fallback ? &*fallback : nullptr);
        if (!isReadable) {
            item.obstacle = LoginItemObstacle::Unreadable;
            item.missing = S_ISLNK(status.st_mode);
        }
        if (const auto order = orderOfEntry(entry))
            added.emplace_back(*order, std::move(item));
        else
            items.push_back(std::move(item));
    }
    std::stable_sort(added.begin(), added.end(),
                     [](const auto &one, const auto &other) { return one.first < other.first; });
    for (auto &[order, item] : added)
        items.push_back(std::move(item));
    return items;
}

Result<std::vector<LoginItemEntry>> LinuxLoginItemSource::systemItems() {
    const AutostartSession session = AutostartSession::current();
    std::vector<std::string> names;
    for (const fs::path &folder : systemAutostartFolders()) {
        if (const auto more = entryNames(folder))
            names.insert(names.end(), more->begin(), more->end());
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::vector<LoginItemEntry> items;
    for (const std::string &name : names) {
        fs::path place;
        const auto entry = systemEntry(name, &place);
        // What a desktop starts as a part of itself is not for a switch.
        if (!entry || entry->boolean("NoDisplay") || entry->has("X-GNOME-Autostart-Phase") ||
            entry->has("X-KDE-autostart-phase") || isHiddenEntry(*entry))
            continue;
        LoginItemEntry item = loginItemOf(*entry, place, session);
        if ((item.obstacle != LoginItemObstacle::None && !isFlaw(item.obstacle)) || item.missing)
            continue;
        struct stat status {};
        if (::lstat(pathOf(name).c_str(), &status) == 0) {
            auto text = readWholeFile(pathOf(name), largestEntry);
            const DesktopEntry own(text ? std::move(*text) : std::string());
            if (!own.has(entryOverrideKey))
                continue;
            item.hidden = isHiddenEntry(own);
        }
        items.push_back(std::move(item));
    }
    return items;
}

Result<std::string> LinuxLoginItemSource::add(const fs::path &given, bool hidden) {
    const fs::path path(paths::withoutTrailingSlashes(given.native()));
    if (!paths::isValidUtf8(path.native()))
        return LoginItemError::NameNotText;
    struct stat status {};
    if (!path.is_absolute())
        return std::errc::invalid_argument;
    if (::stat(path.c_str(), &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
        return LoginItemError::NothingToOpen;
    auto text = textFor(path);
    if (!text)
        return text.error();
    std::error_code error;
    const fs::path folder = userFolder();
    fs::create_directories(folder, error);
    if (error)
        return error;
    const std::lock_guard change(m_mutex);
    const FolderLock lock(folder);
    const auto names = entryNames(folder);
    if (!lock || !names)
        return names ? lastError() : names.error();
    std::uint64_t order = 0;
    for (const std::string &name : *names) {
        if (auto other = readWholeFile(paths::join(folder, name), largestEntry))
            order = std::max(order, orderOfEntry(DesktopEntry(std::move(*other))).value_or(0));
    }
    if (hidden || DesktopEntry(*text).has("Hidden") || DesktopEntry(*text).has(gnomeKey))
        text = withHidden(*text, hidden);
    for (const auto &[key, value] : {std::pair(entryUrlKey, entryUrlOf(path)),
                                     std::pair(entryOrderKey, std::to_string(order + 1))}) {
        auto changed = text ? withEntryValue(*text, key, value) : std::nullopt;
        if (!changed)
            return LoginItemError::NothingToStart;
        text = *std::move(changed);
    }
    const std::string name = isOwnProgram(path) ? bundleIdentifier : entryNameFor(path);
    // This program's own entry is one, also after the program has moved.
    if (const fs::path own = paths::join(folder, name + std::string(fileEnding));
        name == bundleIdentifier) {
        const auto old = readWholeFile(own, largestEntry);
        if (old && DesktopEntry(*old).has(entryUrlKey))
            ::unlink(own.c_str());
    }
    for (int number = 1; number < mostOfOneName; ++number) {
        const std::string file =
            name + (number == 1 ? "" : '-' + std::to_string(number)) + std::string(fileEnding);
        // In the place of one of the system's it could not be removed again.
        if (systemEntry(file))
            continue;
        error = writeNewSmallFile(paths::join(folder, file), *text);
        if (!error)
            return file;
        if (error != std::errc::file_exists)
            return error;
    }
    return std::errc::file_exists;
}

std::error_code LinuxLoginItemSource::remove(const std::string &file) {
    const std::lock_guard change(m_mutex);
    const FolderLock folder(userFolder());
    struct stat status {};
    if (!folder || !isEntryName(file) ||
        ::fstatat(folder.descriptor(), file.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return isEntryName(file) ? lastError() : LoginItemError::NotAnEntry;
    if (!S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode))
        return LoginItemError::NotAnEntry;
    if (systemEntry(file))
        return LoginItemError::StandsForSystem;
    return ::unlinkat(folder.descriptor(), file.c_str(), 0) == 0 ? std::error_code() : lastError();
}

std::error_code LinuxLoginItemSource::setHidden(const std::string &file, bool hidden) {
    if (!isEntryName(file))
        return LoginItemError::NotAnEntry;
    const std::lock_guard change(m_mutex);
    const FolderLock folder(userFolder());
    const fs::path path = pathOf(file);
    if (const std::error_code refusal = refusalOfLink(path))
        return refusal;
    const auto text = readSettled(path);
    if (!text)
        return text.error();
    const auto systems = hidden ? std::nullopt : systemEntry(file);
    const auto changed = withHidden(systems ? completed(*text, *systems) : *text, hidden);
    if (!changed)
        return changed.error();
    return *changed == *text ? std::error_code() : writeSmallFile(path, *changed);
}

std::error_code LinuxLoginItemSource::setSystemItemStarted(const std::string &file, bool started) {
    fs::path place;
    if (!isEntryName(file) || !systemEntry(file, &place))
        return std::make_error_code(std::errc::no_such_file_or_directory);
    const fs::path path = pathOf(file);
    std::error_code error;
    fs::create_directories(paths::parent(path), error);
    if (error)
        return error;
    const std::lock_guard change(m_mutex);
    const FolderLock folder(paths::parent(path));
    if (!folder)
        return lastError();
    struct stat status {};
    const bool isThere =
        ::fstatat(folder.descriptor(), file.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    if (isThere) {
        auto own = S_ISREG(status.st_mode) ? readWholeFile(path, largestEntry)
                                           : Result<std::string>(LoginItemError::NotOurs);
        if (!own || !DesktopEntry(*own).has(entryOverrideKey))
            return LoginItemError::NotOurs;
        // What somebody has written into it since stays.
        if (started && isUntouchedOverride(*own))
            return ::unlinkat(folder.descriptor(), file.c_str(), 0) == 0 ? std::error_code()
                                                                         : lastError();
        own = withHidden(*own, !started);
        return own ? writeSmallFile(path, *own) : own.error();
    }
    if (started)
        return {};
    auto text = readWholeFile(place, largestEntry);
    if (!text)
        return text.error();
    text = withHidden(*text, true);
    if (!text)
        return text.error();
    const auto override = sealedOverride(*text);
    return override ? writeNewSmallFile(path, *override) : LoginItemError::NoEntryInside;
}

std::error_code LinuxLoginItemSource::start(const std::string &file) {
    const fs::path path = pathOf(file);
    auto text = isEntryName(file) ? readWholeFile(path, largestEntry)
                                  : Result<std::string>(LoginItemError::NotAnEntry);
    if (!text)
        return text.error();
    const DesktopEntry entry(std::move(*text));
    const auto locales = messageLocales();
    auto command = execCommand(entry.string("Exec"), {entry.localeString("Name", locales),
                                                      entry.localeString("Icon", locales), path});
    if (!command || entry.string("Type") != "Application")
        return LoginItemError::NothingToStart;
    if (entry.boolean("Terminal"))
        command->insert(command->begin(), {"x-terminal-emulator", "-e"});
    const std::string wanted = entry.string("Path");
    const FileDescriptor directory(::open(wanted.empty() ? homeFolder().c_str() : wanted.c_str(),
                                          O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!directory)
        return lastError();
    const auto [process, error] = startProcess({.arguments = *command,
                                                .environment = environmentOfChildren(),
                                                .output = ProcessStart::nowhere,
                                                .errors = ProcessStart::nowhere,
                                                .directory = directory.get(),
                                                .leadsGroup = true});
    if (error != 0)
        return {error, std::generic_category()};
    try {
        // It may last as long as the session; only then is it known how it ended.
        std::thread([child = process] { waitForProcess(child); }).detach();
    } catch (const std::system_error &noThread) {
        NSLog("What %@ starts is not waited for: %@", path, noThread.code());
    }
    return {};
}

std::shared_ptr<void> LinuxLoginItemSource::watch(std::function<void()> changed) {
    return std::make_shared<DirectoryWatch>(userFolder(), std::move(changed));
}

} // namespace brightsweep
