#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

namespace brightsweep {

/// Takes what other processes write to the standard settings into this one, at once, so that each
/// change is told by UserDefaultsDidChangeNotification. Main thread. On a file system that tells of
/// no changes of other machines, theirs come with the next change of ours.
class SettingsWatch : public QObject {
    Q_OBJECT

public:
    explicit SettingsWatch(QObject *parent = nullptr);

private:
    void watch();

    QFileSystemWatcher m_watcher;
    QTimer m_settled;
};

} // namespace brightsweep
