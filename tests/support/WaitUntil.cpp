#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

namespace brightsweep::test {

bool eventually(const std::function<bool()> &condition) {
    const QDeadlineTimer deadline(30'000);
    if (QThread::currentThread() != QCoreApplication::instance()->thread()) {
        while (!condition() && !deadline.hasExpired())
            QThread::msleep(1);
        return condition();
    }
    if (condition())
        return true;
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition())
            loop.exit(0);
        else if (deadline.hasExpired())
            loop.exit(1);
    });
    poll.start(1);
    return loop.exec() == 0;
}

} // namespace brightsweep::test
