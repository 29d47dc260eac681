#include "platform/linux/DesktopEntryFlaw.h"

#include "foundation/DesktopEntryGrammar.h"
#include "foundation/Paths.h"
#include "foundation/Trimmed.h"

#include <algorithm>
#include <array>
#include <map>

namespace brightsweep {

namespace {

using desktopEntry::byteOrderMark;
using desktopEntry::mainGroup;

// Those whose escapes systemd's generator undoes. Of an escape with another letter than these it
// refuses the file.
constexpr auto escapedKeys = std::to_array<std::string_view>(
    {"AutostartCondition", "Exec", "Name", "Path", "TryExec", "Type", "X-GNOME-Autostart-Phase",
     "X-KDE-autostart-condition"});
// GLib takes blanks behind such a value for a part of it.
constexpr std::array<std::string_view, 3> takenWhole = {"Path", "TryExec", "Type"};
constexpr std::string_view escapes = "sntr\\";
constexpr std::size_t longestLine = std::size_t(1) << 20; // that systemd's generator reads
constexpr std::size_t mostToldOfALine = 100;
constexpr std::array<std::string_view, 4> truthValues = {"true", "false", "1", "0"};

template <std::size_t Count>
bool isOneOf(const std::array<std::string_view, Count> &table, std::string_view word) {
    return std::find(table.begin(), table.end(), word) != table.end();
}

bool hasUnknownEscape(std::string_view value) {
    for (auto at = value.find('\\'); at != value.npos && at + 1 < value.size();
         at = value.find('\\', at + 2)) {
        if (escapes.find(value[at + 1]) == escapes.npos)
            return true;
    }
    return false;
}

// An odd number of backslashes at its end: to systemd's generator the next line is a part of it.
bool goesOn(std::string_view line) {
    return (line.size() - (line.find_last_not_of('\\') + 1)) % 2 == 1;
}

// What GLib takes for a group's name.
bool isGroupName(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char each) {
        return static_cast<unsigned char>(each) >= ' ' && each != '\x7f' && each != '[' &&
               each != ']';
    });
}

// The same of a key, which may have a locale behind it, in brackets.
bool isKeyName(std::string_view key) {
    const auto bracket = key.find_first_of("[]");
    const std::string_view name = key.substr(0, bracket);
    if (name.empty() || bracket == key.npos)
        return !name.empty();
    const std::string_view locale = key.substr(bracket);
    return name.back() != ' ' && locale.size() > 1 && locale.front() == '[' &&
           locale.back() == ']' && std::all_of(locale.begin() + 1, locale.end() - 1, [](char each) {
               constexpr std::string_view further = "-_.@";
               return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
                      (each >= '0' && each <= '9') || (each & 0x80) != 0 ||
                      further.find(each) != further.npos;
           });
}

// A value that one reader refuses, or takes otherwise than another.
bool isDisputed(std::string_view key, std::string_view untrimmed) {
    const std::string_view value = trimmed(untrimmed);
    return (key == "Hidden" && !isOneOf(truthValues, value)) ||
           (key == "TryExec" && value.empty()) ||
           (isOneOf(takenWhole, key) && !value.empty() && value.end() != untrimmed.end()) ||
           // Not every reader takes these for blanks.
           (isOneOf(decisiveKeys, key) && untrimmed.find_first_of("\v\f") != untrimmed.npos) ||
           (key == "OnlyShowIn" && namesNoDesktop(value)) ||
           (isOneOf(escapedKeys, key) && hasUnknownEscape(value));
}

} // namespace

bool namesNoDesktop(std::string_view list) {
    return list.find_first_not_of(';') == list.npos;
}

DesktopEntryFlaw badLineFlaw(std::string_view line) {
    const bool isLong = line.size() > mostToldOfALine;
    return {LoginItemObstacle::BadLine,
            std::string(line.substr(0, mostToldOfALine)) + (isLong ? "…" : "")};
}

std::optional<DesktopEntryFlaw> flawOf(std::string_view text) {
    using enum LoginItemObstacle;
    if (text.starts_with(byteOrderMark))
        return DesktopEntryFlaw{ByteOrderMark, {}};
    std::map<std::string_view, std::string_view> values;
    bool isInAnyGroup = false;
    bool isInGroup = false;
    for (std::size_t next = 0; next < text.size();) {
        const auto end = std::min(text.find('\n', next), text.size());
        std::string_view whole = text.substr(next, end - next);
        whole.remove_suffix(whole.ends_with('\r') ? 1 : 0);
        const std::string_view line = trimmed(whole);
        if (end - next >= longestLine)
            return badLineFlaw(line);
        next = end + 1;
        if (line.empty() || line.front() == '#')
            continue;
        if (!paths::isValidUtf8(line))
            return DesktopEntryFlaw{NotUtf8, std::string(line)};
        if (line.front() == '[') {
            isInGroup = line == mainGroup;
            // GLib wants the main group to be the first.
            if (line.back() != ']' || !isGroupName(line.substr(1, line.size() - 2)) ||
                !(isInAnyGroup || isInGroup))
                return badLineFlaw(line);
            isInAnyGroup = true;
            continue;
        }
        const auto equals = line.find('=');
        const std::string_view key = trimmed(line.substr(0, equals));
        if (!isInAnyGroup || equals == line.npos || !isKeyName(key))
            return badLineFlaw(line);
        if (!isInGroup)
            continue;
        const std::string_view value = trimmed(line.substr(equals + 1));
        if (isDisputed(key, whole.substr(whole.find('=') + 1)) ||
            (goesOn(line) && end < text.size()))
            return badLineFlaw(line);
        // Of Hidden every reader takes the last.
        if (isOneOf(decisiveKeys, key) && key != "Hidden" &&
            values.emplace(key, value).first->second != value)
            return DesktopEntryFlaw{TwoValues, std::string(key)};
    }
    return std::nullopt;
}

} // namespace brightsweep
