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
constexpr std::array<std::string_view, 4> truthValues = {"true", "false", "1", "0"};

template <std::size_t Count>
bool isOneOf(const std::array<std::string_view, Count> &table, std::string_view word) {
    return std::find(table.begin(), table.end(), word) != table.end();
}

} // namespace

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
        next = end + 1;
        if (line.empty() || line.front() == '#')
            continue;
        if (!paths::isValidUtf8(line))
            return DesktopEntryFlaw{NotUtf8, std::string(line)};
        if (line.front() == '[') {
            isInAnyGroup = true;
            isInGroup = line == mainGroup;
            continue;
        }
        const auto equals = line.find('=');
        if (!isInAnyGroup || equals == line.npos)
            return DesktopEntryFlaw{BadLine, std::string(line)};
        if (!isInGroup)
            continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        if (key == "Hidden" && !isOneOf(truthValues, value))
            return DesktopEntryFlaw{BadLine, std::string(line)};
        if (isOneOf(decisiveKeys, key) && values.emplace(key, value).first->second != value)
            return DesktopEntryFlaw{TwoValues, std::string(key)};
    }
    return std::nullopt;
}

} // namespace brightsweep
