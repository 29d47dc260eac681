#pragma once

#include <QCommandLineParser>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep::cli {

/// How a command ended; the process's exit status, unless a signal asked it to end.
enum Exit : int {
    Done = 0,
    Failed = 1,
    WrongUsage = 2,
    PartlyFailed = 3,
    RightsRefused = 4,
};

/// Where a command writes, and the options that hold for all of them.
class Output {
public:
    bool json = false;
    bool quiet = false;

    /// Data, on standard output. False when it could not be written.
    bool data(std::string_view text);
    /// A line on standard error.
    void warning(std::string_view line);
    /// The one line of a wrong usage; returns the exit status.
    int usage(std::string_view line);
    /// Replaces the line of progress; only where standard error is a terminal, and not with
    /// --quiet. An empty text takes it away.
    void progress(std::string_view text);
    bool showsProgress() const;
    /// The text in bold or in the colour of numbers, where standard output is a terminal and
    /// NO_COLOR is not set; else as it stands.
    std::string emphasised(std::string_view text) const;

private:
    bool m_progressShown = false;
};

/// A table of columns for people: the last column as it stands, the others padded. Columns marked
/// so stand at the right. Control characters in a cell are shown escaped.
class Table {
public:
    explicit Table(std::vector<bool> rightAligned) : m_right(std::move(rightAligned)) {}
    void row(std::vector<std::string> cells);
    std::string text() const;

private:
    std::vector<bool> m_right;
    std::vector<std::vector<std::string>> m_rows;
};

/// One command of the command line. The parser's texts hold the argument's bytes one to a
/// character; argumentBytes() gives them back.
struct Command {
    const char *name;
    const char *summary;
    /// Adds the command's own options and positional arguments.
    void (*configure)(QCommandLineParser &parser);
    int (*run)(const QCommandLineParser &parser, Output &output);
    /// A positional argument may be a number below zero. No option of the command takes a value.
    bool takesNegativeNumbers = false;
};

/// The exact bytes of an option's value or of a positional argument.
std::string argumentBytes(const QString &argument);

/// The path that an argument gives, as it stands or as `base64:…`. None, after the line of a wrong
/// usage, where it gives no path.
std::optional<std::filesystem::path> pathOf(const QString &argument, Output &output);

/// Looks at the settings anew. False, after a line that says why and then what else to do, where
/// they cannot be read whole: defaults are then not to be taken for what the user has set.
bool settingsAreReadable(Output &output, std::string_view advice = {});

} // namespace brightsweep::cli
