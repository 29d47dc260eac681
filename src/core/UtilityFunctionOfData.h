#pragma once

#include "core/SettingItems.h"

#include <QMap>
#include <QString>

#include <optional>

namespace brightsweep {

/// Readings of the settings and of texts of pairs. One object without state, never freed.
class UtilityFunctionOfData {
public:
    static UtilityFunctionOfData &getMyData();

    /// A snapshot of the settings as they are now. `graphic` stays null.
    SettingItems readerTxtForSettingValue() const;

    /// The pairs of a form's body, "a=1&b=2", without any decoding. A piece that is not one key
    /// and one value is passed over; the last of equal keys wins. Nothing for a null text.
    std::optional<QMap<QString, QString>> parseFormBodyWith(const QString &text) const;
};

} // namespace brightsweep
