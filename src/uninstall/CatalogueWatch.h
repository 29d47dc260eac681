#pragma once

#include "core/Clock.h"

#include <QFileSystemWatcher>
#include <QObject>

#include <filesystem>
#include <vector>

namespace brightsweep {

/// Tells when something was installed or went away: watches files and folders, or where one is
/// missing the nearest folder above it. What comes within a second is told once. Main thread.
class CatalogueWatch : public QObject {
    Q_OBJECT

public:
    /// The clock outlives it.
    explicit CatalogueWatch(Clock &clock, QObject *parent = nullptr);
    ~CatalogueWatch() override;

    /// Watches these and nothing else. To be called again after each change, since a file that was
    /// replaced is another one.
    void watch(const std::vector<std::filesystem::path> &places);

Q_SIGNALS:
    void changed();

private:
    void noteChange();

    Clock &m_clock;
    Clock::Handle m_pending = 0;
    QFileSystemWatcher m_watcher;
};

} // namespace brightsweep
