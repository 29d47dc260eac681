#include "foundation/DesktopEntryText.h"

#include "foundation/DesktopEntryGrammar.h"
#include "foundation/Trimmed.h"

#include <algorithm>

namespace brightsweep {

namespace {

using desktopEntry::byteOrderMark;
using desktopEntry::mainGroup;

std::string quoted(std::string_view word) {
    std::string text = "\"";
    for (const char character : word) {
        constexpr std::string_view special = "\"`$\\";
        if (special.find(character) != special.npos)
            text += '\\';
        text += character;
        if (character == '%')
            text += '%';
    }
    return text + '"';
}

} // namespace

std::optional<std::string> withEntryValue(const std::string &text, std::string_view key,
                                          std::string_view value) {
    const std::string_view all = text;
    std::string changed;
    std::string lineEnd = "\n";
    std::size_t newPlace = 0;   // in `changed`, behind the last key of the first main group
    std::size_t groupPlace = 0; // behind that group's name
    bool isInGroup = false;
    int groups = 0;
    bool isThere = false;
    std::size_t next = all.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
    changed.assign(all.substr(0, next));
    while (next < all.size()) {
        const auto end = std::min(all.find('\n', next), all.size());
        const std::string_view whole = all.substr(next, std::min(end + 1, all.size()) - next);
        const std::string_view line = trimmed(all.substr(next, end - next));
        next += whole.size();
        const auto equals = line.find('=');
        const bool isKey = !line.empty() && line.front() != '#' && line.front() != '[';
        if (!line.empty() && line.front() == '[') {
            isInGroup = line == mainGroup;
            groups += isInGroup ? 1 : 0;
            if (isInGroup && groups == 1 && whole.ends_with("\r\n"))
                lineEnd = "\r\n";
            if (isInGroup && groups == 1)
                groupPlace = changed.size() + whole.size();
        }
        if (isInGroup && isKey && equals != line.npos && trimmed(line.substr(0, equals)) == key) {
            // What stands around the value stays as well.
            const std::string_view old = trimmed(line.substr(equals + 1));
            const auto from = old.empty() ? std::size_t(line.data() - whole.data()) + equals + 1
                                          : std::size_t(old.data() - whole.data());
            changed.append(whole.substr(0, from)).append(value);
            changed.append(whole.substr(from + old.size()));
            isThere = true;
        } else {
            changed.append(whole);
        }
        if (isInGroup && groups == 1 && !line.empty() && line.front() != '#')
            newPlace = changed.size();
    }
    if (groups == 0)
        return std::nullopt;
    if (isThere)
        return changed;
    // Some readers go on in the next line behind a backslash.
    if (trimmed(std::string_view(changed).substr(0, newPlace)).ends_with('\\'))
        newPlace = groupPlace;
    const bool isOpenEnd = changed[newPlace - 1] != '\n';
    const std::string row = std::string(key) + '=' + std::string(value);
    // A file without an end of its last line keeps none.
    changed.insert(newPlace, isOpenEnd ? lineEnd + row : row + lineEnd);
    return changed;
}

std::string entryString(std::string_view text) {
    constexpr std::string_view special = "\n\t\r\\";
    constexpr std::string_view letters = "ntr\\";
    std::string value;
    for (const char character : text) {
        const auto found = special.find(character);
        // A blank in front would be taken for one around the value.
        if (character == ' ' && value.empty())
            value += "\\s";
        else if (found == special.npos)
            value += character;
        else
            (value += '\\') += letters[found];
    }
    return value;
}

std::string execOf(std::string_view program, std::string_view argument) {
    std::string command;
    // Launchers refuse a program with "%" in its own name. nice(1) hands one on as it is, while
    // env(1) would take one with "=" for a setting.
    if (program.find('%') != program.npos)
        command = "/usr/bin/nice -n 0 -- ";
    // A plain word needs no quotes, and reads better without.
    const bool isPlain = std::all_of(program.begin(), program.end(), [](char character) {
        constexpr std::string_view plain = "/._-+";
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
               (character >= '0' && character <= '9') || plain.find(character) != plain.npos;
    });
    command += isPlain ? std::string(program) : quoted(program);
    if (!argument.empty())
        command += ' ' + quoted(argument);
    return entryString(command);
}

} // namespace brightsweep
