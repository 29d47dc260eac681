#pragma once

#include <QString>

namespace brightsweep::theme {

/// The style sheet of the whole program in the colours that hold now. Buttons become primary by the
/// property "primary", dangerous by "danger", and without a frame by "flat".
QString styleSheet();

} // namespace brightsweep::theme
