#include "linux/UserDirectories.h"

#include <algorithm>

namespace brightsweep {

std::map<std::string, std::string> parseUserDirectories(std::string_view text,
                                                        std::string_view home) {
    std::map<std::string, std::string> folders;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        const auto quote = line.find("=\"");
        if (!line.starts_with("XDG_") || quote == line.npos)
            continue;
        const std::string key(line.substr(0, quote));
        line.remove_prefix(quote + 2);
        std::string value;
        for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
            if (line[i] == '\\' && i + 1 < line.size())
                ++i;
            value += line[i];
        }
        constexpr std::string_view homeWord = "$HOME";
        if (value == homeWord || value.starts_with("$HOME/"))
            folders[key] = std::string(home) + value.substr(homeWord.size());
        else if (value.starts_with('/'))
            folders[key] = value;
    }
    return folders;
}

} // namespace brightsweep
