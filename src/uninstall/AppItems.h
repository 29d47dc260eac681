#pragma once

#include <QDateTime>
#include <QString>

#include <cstdint>
#include <filesystem>
#include <memory>

namespace brightsweep {

struct InstalledApplication;

/// One row of the uninstall page and of the login items page: what can be taken away, or is started
/// at login. Lists share a record, so that a tick holds in all of them.
///
/// A text that is not known is null, as the version of a bundle without one; a new record's are
/// empty.
struct AppItems {
    using Pointer = std::shared_ptr<AppItems>;

    AppItems() = default;
    /// Neither of the system nor ticked, whatever `isSystemAppStr` says.
    AppItems(QString infoDictionary, QString name, std::filesystem::path path, QString bundleID,
             QString bundleVersion, QString size, QDateTime date, QString isSystemAppStr,
             std::uint64_t fileSizeNum);
    AppItems(const AppItems &) = delete;
    AppItems &operator=(const AppItems &) = delete;

    /// A copy loses `isSystemApp` and `bIsSelected` and keeps `isSystemAppStr`.
    Pointer copyWithZone() const;
    /// Takes over what a later listing says of the same application; the tick stays.
    void takeFacts(const AppItems &later);

    /// The icon: a name of the icon theme or an absolute path; empty for that of its type.
    QString image = QStringLiteral("");
    QString name = QStringLiteral(""); ///< as the desktop shows it
    std::filesystem::path path;
    QString bundleID = QStringLiteral("");
    QString bundleVersion = QStringLiteral("");
    QString fileSize = QStringLiteral(""); ///< in the program's words
    QDateTime date = QDateTime::currentDateTime();
    bool isSystemApp = false;
    bool bIsSelected = false;                    ///< ticked; of a login item: it is hidden
    QString isSystemAppStr = QStringLiteral(""); ///< "YES" or "NO"
    std::uint64_t fileSizeNum = 0;               ///< bytes; 0 while it is not known
    bool isRunning = false;                      ///< when it was listed
    /// What its source says of it; null for a login item.
    std::shared_ptr<const InstalledApplication> application;
};

} // namespace brightsweep
