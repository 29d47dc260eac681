#pragma once

#include <QObject>

namespace brightsweep {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that the program ends as by
/// its own "Quit". One for the process, made on the main thread; lasts as long as the process.
class QuitSignals : public QObject {
    Q_OBJECT

public:
    QuitSignals();

Q_SIGNALS:
    void quitRequested();
};

} // namespace brightsweep
