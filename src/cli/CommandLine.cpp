#include "cli/CommandLine.h"

#include "cli/Commands.h"
#include "foundation/Identity.h"

#include <QCoreApplication>

#include <csignal>
#include <string>

namespace brightsweep::cli {

namespace {

std::atomic<bool> interruptRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void requestInterrupt(int) {
    interruptRequested.store(true);
}

void installInterruptHandlers() {
    struct sigaction action {};
    action.sa_handler = requestInterrupt;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    action.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &action, nullptr);
}

constexpr const Command *commands[] = {
    &scanCommand,    &cleanCommand,  &duplicatesCommand, &usageCommand,
    &volumesCommand, &memoryCommand, &settingsCommand,   &historyCommand,
};

std::string overview() {
    std::string text = "Usage: brightsweep-cli [--json] [--quiet] COMMAND [options]\n\nCommands:\n";
    Table table({false, false, false});
    for (const Command *command : commands)
        table.row({"", command->name, command->summary});
    return text + table.text() +
           "\nOptions:\n"
           "  --json     One JSON document on standard output\n"
           "  --quiet    No progress\n"
           "  --help     This text, or that of a command\n"
           "  --version  The version\n";
}

// The name of the command is the first argument that is no option.
const char *commandName(int argc, char **argv) {
    for (int i = 1; i < argc; ++i) {
        if (argv[i][0] != '-')
            return argv[i];
    }
    return nullptr;
}

// One character for each byte, so that a path comes through the parser whole.
QStringList argumentTexts(int argc, char **argv, const char *command) {
    QStringList texts;
    bool commandSeen = false;
    for (int i = 0; i < argc; ++i) {
        if (argv[i] == command && !commandSeen) {
            commandSeen = true;
            texts[0] += QLatin1Char(' ') + QString::fromLatin1(command);
            continue;
        }
        texts += QString::fromLatin1(argv[i]);
    }
    return texts;
}

} // namespace

const std::atomic<bool> &interrupted() {
    return interruptRequested;
}

int runCommandLine(int argc, char **argv) {
    // Never destroyed: a thread of the platform may be waiting for a service that does not answer.
    static int arguments = argc;
    new QCoreApplication(arguments, argv);
    QCoreApplication::setApplicationName(QStringLiteral("brightsweep-cli"));
    QCoreApplication::setApplicationVersion(QLatin1String(programVersion));
    installInterruptHandlers();

    Output output;
    const char *name = commandName(argc, argv);
    const Command *command = nullptr;
    for (const Command *candidate : commands) {
        if (name && std::string_view(candidate->name) == name)
            command = candidate;
    }

    QCommandLineParser parser;
    parser.addOption({QStringLiteral("json"), QStringLiteral("One JSON document.")});
    parser.addOption({QStringLiteral("quiet"), QStringLiteral("No progress.")});
    const auto help = parser.addHelpOption();
    parser.addOption({QStringLiteral("version"), QStringLiteral("The version.")});
    if (command) {
        parser.setApplicationDescription(QString::fromUtf8(command->summary));
        command->configure(parser);
    }
    const bool understood = parser.parse(argumentTexts(argc, argv, command ? name : nullptr));
    if (understood && parser.isSet(QStringLiteral("version")))
        return output.data(std::string("brightsweep ") + programVersion + "\n") ? Done : Failed;
    if (understood && parser.isSet(help))
        return output.data(command ? parser.helpText().toStdString() : overview()) ? Done : Failed;
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
