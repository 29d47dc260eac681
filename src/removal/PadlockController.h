#pragma once

#include <QObject>

namespace brightsweep {

/// The padlock that every page with protected items shows: open while administrator rights are
/// held. All pages share one state, UtilityObject::isOpenLocked, and hear of a change by the
/// notification "changeLockState". Main thread; opening blocks while the system's dialog is up.
class PadlockController : public QObject {
    Q_OBJECT

public:
    explicit PadlockController(QObject *parent = nullptr);
    ~PadlockController() override;

    bool isOpen() const;
    /// The name of the image for the state.
    const char *imageName() const;
    /// A click: opens a closed padlock, for which rights are asked, or closes an open one. Also for
    /// a removal that needs rights while the padlock is closed. Gives the state afterwards.
    bool unlockRigths(bool open);

Q_SIGNALS:
    /// The state may have changed, here or on another page.
    void lockStateChanged(bool open);
};

} // namespace brightsweep
