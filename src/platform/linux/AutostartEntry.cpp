#include "platform/linux/AutostartEntry.h"

#include "foundation/DesktopEntryGrammar.h"
#include "foundation/DesktopEntryText.h"
#include "foundation/FileDescriptor.h"
#include "foundation/Identity.h"
#include "foundation/Paths.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/DesktopEntryFlaw.h"

#include <QCryptographicHash>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>

namespace brightsweep {

namespace {

constexpr std::array<std::string_view, 5> shells = {"sh", "bash", "dash", "zsh", "ksh"};
constexpr char systemFlatpaks[] = "/var/lib/flatpak/exports/bin";

std::vector<std::string> split(const char *list) {
    std::vector<std::string> parts;
    std::string_view rest(list ? list : "");
    while (!rest.empty()) {
        const auto end = std::min(rest.find(':'), rest.size());
        if (end > 0)
            parts.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return parts;
}

using desktopEntry::fileEnding;
constexpr std::string_view unitRest = "app-@autostart.service";

bool isThere(const std::filesystem::path &path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

bool isExecutable(const std::filesystem::path &path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::access(path.c_str(), X_OK) == 0;
}

// A document on a volume without modes is executable as well, so that the contents count.
bool isProgram(const std::filesystem::path &path) {
    if (!isExecutable(path))
        return false;
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    std::array<char, 4> magic{};
    if (!file)
        return true; // One that may be run, but not read.
    const ssize_t got = ::read(file.get(), magic.data(), magic.size());
    const std::string_view begin(magic.data(), std::size_t(std::max<ssize_t>(got, 0)));
    return begin.starts_with("#!") || begin.starts_with("\x7f"
                                                        "ELF");
}

// The application that "flatpak run" names; empty for anything else.
std::string flatpakOf(const DesktopEntry &entry) {
    const auto words = execCommand(entry.string("Exec"), {});
    if (!words || words->size() < 3 || paths::lastComponent((*words)[0]) != "flatpak" ||
        (*words)[1] != "run")
        return {};
    const auto found = std::find_if(words->begin() + 2, words->end(),
                                    [](const std::string &word) { return !word.starts_with('-'); });
    return found == words->end() ? std::string() : *found;
}

// What the entry starts: its path, and whether that is there.
void tellProgram(const DesktopEntry &entry, const std::filesystem::path &place,
                 LoginItemEntry &item) {
    item.path = place;
    const std::string name = execProgram(entry.string("Exec"));
    if (const std::string id = flatpakOf(entry); !id.empty()) {
        const auto own = environmentFolder("XDG_DATA_HOME", ".local/share") / "flatpak/exports/bin";
        item.path = paths::join(isThere(paths::join(own, id)) ? own : systemFlatpaks, id);
        item.missing = !isThere(item.path);
    } else if (name.starts_with('/')) {
        item.path = name;
        item.missing = !isThere(systemPath(name));
    } else if (const auto program = findProgram(name); !program.empty()) {
        item.path = program;
    } else {
        item.commandToldAsItStands = true;
        item.missing = !name.empty();
    }
    if (std::find(shells.begin(), shells.end(), paths::lastComponent(item.path)) != shells.end())
        item.commandToldAsItStands = true;
}

std::string joined(const std::vector<std::string> &words) {
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

// Where GLib cannot go to it starts nothing; systemd's generator writes "WorkingDirectory=-".
bool canRunIn(const std::string &folder) {
    const auto place =
        folder.starts_with('/') ? systemPath(folder) : paths::join(homeFolder(), folder);
    struct stat status {};
    return folder.empty() || (::stat(place.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
                              ::access(place.c_str(), X_OK) == 0);
}

// What is there and cannot be run; a name without a folder is looked for as a program alone.
bool isNoProgram(const std::string &name) {
    return name.starts_with('/') && isThere(systemPath(name)) && findProgram(name).empty();
}

// The entry as systemd's generator reads it, to which a lone carriage return ends a line; nothing
// where that is the same.
std::optional<DesktopEntry> byLoneReturns(const DesktopEntry &entry) {
    if (entry.text().find('\r') == std::string::npos)
        return {};
    std::string text = entry.text();
    for (auto at = text.find('\r'); at != text.npos; at = text.find('\r', at + 1)) {
        if (at + 1 < text.size() && text[at + 1] != '\n')
            text[at] = '\n';
    }
    if (text == entry.text())
        return {};
    DesktopEntry other(std::move(text));
    const bool isSame = other.isValid() == entry.isValid() &&
                        std::all_of(decisiveKeys.begin(), decisiveKeys.end(),
                                    [&](auto key) { return other.raw(key) == entry.raw(key); });
    return isSame ? std::nullopt : std::optional(std::move(other));
}

// The command of an Exec value whose last quote is open, as systemd's generator takes it.
std::optional<std::vector<std::string>> closedCommand(const std::string &exec) {
    auto command = execCommand(exec + '"', {});
    return command ? command : execCommand(exec + '\'', {});
}

bool contains(const std::vector<std::string> &list, const std::string &word) {
    return std::find(list.begin(), list.end(), word) != list.end();
}

bool isForSomeDesktops(const DesktopEntry &entry) {
    return entry.has("OnlyShowIn") && !namesNoDesktop(entry.raw("OnlyShowIn"));
}

bool isShownIn(const DesktopEntry &entry, const std::vector<std::string> &desktops) {
    if (!entry.has("OnlyShowIn") || isForSomeDesktops(entry))
        return entry.isShownIn(desktops);
    const auto never = entry.list("NotShowIn");
    return std::none_of(desktops.begin(), desktops.end(),
                        [&](const std::string &desktop) { return contains(never, desktop); });
}

// systemd's generator loses a backslash that belongs to a word.
bool hasBackslash(const std::vector<std::string> &command) {
    return std::any_of(command.begin(), command.end(),
                       [](const std::string &word) { return word.find('\\') != word.npos; });
}

void judge(const DesktopEntry &entry, const AutostartSession &session, LoginItemEntry &item) {
    using enum LoginItemObstacle;
    const auto set = [&](LoginItemObstacle obstacle, std::string detail = {}) {
        item.obstacle = obstacle;
        item.obstacleDetail = std::move(detail);
    };
    const std::string tryExec = entry.string("TryExec");
    const std::string exec = entry.string("Exec");
    const auto closed = execCommand(exec, {});
    const auto command = closed ? closed : closedCommand(exec);
    if (!entry.isValid() || entry.string("Type") != "Application")
        set(NotApplication, entry.string("Type"));
    else if (!command || (!closed && findProgram(command->front()).empty()))
        set(NoCommand);
    else if (!isShownIn(entry, session.desktops))
        isForSomeDesktops(entry) ? set(OtherDesktop, joined(entry.list("OnlyShowIn")))
                                 : set(NotThisDesktop, joined(session.desktops));
    else if (!tryExec.empty() && findProgram(tryExec).empty())
        set(isNoProgram(tryExec) ? NotExecutable : TryExecMissing, tryExec);
    else if (const std::string program = execProgram(exec); isNoProgram(program))
        set(NotExecutable, program);
    // Readers take the first word as it stands, whatever the command is about.
    else if (closed && !item.missing && findProgram(execWords(exec)->front()).empty())
        set(TryExecMissing, execWords(exec)->front());
    else if (unitNameLength(item.file.substr(0, item.file.size() - fileEnding.size())) >
             longestUnitName)
        set(NameTooLong);
    else if (auto flaw = !closed || hasBackslash(*closed)
                             ? badLineFlaw("Exec=" + std::string(entry.raw("Exec")))
                             : flawOf(entry.text()))
        set(flaw->obstacle, std::move(flaw->detail));
    else if (const std::string folder = entry.string("Path"); !canRunIn(folder))
        set(FolderMissing, folder);
}

} // namespace

AutostartSession AutostartSession::current() {
    return {split(std::getenv("XDG_CURRENT_DESKTOP")), messageLocales()};
}

std::size_t unitNameLength(std::string_view name) {
    std::size_t length = unitRest.size();
    for (const char each : name) {
        const bool isPlain = (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
                             (each >= '0' && each <= '9') || each == ':' || each == '_' ||
                             each == '.';
        length += isPlain ? 1 : 4;
    }
    return length;
}

bool isHiddenEntry(const DesktopEntry &entry) {
    constexpr char gnomeKey[] = "X-GNOME-Autostart-enabled";
    return entry.boolean("Hidden") || (entry.has(gnomeKey) && !entry.boolean(gnomeKey));
}

std::optional<std::uint64_t> orderOfEntry(const DesktopEntry &entry) {
    if (!entry.has(entryUrlKey))
        return {};
    const std::string_view words = entry.raw(entryOrderKey);
    std::uint64_t order = 0;
    std::from_chars(words.data(), words.data() + words.size(), order);
    return order;
}

LoginItemEntry loginItemOf(const DesktopEntry &entry, const std::filesystem::path &place,
                           const AutostartSession &session, const DesktopEntry *fallback) {
    if (const auto other = byLoneReturns(entry)) {
        LoginItemEntry item = loginItemOf(*other, place, session, fallback);
        if (item.obstacle == LoginItemObstacle::None || isFlaw(item.obstacle))
            item.obstacle = LoginItemObstacle::LineEnds;
        return item;
    }
    LoginItemEntry item;
    item.file = paths::lastComponent(place);
    const auto shown = [&](const char *key) {
        std::string value = entry.localeString(key, session.locales);
        return value.empty() && fallback ? fallback->localeString(key, session.locales) : value;
    };
    item.name = shown("Name");
    item.icon = shown("Icon");
    item.command = entry.string("Exec");
    item.hidden = isHiddenEntry(entry);
    item.standsForSystem = fallback != nullptr;
    tellProgram(entry, place, item);
    if (const std::string url(entry.raw(entryUrlKey)); !url.empty()) {
        if (const auto added = paths::fromFileUrl(QString::fromStdString(url))) {
            // A copied desktop entry goes on without the one that it is a copy of. A folder of such
            // a name is opened.
            const bool isCopy = paths::extension(*added) == "desktop" &&
                                entry.raw("Exec") != execOf("xdg-open", added->native());
            item.missing = isCopy ? item.missing : !isThere(*added);
            item.path = *added;
            item.commandToldAsItStands = false;
        }
    }
    // All that an override has to say is that the system's entry does not start.
    if (!item.hidden || !item.standsForSystem)
        judge(entry, session, item);
    return item;
}

std::string entryUrlOf(const std::filesystem::path &path) {
    return "file://localhost" + paths::percentEncoded(path.native());
}

std::optional<std::string> sealedOverride(const std::string &text) {
    const auto open = withEntryValue(text, entryOverrideKey, {});
    if (!open)
        return {};
    const QByteArray bytes(open->data(), qsizetype(open->size()));
    const QByteArray seal = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
    return withEntryValue(*open, entryOverrideKey, seal.toStdString());
}

bool isUntouchedOverride(const std::string &text) {
    return sealedOverride(text) == text;
}

std::string newEntryText(const std::filesystem::path &path, const std::string &name,
                         const std::string &icon) {
    std::string text = "[Desktop Entry]\nType=Application\n";
    text += "Name=" + entryString(name) + '\n';
    if (!icon.empty())
        text += "Icon=" + entryString(icon) + '\n';
    text += "Exec=";
    text += isProgram(path) ? execOf(path.native()) : execOf("xdg-open", path.native());
    return text + '\n';
}

} // namespace brightsweep
