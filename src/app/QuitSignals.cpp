#include "app/QuitSignals.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace brightsweep {

namespace {

int writeEnd = -1;

// A full pipe wakes its reader anyway.
extern "C" void tellOfSignal(int) {
    const int before = errno;
    const char byte = 0;
    if (::write(writeEnd, &byte, 1) < 0)
        errno = before;
}

} // namespace

QuitSignals::QuitSignals() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    writeEnd = ends[1];
    auto *const notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        Q_EMIT quitRequested();
    });
    struct sigaction action {};
    action.sa_handler = tellOfSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(number, &action, nullptr);
}

} // namespace brightsweep
