#include "core/SettingsWatch.h"

#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"

#include <QFile>

#include <sys/stat.h>

#include <chrono>

namespace brightsweep {

namespace {

// A write makes several events.
constexpr std::chrono::milliseconds settleTime{50};

QString inQt(const std::filesystem::path &path) {
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

} // namespace

SettingsWatch::SettingsWatch(QObject *parent) : QObject(parent) {
    m_settled.setSingleShot(true);
    m_settled.setInterval(settleTime);
    const auto begin = [this] {
        if (!m_settled.isActive())
            m_settled.start();
    };
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, begin);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, begin);
    connect(&m_settled, &QTimer::timeout, this, [this] {
        watch();
        // A write of ours that fails makes events in the folder too, and would be tried for ever.
        const Traits now = traits();
        if (m_seen != now)
            UserDefaults::standardUserDefaults().synchronize();
        m_seen = now;
    });
    watch();
}

SettingsWatch::Traits SettingsWatch::traits() {
    struct stat status {};
    if (::stat(UserDefaults::standardUserDefaults().file().c_str(), &status) != 0)
        return {};
    return {std::int64_t(status.st_dev), std::int64_t(status.st_ino), status.st_size,
            status.st_ctim.tv_sec, status.st_ctim.tv_nsec};
}

// The folder tells of a file that takes another's place, and the one above of a folder that does;
// the file itself of one that is written where it stands, also when it is a link to elsewhere. Each
// must be named again for every new one. A folder that is not there is not made here: somebody may
// have moved it away and be about to move it back.
void SettingsWatch::watch() {
    const auto &file = UserDefaults::standardUserDefaults().file();
    const auto folder = paths::parent(file);
    for (const QString &path : {inQt(paths::parent(folder)), inQt(folder), inQt(file)}) {
        m_watcher.removePath(path);
        if (QFile::exists(path))
            m_watcher.addPath(path);
    }
}

} // namespace brightsweep
