#include "cli/Command.h"

#include "cli/Interruption.h"
#include "cli/TextWidth.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "foundation/UserDefaults.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace brightsweep::cli {

namespace {

constexpr std::size_t usualColumns = 80;

std::string shown(std::string_view cell) {
    return paths::display(cell).toStdString();
}

// As many as the terminal has, and one less, so that none begins a new line by itself.
std::size_t columnsOfTerminal() {
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return usualColumns - 1;
    return std::size_t(size.ws_col) - 1;
}

} // namespace

bool Output::data(std::string_view text) {
    Interruption::outputBegins();
    progress({});
    return !writeAll(STDOUT_FILENO, text);
}

void Output::warning(std::string_view line) {
    progress({});
    writeAll(STDERR_FILENO, std::string(line) + "\n");
}

int Output::usage(std::string_view line) {
    // What the user wrote may be repeated in it, and must not break the line.
    warning(shown(line));
    return WrongUsage;
}

bool Output::showsProgress() const {
    return !quiet && ::isatty(STDERR_FILENO) == 1;
}

void Output::progress(std::string_view text) {
    if (text.empty() && !m_progressShown)
        return;
    if (!showsProgress())
        return;
    writeAll(STDERR_FILENO, "\r\033[K" + cutToWidth(shown(text), columnsOfTerminal()));
    m_progressShown = !text.empty();
}

std::string Output::emphasised(std::string_view text) const {
    static const bool colours = ::isatty(STDOUT_FILENO) == 1 && !std::getenv("NO_COLOR");
    return colours ? "\033[1;33m" + std::string(text) + "\033[0m" : std::string(text);
}

void Table::row(std::vector<std::string> cells) {
    for (std::string &cell : cells)
        cell = shown(cell);
    m_rows.push_back(std::move(cells));
}

std::string Table::text() const {
    std::vector<std::size_t> widths(m_right.size());
    for (const auto &row : m_rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], widthOf(row[i]));
    }
    std::string text;
    for (const auto &row : m_rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string padding(widths[i] - widthOf(row[i]), ' ');
            line += m_right[i] ? padding + row[i] : row[i] + padding;
            line += "  ";
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}

bool settingsAreReadable(Output &output, std::string_view advice) {
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.synchronize();
    const std::string problem = defaults.readProblem();
    if (!problem.empty())
        output.warning("The settings in " + shown(defaults.file().native()) +
                       " cannot be read: " + problem + "." + std::string(advice));
    return problem.empty();
}

std::string argumentBytes(const QString &argument) {
    return argument.toLatin1().toStdString();
}

std::optional<std::filesystem::path> pathOf(const QString &argument, Output &output) {
    const std::string given = argumentBytes(argument);
    std::filesystem::path path = paths::fromOption(given);
    if (!path.empty() || given.empty())
        return path;
    output.usage(given + " is no path.");
    return {};
}

} // namespace brightsweep::cli
