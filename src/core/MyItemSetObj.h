#pragma once

#include <QVariantList>

namespace brightsweep {

/// Volumes grouped by their kind.
struct MyItemSetObj {
    QVariantList diskImagesArr;
    QVariantList exteralStorageArr;
    QVariantList netWorkStorageArr;
    QVariantList localStrorageArr;
    QVariantList superDriveArr;

    MyItemSetObj() {
        constexpr int capacity = 50;
        for (QVariantList *list : {&diskImagesArr, &exteralStorageArr, &netWorkStorageArr,
                                   &localStrorageArr, &superDriveArr})
            list->reserve(capacity);
    }
};

} // namespace brightsweep
