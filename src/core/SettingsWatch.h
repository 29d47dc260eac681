#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

#include <array>
#include <cstdint>
#include <optional>

namespace brightsweep {

/// Takes what other processes write to the standard settings into this one, at once, so that each
/// change is told by UserDefaultsDidChangeNotification. Main thread. On a file system that tells of
/// no changes of other machines, theirs come with the next change of ours.
class SettingsWatch : public QObject {
    Q_OBJECT

public:
    explicit SettingsWatch(QObject *parent = nullptr);

private:
    // What a write of the file changes of it; all zero where it is not there.
    using Traits = std::array<std::int64_t, 5>;
    static Traits traits();

    void watch();

    QFileSystemWatcher m_watcher;
    QTimer m_settled;
    std::optional<Traits> m_seen;
};

} // namespace brightsweep
