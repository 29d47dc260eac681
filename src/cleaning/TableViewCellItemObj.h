#pragma once

#include <QString>

namespace brightsweep {

/// The plain model of a row of the left list; images by name.
struct TableViewCellItemObj {
    QString checkBoxImage;
    QString prograssImage;
    QString iconImage;
    QString backgroundImage;
    QString titleName;
    QString foundClum;
};

} // namespace brightsweep
