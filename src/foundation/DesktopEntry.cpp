#include "foundation/DesktopEntry.h"

#include "foundation/DesktopEntryGrammar.h"
#include "foundation/Trimmed.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace brightsweep {

namespace {

using desktopEntry::byteOrderMark;
using desktopEntry::mainGroup;

std::string unescaped(std::string_view value) {
    constexpr std::string_view letters = "sntr\\";
    constexpr std::string_view meant = " \n\t\r\\";
    std::string text;
    text.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto escape =
            value[i] == '\\' && i + 1 < value.size() ? letters.find(value[i + 1]) : letters.npos;
        text += escape == letters.npos ? value[i] : meant[escape];
        i += escape == letters.npos ? 0 : 1;
    }
    return text;
}

bool contains(const std::vector<std::string> &list, std::string_view item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        if (end > 0)
            parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

} // namespace

DesktopEntry::DesktopEntry(std::string text) : m_text(std::move(text)) {
    bool isInGroup = false;
    const std::string_view all = m_text;
    std::size_t next = all.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
    while (next < all.size()) {
        const auto end = std::min(all.find('\n', next), all.size());
        const std::string_view line = trimmed(all.substr(next, end - next));
        next = end + 1;
        if (line.empty() || line.front() == '#')
            continue;
        if (line.front() == '[') {
            isInGroup = line == mainGroup;
            m_isValid = m_isValid || isInGroup;
            continue;
        }
        const auto equals = line.find('=');
        // No program can be given a NUL, and no name shown with one.
        if (!isInGroup || equals == line.npos || line.find('\0') != line.npos)
            continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        const auto offset = [&](std::string_view part) {
            return part.empty() ? 0 : std::size_t(part.data() - all.data());
        };
        if (!key.empty())
            m_rows.push_back({offset(key), key.size(), offset(value), value.size()});
    }
    std::stable_sort(m_rows.begin(), m_rows.end(), [this](const Row &one, const Row &other) {
        return one.keyIn(m_text) < other.keyIn(m_text);
    });
}

const DesktopEntry::Row *DesktopEntry::find(std::string_view key) const {
    const auto above = std::upper_bound(
        m_rows.begin(), m_rows.end(), key,
        [this](std::string_view wanted, const Row &row) { return wanted < row.keyIn(m_text); });
    if (above == m_rows.begin() || (above - 1)->keyIn(m_text) != key)
        return nullptr;
    return &*(above - 1);
}

std::string_view DesktopEntry::raw(std::string_view key) const {
    const Row *row = find(key);
    return row ? std::string_view(m_text).substr(row->value, row->valueSize) : std::string_view();
}

std::string DesktopEntry::string(std::string_view key) const {
    return unescaped(raw(key));
}

std::string DesktopEntry::localeString(std::string_view key,
                                       const std::vector<std::string> &locales) const {
    for (const std::string &locale : locales) {
        if (const auto value = raw(std::string(key) + '[' + locale + ']'); !value.empty())
            return unescaped(value);
    }
    return string(key);
}

bool DesktopEntry::boolean(std::string_view key) const {
    // "1" is an old form that desktops still take.
    return raw(key) == "true" || raw(key) == "1";
}

std::vector<std::string> DesktopEntry::list(std::string_view key) const {
    std::vector<std::string> items;
    std::string item;
    const std::string_view value = raw(key);
    for (std::size_t i = 0; i < value.size(); ++i) {
        const bool isEscape = value[i] == '\\' && i + 1 < value.size();
        if (isEscape && value[i + 1] == ';') {
            item += value[++i];
        } else if (isEscape) {
            item += value[i];
            item += value[++i];
        } else if (value[i] != ';') {
            item += value[i];
        } else {
            items.push_back(unescaped(item));
            item.clear();
        }
    }
    if (!item.empty())
        items.push_back(unescaped(item));
    return items;
}

bool DesktopEntry::isShownIn(const std::vector<std::string> &desktops) const {
    const auto only = list("OnlyShowIn");
    const auto never = list("NotShowIn");
    for (const std::string &desktop : desktops) {
        if (contains(only, desktop))
            return true;
        if (contains(never, desktop))
            return false;
    }
    return !has("OnlyShowIn");
}

std::vector<std::string_view> DesktopEntry::keys() const {
    std::vector<std::string_view> keys;
    for (const Row &row : m_rows) {
        if (keys.empty() || keys.back() != row.keyIn(m_text))
            keys.push_back(row.keyIn(m_text));
    }
    return keys;
}

std::vector<std::string> messageLocales() {
    const auto variable = [](const char *name) {
        const char *value = std::getenv(name);
        return std::string(value ? value : "");
    };
    std::string locale;
    for (const char *name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (locale.empty())
            locale = variable(name);
    }
    std::vector<std::string> wanted;
    // A program in the C locale speaks English whatever LANGUAGE says.
    const std::string_view plain = std::string_view(locale).substr(0, locale.find('.'));
    if (!plain.empty() && plain != "C" && plain != "POSIX") {
        wanted = split(variable("LANGUAGE"), ':');
        wanted.push_back(locale);
    }
    std::vector<std::string> forms;
    const auto add = [&](const std::string &form) {
        if (!contains(forms, form))
            forms.push_back(form);
    };
    for (const std::string &name : wanted) {
        const auto at = name.find('@');
        const std::string modifier = at == name.npos ? std::string() : name.substr(at);
        const std::string place = name.substr(0, std::min(name.find('.'), at));
        const std::string language = place.substr(0, place.find('_'));
        for (const std::string &form : {place + modifier, place, language + modifier, language})
            add(form);
    }
    return forms;
}

} // namespace brightsweep
