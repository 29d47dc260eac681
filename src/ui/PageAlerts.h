#pragma once

#include "ui/AlertSheet.h"

namespace brightsweep {

class PadlockController;

/// What the pages with a removal say alike.

/// Why nothing is removed, with "OK".
AlertContent wordsAlert(const QString &words);
/// Something stayed for want of rights; `ended` is called when the alert has been closed, however.
AlertContent padlockAlert(PadlockController &padlock, const QString &words,
                          const std::function<void()> &ended);
/// Something stayed for other reasons, which its rows tell; `ended` likewise.
AlertContent someStayedAlert(const std::function<void()> &ended);

} // namespace brightsweep
