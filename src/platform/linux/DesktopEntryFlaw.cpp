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

// The keys that decide what starts.
constexpr std::array<std::string_view, 4> decisiveKeys = {"Exec", "Path", "TryExec", "Type"};
// Those whose escapes systemd's generator undoes. Of an escape with another letter than these it
// refuses the file.
constexpr auto escapedKeys = std::to_array<std::string_view>(
    {"AutostartCondition", "Exec", "Name", "Path", "TryExec", "Type", "X-GNOME-Autostart-Phase",
     "X-KDE-autostart-condition"});
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

// A value that one reader refuses, or takes otherwise than another.
bool isDisputed(std::string_view key, std::string_view value) {
    return (key == "Hidden" && !isOneOf(truthValues, value)) ||
           (key == "TryExec" && value.empty()) ||
           // For no desktop to GLib, for all of them to systemd's generator.
           (key == "OnlyShowIn" && value.find_first_not_of(';') == value.npos) ||
           (isOneOf(escapedKeys, key) && hasUnknownEscape(value));
}

} // namespace

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
        const std::string_view line = trimmed(text.substr(next, end - next));
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
            if (line.back() != ']' || !(isInAnyGroup || isInGroup))
                return badLineFlaw(line);
            isInAnyGroup = true;
            continue;
        }
        const auto equals = line.find('=');
        if (!isInAnyGroup || equals == line.npos)
            return badLineFlaw(line);
        if (!isInGroup)
            continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        if (isDisputed(key, value) || (goesOn(line) && end < text.size()))
            return badLineFlaw(line);
        if (isOneOf(decisiveKeys, key) && values.emplace(key, value).first->second != value)
            return DesktopEntryFlaw{TwoValues, std::string(key)};
    }
    return std::nullopt;
}

} // namespace brightsweep
