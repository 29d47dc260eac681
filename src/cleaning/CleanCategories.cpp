#include "cleaning/CleanCategories.h"

#include "foundation/UserDefaults.h"

namespace brightsweep {

QStringList getDefaultsValue() {
    QStringList selection;
    for (const CleanCategory &category : cleanCategories) {
        selection +=
            QString::number(UserDefaults::standardUserDefaults().integerForKey(category.key));
    }
    return selection;
}

} // namespace brightsweep
