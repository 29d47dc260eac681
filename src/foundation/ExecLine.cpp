#include "foundation/DesktopEntry.h"

#include <algorithm>
#include <array>

// The grammar of the key Exec.

namespace brightsweep {

namespace {

using Words = std::vector<std::string>;

constexpr std::array<std::string_view, 5> shells = {"sh", "bash", "dash", "zsh", "ksh"};
// Options of env whose next word belongs to them.
constexpr std::array<std::string_view, 4> envOptionsWithWord = {"-u", "--unset", "-C", "--chdir"};
// First words of a script that start no program that could be told.
constexpr auto shellWords = std::to_array<std::string_view>(
    {"!",     ".",       ":",        "[",      "[[",    "alias",  "builtin", "case",
     "cd",    "command", "declare",  "eval",   "exit",  "export", "for",     "if",
     "local", "read",    "readonly", "return", "set",   "source", "test",    "time",
     "trap",  "ulimit",  "umask",    "unset",  "until", "wait",   "while"});
// A shell within a shell within a shell is nobody's.
constexpr int mostShells = 4;

template <std::size_t Count>
bool isOneOf(const std::array<std::string_view, Count> &table, std::string_view word) {
    return std::find(table.begin(), table.end(), word) != table.end();
}

std::string_view baseName(std::string_view word) {
    return word.substr(word.rfind('/') + 1);
}

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           character == '_';
}

// NAME=value
bool isSetting(std::string_view word) {
    const auto equals = word.find('=');
    return equals != word.npos && equals > 0 && isLetter(word.front()) &&
           std::all_of(word.begin(), word.begin() + std::ptrdiff_t(equals), [](char character) {
               return isLetter(character) || (character >= '0' && character <= '9');
           });
}

void skipEnv(Words &words) {
    std::size_t next = 1;
    while (next < words.size()) {
        const std::string &word = words[next];
        // What is to be split stands for several words.
        if ((word == "-S" || word == "--split-string") && next + 1 < words.size()) {
            const Words split = execWords(words[next + 1]).value_or(Words());
            const auto at = words.erase(words.begin(), words.begin() + std::ptrdiff_t(next) + 2);
            words.insert(at, split.begin(), split.end());
            return;
        }
        if (isOneOf(envOptionsWithWord, word))
            next += 2;
        else if (isSetting(word) || word.starts_with('-'))
            ++next;
        else
            break;
    }
    words.erase(words.begin(), words.begin() + std::ptrdiff_t(std::min(next, words.size())));
}

// The script of "sh -c", which may stand with other letters; nothing where there is none.
std::optional<std::string> scriptOf(const Words &words) {
    for (std::size_t i = 1; i + 1 < words.size() && words[i].starts_with('-'); ++i) {
        if (!words[i].starts_with("--") && words[i].find('c') != std::string::npos)
            return words[i + 1];
    }
    return std::nullopt;
}

void skipSettings(Words &words) {
    while (!words.empty() && (isSetting(words.front()) || words.front() == "exec"))
        words.erase(words.begin());
}

std::string withoutFieldCodes(std::string_view word, const ExecFields &fields) {
    std::string text;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (word[i] != '%' || i + 1 == word.size()) {
            text += word[i];
            continue;
        }
        switch (word[++i]) {
        case '%':
            text += '%';
            break;
        case 'c':
            text += fields.name;
            break;
        case 'k':
            text += fields.path;
            break;
        default: // files, addresses, and codes that mean nothing any more
            break;
        }
    }
    return text;
}

} // namespace

std::optional<Words> execWords(std::string_view exec) {
    Words words;
    bool isInWord = false;
    char quote = 0;
    for (std::size_t i = 0; i < exec.size(); ++i) {
        const char character = exec[i];
        if (quote == 0 && (character == ' ' || character == '\t' || character == '\n')) {
            isInWord = false;
            continue;
        }
        if (!isInWord)
            words.emplace_back();
        isInWord = true;
        if (quote == 0 && (character == '"' || character == '\'')) {
            quote = character;
        } else if (character == quote) {
            quote = 0;
        } else if (character == '\\' && quote != '\'') {
            // At the end of all it stands for nothing.
            if (++i == exec.size())
                break;
            // Between double quotes only what has a meaning there can be escaped.
            constexpr std::string_view escapable = "\"`$\\";
            if (quote != 0 && escapable.find(exec[i]) == escapable.npos)
                words.back() += '\\';
            words.back() += exec[i];
        } else {
            words.back() += character;
        }
    }
    if (quote != 0 || words.empty())
        return std::nullopt;
    return words;
}

std::optional<Words> execCommand(std::string_view exec, const ExecFields &fields) {
    const auto words = execWords(exec);
    if (!words)
        return std::nullopt;
    Words command;
    for (const std::string &word : *words) {
        if (word == "%i") {
            if (!fields.icon.empty())
                command.insert(command.end(), {"--icon", fields.icon});
            continue;
        }
        std::string text = withoutFieldCodes(word, fields);
        // A code that stands for nothing is no empty word.
        if (!text.empty() || word.empty())
            command.push_back(std::move(text));
    }
    if (command.empty() || command.front().empty())
        return std::nullopt;
    return command;
}

std::string execProgram(std::string_view exec) {
    auto words = execCommand(exec, {});
    for (int shellsSeen = 0; words && shellsSeen < mostShells; ++shellsSeen) {
        skipSettings(*words);
        while (!words->empty() && baseName(words->front()) == "env") {
            skipEnv(*words);
            skipSettings(*words);
        }
        if (words->empty())
            return {};
        if (!isOneOf(shells, baseName(words->front())))
            return words->front();
        const auto script = scriptOf(*words);
        auto scriptWords = script ? execWords(*script) : std::nullopt;
        if (scriptWords)
            skipSettings(*scriptWords);
        if (scriptWords && !scriptWords->empty() && scriptWords->front().ends_with(';'))
            scriptWords->front().pop_back();
        constexpr std::string_view meta = "$`;&|<>(){}*?";
        if (!scriptWords || scriptWords->empty() || scriptWords->front().empty() ||
            isOneOf(shellWords, scriptWords->front()) || scriptWords->front().front() == '~' ||
            scriptWords->front().find_first_of(meta) != std::string::npos)
            return words->front();
        words = std::move(scriptWords);
    }
    return {};
}

} // namespace brightsweep
