#include "cli/CommandLine.h"

#include "cli/Commands.h"
#include "cli/Interruption.h"
#include "core/ThreadWorker.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"

#include <QCoreApplication>

#include <algorithm>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <string_view>

namespace brightsweep::cli {

namespace {

void tell(std::string_view line) {
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
}

// Without memory of its own: there may be none.
[[noreturn]] void endByException() {
    try {
        if (const auto exception = std::current_exception())
            std::rethrow_exception(exception);
        tell("brightsweep-cli cannot go on.\n");
    } catch (const std::bad_alloc &) {
        tell("There is not enough memory.\n");
    } catch (const std::exception &error) {
        tell("brightsweep-cli cannot go on: ");
        tell(error.what());
        tell(".\n");
    } catch (...) {
        tell("brightsweep-cli cannot go on.\n");
    }
    Interruption::end(Failed);
}

constexpr const Command *commands[] = {
    &scanCommand,   &cleanCommand,      &duplicatesCommand, &usageCommand,
    &appsCommand,   &uninstallCommand,  &leftoversCommand,  &volumesCommand,
    &memoryCommand, &loginItemsCommand, &settingsCommand,   &historyCommand,
};

// Every command has them.
constexpr struct {
    char letter; ///< 0 where there is none
    const char *name;
    const char *words;
} commonOptions[] = {
    {0, "json", "One JSON document on standard output"},
    {0, "quiet", "No progress"},
    {'h', "help", "This text, or that of a command"},
    {0, "version", "The version"},
};

std::string overview() {
    std::string text = "Usage: brightsweep-cli [--json] [--quiet] COMMAND [options]\n\nCommands:\n";
    Table table({false, false, false});
    for (const Command *command : commands)
        table.row({"", command->name, command->summary});
    Table options({false, false, false});
    for (const auto &option : commonOptions)
        options.row({option.letter ? std::string("  -") + option.letter + "," : "",
                     std::string("--") + option.name, option.words});
    return text + table.text() + "\nOptions:\n" + options.text();
}

// The name of the command is the first argument that is no option.
const char *commandName(int argc, char **argv) {
    for (int i = 1; i < argc; ++i) {
        if (argv[i][0] != '-')
            return argv[i];
    }
    return nullptr;
}

bool isNegativeNumber(const QString &text) {
    return text.size() > 1 && text[0] == QLatin1Char('-') &&
           (text[1] == QLatin1Char('.') || text[1].isDigit());
}

// One character for each byte, so that a path comes through the parser whole.
QStringList argumentTexts(int argc, char **argv, const char *name, const Command *command) {
    QStringList texts;
    for (int i = 0; i < argc; ++i) {
        if (!command || argv[i] != name)
            texts += QString::fromLatin1(argv[i]);
    }
    if (!command || !command->takesNegativeNumbers)
        return texts;
    // Its options take no value, so they can stand before the mark behind which none is looked for.
    const QString endOfOptions = QStringLiteral("--");
    auto end = std::find(texts.begin() + 1, texts.end(), endOfOptions);
    if (end != texts.end())
        end = texts.erase(end);
    const auto arguments = std::stable_partition(texts.begin() + 1, end, [](const QString &text) {
        return text.size() > 1 && text[0] == QLatin1Char('-') && !isNegativeNumber(text);
    });
    texts.insert(arguments, endOfOptions);
    return texts;
}

// Qt's own text would begin with the path of the program.
std::string helpOf(const Command &command, const QCommandLineParser &parser) {
    const std::string text = parser.helpText().toStdString();
    const auto options = std::min(text.find(" [options]"), text.size());
    return std::string("Usage: brightsweep-cli ") + command.name + text.substr(options);
}

// What Qt says belongs into the log, or before the table stands a line about the locale.
void logMessage(QtMsgType type, const QMessageLogContext &, const QString &text) {
    NSLog("%@", text);
    if (type == QtFatalMsg)
        Output().warning(text.toStdString());
}

} // namespace

void beginCommandLine() {
    Interruption::divideProcess();
    std::set_terminate(endByException);
    // Qt's own event loop, as GLib ends the process itself where there is no memory.
    ::setenv("QT_NO_GLIB", "1", 1);
}

int runCommandLine(int argc, char **argv) {
    qInstallMessageHandler(logMessage);
    // Never destroyed: a thread of the platform may be waiting for a service that does not answer.
    static int arguments = argc;
    new QCoreApplication(arguments, argv);
    QCoreApplication::setApplicationName(QStringLiteral("brightsweep-cli"));
    QCoreApplication::setApplicationVersion(QLatin1String(programVersion));
    ThreadWorker::setRunsWithoutThreads(true);

    Output output;
    const char *name = commandName(argc, argv);
    const Command *command = nullptr;
    for (const Command *candidate : commands) {
        if (name && std::string_view(candidate->name) == name)
            command = candidate;
    }

    QCommandLineParser parser;
    for (const auto &option : commonOptions) {
        QStringList names = {QLatin1String(option.name)};
        if (option.letter)
            names.prepend(QString(QLatin1Char(option.letter)));
        parser.addOption({names, QLatin1String(option.words)});
    }
    if (command) {
        parser.setApplicationDescription(QString::fromUtf8(command->summary));
        command->configure(parser);
    }
    const bool understood = parser.parse(argumentTexts(argc, argv, name, command));
    if (understood && parser.isSet(QStringLiteral("version")))
        return output.data(std::string("brightsweep ") + programVersion + "\n") ? Done : Failed;
    if (understood && parser.isSet(QStringLiteral("help")))
        return output.data(command ? helpOf(*command, parser) : overview()) ? Done : Failed;
    if (!name)
        return output.usage("Name a command; `brightsweep-cli --help` lists them.");
    if (!command)
        return output.usage("There is no command \"" + std::string(name) +
                            "\"; `brightsweep-cli --help` lists them.");
    if (!understood)
        return output.usage(argumentBytes(parser.errorText()) + " Write `brightsweep-cli " +
                            command->name + " --help` for what it takes.");
    output.json = parser.isSet(QStringLiteral("json"));
    output.quiet = parser.isSet(QStringLiteral("quiet"));
    return command->run(parser, output);
}

} // namespace brightsweep::cli
