#include "cli/CommandLine.h"
#include "cli/Interruption.h"

#include "app/RegisterDefaults.h"
#include "core/MacLog.h"
#include "foundation/Identity.h"
#include "foundation/OwnProcess.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "removal/RemovalRun.h"

int main(int argc, char **argv) {
    brightsweep::settleProcess();
    brightsweep::cli::beginCommandLine();
    brightsweep::Platform::setCurrent(brightsweep::makeLinuxPlatform());
    brightsweep::MacLog::setLogFileForCommandLine(brightsweep::logFileName);
    brightsweep::registerAllDefaults();
    brightsweep::RemovalRun::putBackLeftModes();
    brightsweep::cli::Interruption::end(brightsweep::cli::runCommandLine(argc, argv));
}
