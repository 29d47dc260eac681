#include "linux/ToolWords.h"

#include "foundation/Trimmed.h"

#include <algorithm>
#include <vector>

namespace brightsweep {

namespace {

enum class Which { First, Last };

struct Mark {
    std::string_view beginning;
    Which which; ///< of several such lines
};

// In the order in which they count: apt-get only says that dpkg failed, while dpkg says why.
constexpr Mark marks[] = {
    {"dpkg: error", Which::First}, {"E: ", Which::Last},
    {"error: ", Which::First},     {"Error: ", Which::First},
    {"Error:", Which::First},      {"Failed to ", Which::First},
    {"Problem: ", Which::First},   {"RPMDB already locked by", Which::First},
};

// A carriage return ends a line as well: what follows takes its place on a terminal.
std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find_first_of("\n\r"), text.size());
        if (const auto line = trimmed(text.substr(0, end)); !line.empty())
            lines.push_back(line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

} // namespace

std::string decisiveLine(std::string_view output) {
    const auto lines = linesOf(output);
    if (lines.empty())
        return {};
    auto chosen = lines.end() - 1;
    for (const Mark &mark : marks) {
        const auto has = [&](std::string_view line) { return line.starts_with(mark.beginning); };
        auto found = std::find_if(lines.begin(), lines.end(), has);
        if (found == lines.end())
            continue;
        if (mark.which == Which::Last)
            found = std::find_if(lines.rbegin(), lines.rend(), has).base() - 1;
        chosen = found;
        break;
    }
    std::string words(*chosen);
    if (words.ends_with(':') && chosen + 1 != lines.end())
        words.append(1, ' ').append(chosen[1]);
    return words;
}

} // namespace brightsweep
