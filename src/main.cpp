#include "cli/CommandLine.h"
#include "core/Entry.h"
#include "core/MacLog.h"
#include "core/app/RegisterDefaults.h"
#include "memory/ClearMemory.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

#include <cstdlib>

namespace {

// The terminal form of the program: the same scan, printed.
int applicationMain(char *program) {
    brightsweep::registerAllDefaults();
    brightsweep::MacLog::createSupportFolder();
    char command[] = "scan";
    char *arguments[] = {program, command, nullptr};
    return brightsweep::cli::runCommandLine(2, arguments);
}

} // namespace

int main(int argc, char **argv) {
    brightsweep::Platform::setCurrent(brightsweep::makeLinuxPlatform());
    std::_Exit(brightsweep::runEntry(argc, argv, brightsweep::ClearMemory::freeMemory,
                                     [argv] { return applicationMain(argv[0]); }));
}
