#include "cli/CommandLine.h"

#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

int main(int argc, char **argv) {
    brightsweep::Platform::setCurrent(brightsweep::makeLinuxPlatform());
    return brightsweep::cli::runCommandLine(argc, argv);
}
