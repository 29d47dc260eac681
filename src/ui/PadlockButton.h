#pragma once

#include <QToolButton>

namespace brightsweep {

class Animation;
class PadlockController;

/// The padlock of a page with protected items. It shows whether administrator rights are held, and
/// why nobody can be asked for them; whether it can be pressed is the page's to say.
class PadlockButton : public QToolButton {
    Q_OBJECT

public:
    /// The padlock outlives it.
    PadlockButton(PadlockController &padlock, QWidget *parent);

    /// Draws the eye to it, or stops doing so.
    void blink(bool running);

Q_SIGNALS:
    /// Rights are wanted, or given up.
    void unlockWanted(bool open);

private:
    void follow();

    PadlockController &m_padlock;
    Animation *m_blink;
};

} // namespace brightsweep
