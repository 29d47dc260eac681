#include "cli/CommandLine.h"
#include "cli/Interruption.h"

#include "app/RegisterDefaults.h"
#include "core/MacLog.h"
#include "foundation/Identity.h"
#include "foundation/OwnProcess.h"
#include "memory/ClearMemory.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "removal/RemovalRun.h"

int main(int argc, char **argv) {
    // What a release without a tool starts in its place; it frees nothing.
    constexpr int standInArguments = 3;
    if (argc == standInArguments && brightsweep::ClearMemory::valueToFree(argc, argv))
        return 0;
    brightsweep::settleProcess();
    brightsweep::cli::beginCommandLine();
    brightsweep::Platform::setCurrent(brightsweep::makeLinuxPlatform());
    brightsweep::MacLog::setLogFileForCommandLine(brightsweep::logFileName);
    brightsweep::registerAllDefaults();
    brightsweep::RemovalRun::putBackLeftModes();
    brightsweep::cli::Interruption::end(brightsweep::cli::runCommandLine(argc, argv));
}
