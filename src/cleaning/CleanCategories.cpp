#include "cleaning/CleanCategories.h"

#include "foundation/UserDefaults.h"

namespace brightsweep {

std::int64_t storedSelection(unsigned category) {
    return UserDefaults::standardUserDefaults().integerForKey(
        QLatin1String(cleanCategories[category].key));
}

QStringList getDefaultsValue() {
    QStringList selection;
    for (unsigned category = 0; category < categoryCount; ++category)
        selection += QString::number(storedSelection(category));
    return selection;
}

} // namespace brightsweep
