#include "uninstall/CatalogueWatch.h"

#include "foundation/Paths.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"

#include <QStringList>

namespace brightsweep {

namespace {

constexpr std::chrono::milliseconds coalescing{1000};

} // namespace

CatalogueWatch::CatalogueWatch(Clock &clock, QObject *parent) : QObject(parent), m_clock(clock) {
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &CatalogueWatch::noteChange);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &CatalogueWatch::noteChange);
}

CatalogueWatch::~CatalogueWatch() {
    m_clock.cancel(m_pending);
}

void CatalogueWatch::watch(const std::vector<std::filesystem::path> &places) {
    QStringList wanted;
    FileOperations &files = *Platform::current().files;
    for (std::filesystem::path place : places) {
        while (place != "/" && !files.attributesFollowing(place))
            place = paths::parent(place);
        const std::string &bytes = place.native();
        const QString path = paths::text(bytes);
        if (place != "/" && paths::isValidUtf8(bytes) && !wanted.contains(path))
            wanted += path;
    }
    const QStringList old = m_watcher.files() + m_watcher.directories();
    if (!old.isEmpty())
        m_watcher.removePaths(old);
    if (!wanted.isEmpty())
        m_watcher.addPaths(wanted);
}

void CatalogueWatch::noteChange() {
    if (m_pending != 0)
        return;
    m_pending = m_clock.callAfter(coalescing, [this] {
        m_pending = 0;
        Q_EMIT changed();
    });
}

} // namespace brightsweep
