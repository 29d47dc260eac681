#include "core/SettingItems.h"

#include <QLatin1String>

namespace brightsweep {

namespace {

// Two of the names differ from those of the settings: they are in the singular.
constexpr struct {
    QLatin1String key;
    QString SettingItems::*field;
} codedFields[] = {
    {QLatin1String("ErrorValue"), &SettingItems::errorValue},
    {QLatin1String("Graphic"), &SettingItems::graphic},
    {QLatin1String("Digital"), &SettingItems::digital},
    {QLatin1String("SystemCache"), &SettingItems::systemCaches},
    {QLatin1String("UserCaches"), &SettingItems::userCaches},
    {QLatin1String("SystemLog"), &SettingItems::systemLogs},
    {QLatin1String("UserLogs"), &SettingItems::userLogs},
    {QLatin1String("UserTrash"), &SettingItems::userTrash},
    {QLatin1String("Downloads"), &SettingItems::downloads},
};

} // namespace

SettingItems::SettingItems(const QVariantMap &coder) {
    for (const auto &coded : codedFields)
        this->*coded.field = coder.value(coded.key).toString();
}

void SettingItems::encodeWithCoder(QVariantMap &coder) const {
    for (const auto &coded : codedFields)
        coder.insert(coded.key, this->*coded.field);
}

} // namespace brightsweep
