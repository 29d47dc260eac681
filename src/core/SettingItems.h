#pragma once

#include <QString>
#include <QVariantMap>

namespace brightsweep {

/// What the pages read of the settings at one moment, as text. An unset field is a null text.
struct SettingItems {
    QString errorValue; ///< the alarm's fraction of a volume, "0.100000"
    QString graphic;
    QString digital;
    QString systemCaches;
    QString userCaches;
    QString systemLogs;
    QString userLogs;
    QString userTrash;
    QString downloads;

    SettingItems() = default;
    /// From what encodeWithCoder() gave.
    explicit SettingItems(const QVariantMap &coder);
    void encodeWithCoder(QVariantMap &coder) const;
};

} // namespace brightsweep
