#include "removal/PadlockController.h"

#include "core/UtilityObject.h"
#include "foundation/NotificationCenter.h"
#include "removal/NvAuthorization.h"

namespace brightsweep {

namespace {

const QString lockStateNotification = QStringLiteral("changeLockState");

} // namespace

PadlockController::PadlockController(QObject *parent) : QObject(parent) {
    NotificationCenter::defaultCenter().addObserver(
        this, lockStateNotification,
        [this](const Notification &) { Q_EMIT lockStateChanged(isOpen()); });
}

PadlockController::~PadlockController() {
    NotificationCenter::defaultCenter().removeObserver(this);
}

bool PadlockController::isOpen() const {
    return UtilityObject::getMyObject().isOpenLocked;
}

const char *PadlockController::imageName() const {
    return isOpen() ? "Unlock.png" : "Lock.png";
}

bool PadlockController::unlockRigths(bool open) {
    auto &authorization = NvAuthorization::shareNvAuthorization();
    bool held = false;
    if (open)
        held = authorization.allocAuthorization();
    else
        authorization.freeAuthorization();
    UtilityObject::getMyObject().isOpenLocked = held;
    NotificationCenter::defaultCenter().post(lockStateNotification);
    return held;
}

} // namespace brightsweep
