#include "removal/PadlockController.h"

#include "core/Texts.h"
#include "core/ThreadWorker.h"
#include "core/UtilityObject.h"
#include "foundation/NotificationCenter.h"
#include "foundation/WordTable.h"
#include "removal/NvAuthorization.h"

#include <array>

namespace brightsweep {

namespace {

const QString lockStateNotification = QStringLiteral("changeLockState");
const QString askingNotification = QStringLiteral("padlockIsAsking");

constexpr std::array refusals = {
    WordRow{RightsOutcome::Dismissed, QT_TRID_NOOP("RIGHTS_DISMISSED")},
    WordRow{RightsOutcome::Denied, QT_TRID_NOOP("RIGHTS_DENIED")},
    WordRow{RightsOutcome::NoAgent, QT_TRID_NOOP("LOCK_NO_AGENT")},
    WordRow{RightsOutcome::NoBus, QT_TRID_NOOP("RIGHTS_NO_BUS")},
    WordRow{RightsOutcome::Failed, QT_TRID_NOOP("RIGHTS_FAILED")},
};

// One question at a time, for all padlocks. Main thread.
bool asking = false;

} // namespace

PadlockController::PadlockController(QObject *parent) : QObject(parent) {
    auto &center = NotificationCenter::defaultCenter();
    center.addObserver(this, lockStateNotification,
                       [this](const Notification &) { Q_EMIT lockStateChanged(isOpen()); });
    center.addObserver(this, askingNotification,
                       [this](const Notification &) { Q_EMIT askingChanged(isAsking()); });
}

PadlockController::~PadlockController() {
    NotificationCenter::defaultCenter().removeObserver(this);
    if (!m_worker)
        return;
    NvAuthorization::shareNvAuthorization().freeAuthorization();
    m_worker->abandon();
    setAsking(false);
}

bool PadlockController::isOpen() const {
    return UtilityObject::getMyObject().isOpenLocked;
}

bool PadlockController::isAsking() const {
    return asking;
}

bool PadlockController::isWithoutAgent() const {
    const auto outcome = NvAuthorization::shareNvAuthorization().lastResult().outcome;
    return outcome == RightsOutcome::NoAgent || outcome == RightsOutcome::NoBus;
}

QString PadlockController::refusal() const {
    const auto outcome = NvAuthorization::shareNvAuthorization().lastResult().outcome;
    const char *const key = wordsIn(refusals, outcome, "");
    return *key ? localizedText(key) : QString();
}

const char *PadlockController::imageName() const {
    return isOpen() ? "Unlock.png" : "Lock.png";
}

void PadlockController::setAsking(bool isAsking) {
    asking = isAsking;
    NotificationCenter::defaultCenter().post(askingNotification);
}

void PadlockController::unlockRigths(bool open, RightsPurpose purpose) {
    if (asking)
        return;
    if (!open) {
        NvAuthorization::shareNvAuthorization().freeAuthorization();
        UtilityObject::getMyObject().isOpenLocked = false;
        NotificationCenter::defaultCenter().post(lockStateNotification);
        return;
    }
    m_granted = false;
    setAsking(true);
    m_worker = ThreadWorker::workOn(this, &PadlockController::askForRights, purpose,
                                    &PadlockController::answered);
}

// Rights of a lesser purpose stay when others are refused.
void PadlockController::askForRights(RightsPurpose purpose) {
    auto &authorization = NvAuthorization::shareNvAuthorization();
    m_granted =
        authorization.allocAuthorization(purpose) || authorization.isHeld(RightsPurpose::Files);
}

void PadlockController::answered() {
    m_worker.reset();
    UtilityObject::getMyObject().isOpenLocked = m_granted;
    setAsking(false);
    NotificationCenter::defaultCenter().post(lockStateNotification);
}

} // namespace brightsweep
