#include "cli/CommandLine.h"
#include "cli/Interruption.h"
#ifdef BRIGHTSWEEP_GUI
#include "app/ui/ApplicationStart.h"
#endif
#include "app/Entry.h"
#include "app/RegisterDefaults.h"
#include "core/MacLog.h"
#include "foundation/FileDescriptor.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/OwnProcess.h"
#include "memory/ClearMemory.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <string_view>

namespace {

bool sessionBusIsSilent = false;

bool hasDisplay() {
#ifdef BRIGHTSWEEP_GUI
    return brightsweep::hasDisplay();
#else
    return false;
#endif
}

void openLogOfWindow(std::string_view fileName) {
    brightsweep::Log::setDescriptor(STDERR_FILENO);
    brightsweep::MacLog::setLogFile(fileName);
}

// The terminal form of the program: the same scan, printed.
int terminalMain(char *program) {
    brightsweep::MacLog::createSupportFolder();
    char command[] = "scan";
    char *arguments[] = {program, command, nullptr};
    return brightsweep::cli::runCommandLine(2, arguments);
}

int applicationMain(int argc, char **argv, int terminal) {
    if (sessionBusIsSilent)
        brightsweep::NSLog("The session bus does not answer; the program starts without it.");
    brightsweep::registerAllDefaults();
#ifdef BRIGHTSWEEP_GUI
    if (hasDisplay())
        return brightsweep::runApplication(argc, argv, terminal);
#endif
    static_cast<void>(argc);
    static_cast<void>(terminal);
    return terminalMain(argv[0]);
}

// What ends the program at once; false where it is to run.
bool isAnswered(std::string_view word) {
    if (word == "--version")
        std::printf("brightsweep %s\n", brightsweep::programVersion);
    else if (word == "--help")
        std::puts("Usage: brightsweep [--activate | --duplicates [FOLDER] | --usage [FOLDER]]\n"
                  "Without a display it scans the clean categories and prints what it found.\n"
                  "For everything else in a terminal: brightsweep-cli --help");
    else
        return false;
    return true;
}

} // namespace

int main(int argc, char **argv) {
    if (argc > 1 && isAnswered(argv[1]))
        return 0;
    brightsweep::settleProcess();
    // The log takes the place of standard error.
    const brightsweep::FileDescriptor terminal(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3));
    const bool frees = brightsweep::ClearMemory::valueToFree(argc, argv) != nullptr;
#ifdef BRIGHTSWEEP_GUI
    // The command "fr" needs no bus and waits for none.
    if (!frees && hasDisplay())
        sessionBusIsSilent = brightsweep::leaveSilentSessionBus();
    else
#endif
        brightsweep::cli::beginCommandLine();
    brightsweep::Platform::setCurrent(brightsweep::makeLinuxPlatform());
    // What is said before the log is open belongs to nobody's terminal.
    brightsweep::Log::setDescriptor(-1);
    const bool scans = !hasDisplay() && !frees;
    const int status = brightsweep::runEntry(
        argc, argv, scans ? brightsweep::MacLog::setLogFileForCommandLine : openLogOfWindow,
        brightsweep::ClearMemory::freeMemory,
        [&] { return applicationMain(argc, argv, terminal.get()); });
    brightsweep::cli::Interruption::end(status);
}
