#pragma once

#include <Qt>

namespace brightsweep {

/// The name of a check box's image.
constexpr const char *checkImage(Qt::CheckState state) {
    return state == Qt::Checked            ? "option_yes.png"
           : state == Qt::PartiallyChecked ? "option_a.png"
                                           : "option_no.png";
}

} // namespace brightsweep
