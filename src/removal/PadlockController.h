#pragma once

#include "platform/AdministratorRights.h"

#include <QObject>

#include <memory>

namespace brightsweep {

class ThreadWorker;

/// The padlock that every page with protected items shows: open while administrator rights are
/// held. All pages share one state, UtilityObject::isOpenLocked, and hear of a change by the
/// notification "changeLockState". Main thread, which nothing here keeps waiting: the user is asked
/// on a worker, and every padlock is disabled until the answer has come.
class PadlockController : public QObject {
    Q_OBJECT

public:
    explicit PadlockController(QObject *parent = nullptr);
    /// Takes back a question that this one has asked.
    ~PadlockController() override;

    bool isOpen() const;
    /// True while the user is being asked, by whichever padlock.
    bool isAsking() const;
    /// True where the last question found nobody to ask the user: no polkit agent, or no bus.
    bool isWithoutAgent() const;
    /// Why the last question was not granted, a sentence; empty where it was.
    QString refusal() const;
    /// The name of the image for the state.
    const char *imageName() const;
    /// A click: opens a closed padlock, for which rights are asked, or closes an open one. Also for
    /// a removal that needs rights while the padlock is closed, or others than are held. Without
    /// effect while asking.
    void unlockRigths(bool open, RightsPurpose purpose = RightsPurpose::Files);

Q_SIGNALS:
    /// The state may have changed, here or on another page; after a question also when it did not.
    void lockStateChanged(bool open);
    void askingChanged(bool asking);

private:
    void askForRights(RightsPurpose purpose);
    void answered();
    void setAsking(bool asking);

    std::shared_ptr<ThreadWorker> m_worker;
    bool m_granted = false; ///< the worker's answer
};

} // namespace brightsweep
