#include "cli/CommandLine.h"

#include "app/RegisterDefaults.h"
#include "core/MacLog.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "removal/RemovalRun.h"

#include <cstdlib>

int main(int argc, char **argv) {
    brightsweep::cli::handleFatalErrors();
    brightsweep::Platform::setCurrent(brightsweep::makeLinuxPlatform());
    brightsweep::MacLog::setLogFileForCommandLine(brightsweep::logFileName);
    brightsweep::registerAllDefaults();
    brightsweep::RemovalRun::putBackLeftModes();
    const int status = brightsweep::cli::runCommandLine(argc, argv);
    brightsweep::ObjectLog::flushAll();
    std::_Exit(status);
}
