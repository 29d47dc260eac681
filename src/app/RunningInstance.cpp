#include "app/RunningInstance.h"

#include "foundation/Log.h"
#include "foundation/UserDefaults.h"
#include "platform/Platform.h"
#include "platform/SingleInstance.h"
#include "removal/NvAuthorization.h"
#include "removal/RemovalRun.h"

#include <QCoreApplication>
#include <QFile>

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <utility>

namespace brightsweep {

namespace {

constexpr int quitStatus = 1;
// For what removes something when the program ends.
constexpr std::chrono::seconds removalPatience{1};

} // namespace

RunningInstance::~RunningInstance() {
    Platform::current().instance->setActivateHandler(nullptr);
}

void RunningInstance::listen() {
    Platform::current().instance->setActivateHandler(
        [this](const InstanceRequest &request) { handleReopenAppEvent(request); });
}

void RunningInstance::launched() {
    m_launched = true;
    if (const auto request = std::exchange(m_reopen, std::nullopt))
        handleReopenAppEvent(*request);
}

void RunningInstance::handleReopenAppEvent(const InstanceRequest &request) {
    if (m_launched)
        return m_hooks.reopen(request);
    // One that only wants the window takes no folder away.
    InstanceRequest waiting = request;
    if (m_reopen && request.page == RequestedPage::None) {
        waiting.page = m_reopen->page;
        waiting.folder = std::move(m_reopen->folder);
    }
    m_reopen = std::move(waiting);
}

void RunningInstance::takeLeave() {
    m_hooks.leave();
    RemovalRun::endForQuit(removalPatience);
    NvAuthorization::shareNvAuthorization().freeAuthorization();
    UserDefaults::standardUserDefaults().synchronize();
    ObjectLog::flushAll();
}

void RunningInstance::restart() {
    takeLeave();
    if (m_hooks.restart)
        return m_hooks.restart();
    std::string program = QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString();
    char activate[] = "--activate";
    char *arguments[] = {program.data(), activate, nullptr};
    ::execv(program.c_str(), arguments);
    NSLog("The program cannot be started again: %@",
          std::error_code(errno, std::system_category()));
    std::_Exit(quitStatus);
}

void RunningInstance::quit() {
    takeLeave();
    // No destructor meets a worker that still runs.
    if (m_hooks.exit)
        m_hooks.exit(quitStatus);
    else
        std::_Exit(quitStatus);
}

} // namespace brightsweep
