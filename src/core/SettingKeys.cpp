#include "core/SettingKeys.h"

#include "foundation/UserDefaults.h"

namespace brightsweep {

QVariant SettingKey::defaultValue() const {
    if (!defaultText)
        return {};
    const QString text = QString::fromLatin1(defaultText);
    switch (type) {
    case SettingType::Integer:
        return qlonglong(integerFromText(text));
    case SettingType::Float:
        return floatFromText(text);
    case SettingType::Bool:
        return boolFromText(text);
    case SettingType::Text:
        break;
    }
    return text;
}

const SettingKey *findSettingKey(const QString &key) {
    for (const SettingKey &setting : settingKeys) {
        if (setting.key == key)
            return &setting;
    }
    return nullptr;
}

QVariantMap defaultsOf(SettingOwner owner) {
    QVariantMap defaults;
    for (const SettingKey &setting : settingKeys) {
        if (setting.owner == owner && setting.defaultText)
            defaults.insert(setting.key, setting.defaultValue());
    }
    return defaults;
}

} // namespace brightsweep
