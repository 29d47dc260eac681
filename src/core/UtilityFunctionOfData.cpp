#include "core/UtilityFunctionOfData.h"

#include "core/SettingKeys.h"
#include "core/UtilityFunction.h"
#include "foundation/UserDefaults.h"

#include <QStringList>

namespace brightsweep {

UtilityFunctionOfData &UtilityFunctionOfData::getMyData() {
    static UtilityFunctionOfData data;
    return data;
}

SettingItems UtilityFunctionOfData::readerTxtForSettingValue() const {
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    const auto integer = [&](const QString &key) {
        return QString::number(defaults.integerForKey(key));
    };
    // Another edition has a fixed alarm.
    const bool professional = UtilityFunction::returnVersion() == VERSION_FOR_PROFESSIONAL;
    const double alarm = professional ? double(defaults.floatForKey(DSSpaceAlarmKey)) : 0.1;

    SettingItems items;
    items.digital = integer(DSDisplayTypeKey);
    items.errorValue = QString::number(alarm, 'f', 6);
    items.systemCaches = integer(DSSystemCachesKey);
    items.systemLogs = integer(DSSystemLogsKey);
    items.userCaches = integer(DSUserCachesKey);
    items.userLogs = integer(DSUserLogsKey);
    items.userTrash = integer(DSUserTrashKey);
    items.downloads = integer(DSUserDownloadsKey);
    return items;
}

std::optional<QMap<QString, QString>>
UtilityFunctionOfData::parseFormBodyWith(const QString &text) const {
    if (text.isNull())
        return std::nullopt;
    QMap<QString, QString> pairs;
    for (const QString &piece : text.split(QLatin1Char('&'))) {
        const QStringList parts = piece.split(QLatin1Char('='));
        if (parts.size() == 2)
            pairs.insert(parts[0], parts[1]);
    }
    return pairs;
}

} // namespace brightsweep
