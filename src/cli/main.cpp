#include "cli/CommandLine.h"

#include "core/MacLog.h"
#include "core/app/RegisterDefaults.h"
#include "foundation/Identity.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

#include <cstdlib>

int main(int argc, char **argv) {
    brightsweep::Platform::setCurrent(brightsweep::makeLinuxPlatform());
    brightsweep::MacLog::setLogFileForCommandLine(brightsweep::logFileName);
    brightsweep::registerAllDefaults();
    std::_Exit(brightsweep::cli::runCommandLine(argc, argv));
}
