#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// The keys of a desktop entry file, for reading: the group "[Desktop Entry]" by the freedesktop
/// document on desktop entries, 1.5, as tolerant as GLib's reader. Values are bytes; a file may
/// hold anything, and what is no key is passed over. Of a key that comes twice the last one counts.
/// Immutable once read, and safe from every thread then.
class DesktopEntry {
public:
    explicit DesktopEntry(std::string text);

    /// False where the text has no such group.
    bool isValid() const { return m_isValid; }
    bool has(std::string_view key) const { return find(key) != nullptr; }
    /// As it stands in the file; empty where the key is missing.
    std::string_view raw(std::string_view key) const;
    /// With its escapes undone; empty where the key is missing.
    std::string string(std::string_view key) const;
    /// The value in the first of the languages that has one, else the plain one. A language is a
    /// locale's name as messageLocales() gives it.
    std::string localeString(std::string_view key, const std::vector<std::string> &locales) const;
    bool boolean(std::string_view key) const;
    std::vector<std::string> list(std::string_view key) const;
    /// True where the desktops that run (of XDG_CURRENT_DESKTOP, in its order) are to show it, by
    /// OnlyShowIn and NotShowIn.
    bool isShownIn(const std::vector<std::string> &desktops) const;
    /// Each once, in the order of the alphabet.
    std::vector<std::string_view> keys() const;
    const std::string &text() const { return m_text; }

private:
    struct Row {
        std::string_view keyIn(const std::string &text) const { return {&text[key], keySize}; }
        std::size_t key = 0;
        std::size_t keySize = 0;
        std::size_t value = 0;
        std::size_t valueSize = 0;
    };

    const Row *find(std::string_view key) const;

    std::string m_text;
    std::vector<Row> m_rows; // sorted by key
    bool m_isValid = false;
};

/// The languages of messages, the wanted one first: of LANGUAGE, LC_ALL, LC_MESSAGES and LANG.
/// Each is followed by its less exact forms ("de_AT@euro", "de_AT", "de@euro", "de").
std::vector<std::string> messageLocales();

/// What stands for the field codes of an Exec line; an empty one leaves its code out.
struct ExecFields {
    std::string name; ///< of the entry, for %c
    std::string icon; ///< for %i
    std::string path; ///< of the entry, for %k
};

/// The words of an Exec value whose escapes are undone, by its quoting and by a shell's. Nothing
/// where a quote is not closed or there is no word.
std::optional<std::vector<std::string>> execWords(std::string_view exec);
/// The command that an Exec value starts without files or addresses; nothing as above.
std::optional<std::vector<std::string>> execCommand(std::string_view exec,
                                                    const ExecFields &fields);
/// The program that an Exec value is about, as it names it: behind "env" and its settings, and in
/// the script of "sh -c". Empty where none can be told.
std::string execProgram(std::string_view exec);

} // namespace brightsweep
