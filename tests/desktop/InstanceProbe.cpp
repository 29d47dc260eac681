// A program of which one instance runs: instance_probe ACTIVATE TOKEN[@FOLDER] LOG [START]. It ends
// at once with the number of the outcome, unless it is the first one: that one writes "first" and
// then a line for each wish to the log, and runs on. With START it is busy starting, away from the
// event loop, until a file of that name exists. A wish with the token "hang" keeps its main thread
// busy.

#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "platform/SingleInstance.h"

#include <QCoreApplication>

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    if (argc < 4)
        return 100;
    brightsweep::Platform::setCurrent(brightsweep::makeLinuxPlatform());
    auto &instance = *brightsweep::Platform::current().instance;
    const std::filesystem::path log = argv[3];
    const std::string words = argv[2];
    const auto folder = words.find('@');
    brightsweep::InstanceRequest request{words.substr(0, folder)};
    if (folder != std::string::npos)
        request = {words.substr(0, folder), brightsweep::RequestedPage::Duplicates,
                   words.substr(folder + 1)};
    const auto outcome = instance.claim(argv[1] == std::string("1"), request);
    if (outcome != brightsweep::InstanceOutcome::First)
        ::_exit(int(outcome));
    std::ofstream(log, std::ios::app) << "first\n";
    while (argc > 4 && !std::filesystem::exists(argv[4]))
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    instance.setActivateHandler([&](const brightsweep::InstanceRequest &asked) {
        std::ofstream(log, std::ios::app)
            << "asked " << asked.activationToken
            << (asked.page == brightsweep::RequestedPage::None ? std::string()
                                                               : "@" + asked.folder.native())
            << "\n";
        while (asked.activationToken == "hang")
            ::pause();
    });
    return QCoreApplication::exec();
}
