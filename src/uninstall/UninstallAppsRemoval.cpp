// The removal of the uninstall page.

#include "core/Texts.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "removal/NvAuthorization.h"
#include "removal/RemovalRun.h"
#include "uninstall/RemovalPlanner.h"
#include "uninstall/UninstallAppsController.h"
#include "uninstall/UninstallTexts.h"
#include "uninstall/Uninstallation.h"

#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

constexpr qsizetype longestFailure = 60; // before it is cut

} // namespace

bool UninstallAppsController::lacksRights() const {
    return !NvAuthorization::shareNvAuthorization().isHeld(m_purpose);
}

void UninstallAppsController::uninstallButtonAction() {
    if (refuseUnless(isIdle() && m_uninstallButton, "a removal") || !m_surroundings.licenceGate())
        return;
    showAlertForUninstall();
}

// What would go is found out before it is asked about.
void UninstallAppsController::showAlertForUninstall() {
    m_chosen = getAllSelectApp();
    setState(State::Planning);
    std::vector<InstalledApplication> applications;
    for (const auto &item : m_chosen)
        applications.push_back(*item->application);
    m_plans.clear();
    m_planSizes.clear();
    m_stopsPlanning = false;
    enqueue({[this, all = installed(), applications = std::move(applications)] {
                 makePlans(all, applications);
             },
             [this] { planned(); }});
}

void UninstallAppsController::makePlans(const std::vector<InstalledApplication> &installed,
                                        const std::vector<InstalledApplication> &applications) {
    const RemovalPlanner planner(installed);
    for (const InstalledApplication &application : applications) {
        if (m_stopsPlanning)
            return;
        m_plans.push_back(planner.planOf(application, &m_stopsPlanning));
        m_planSizes.push_back(sizeOf(m_plans.back()));
    }
}

void UninstallAppsController::stopPlanning() {
    if (!refuseUnless(m_state == State::Planning, "a stop"))
        m_stopsPlanning = true;
}

void UninstallAppsController::planned() {
    if (m_stopsPlanning)
        return setState(State::Ready);
    if (m_plans.size() != m_chosen.size()) { // the worker failed
        m_reasons.clear();
        m_stayed.clear();
        tellFailure();
        return finish();
    }
    setState(State::Asking);
    const bool isSystem = std::any_of(m_chosen.begin(), m_chosen.end(),
                                      [](const auto &item) { return item->isSystemApp; });
    Q_EMIT askToUninstall(isSystem
                              ? localizedText("System application(s),Do you want to uninstall it?")
                              : localizedText("Uninstall the selected application(s)?"));
}

void UninstallAppsController::tickLeftover(std::size_t plan, std::size_t leftover, bool isTicked) {
    if (!refuseUnless(m_state == State::Asking && plan < m_plans.size() &&
                          leftover < m_plans[plan].leftovers.size() &&
                          !m_plans[plan].leftovers[leftover].refusal,
                      "a tick of what would be left"))
        m_plans[plan].leftovers[leftover].ticked = isTicked;
}

void UninstallAppsController::tickSystemSettings(std::size_t plan, bool isTicked) {
    if (!refuseUnless(m_state == State::Asking && plan < m_plans.size(),
                      "a tick of the system's settings"))
        m_plans[plan].purge = isTicked;
}

void UninstallAppsController::alertEnded(int code) {
    if (refuseUnless(m_state == State::Asking, "an answer"))
        return;
    if (code != 1)
        return setState(State::Ready);
    const auto begun = RemovalRun::begin(QT_TRID_NOOP("Uninstall"));
    if (!begun.run) {
        setState(State::Ready);
        Q_EMIT removalRefused(RemovalRun::refusal(begun));
        return;
    }
    m_run = begun.run;
    m_failures.clear();
    m_reasons.clear();
    m_stayed.clear();
    m_isSecondAttempt = false;
    m_purpose = std::any_of(m_plans.begin(), m_plans.end(), takesRights)
                    ? RightsPurpose::FilesAndPackages
                    : RightsPurpose::Files;
    m_uninstallation = std::make_unique<Uninstallation>(m_plans);
    m_uninstallation->setProgress([this](const InstalledApplication &application) {
        m_calls.post([this, name = paths::display(application.name)] {
            m_progress = name;
            Q_EMIT progressChanged();
        });
    });
    Q_EMIT messageChanged();
    if (needsRightsFirst() && lacksRights())
        return askForRights();
    uninstallActionfromBottomButton();
}

// The list of the system's applications, and packages wherever they are listed: a part of the
// others should not have gone when the user then calls the question for the password off.
bool UninstallAppsController::needsRightsFirst() const {
    return m_nowSelectRow == SystemApplications || m_purpose == RightsPurpose::FilesAndPackages;
}

void UninstallAppsController::askForRights() {
    setState(State::AskingRights);
    m_padlock.unlockRigths(true, m_purpose);
}

void UninstallAppsController::rightsAnswered() {
    if (m_state != State::AskingRights || m_padlock.isAsking())
        return;
    if (!lacksRights())
        return uninstallActionfromBottomButton();
    if (!m_isSecondAttempt)
        noteLackOfRights();
    const QString refusal = m_padlock.refusal();
    if (m_reasons.isEmpty())
        tellStayed(refusal);
    else
        tellFailure(refusal);
    finish();
}

// Nothing was attempted: whatever could have gone stays for want of rights.
void UninstallAppsController::noteLackOfRights() {
    for (std::size_t i = 0; i < m_plans.size(); ++i) {
        QString reason = UninstallTexts::obstacle(m_plans[i]);
        if (reason.isEmpty())
            reason = localizedText("STAYS_NEEDS_RIGHTS");
        m_reasons += QStringLiteral("%1: %2").arg(m_chosen[i]->name, reason);
        m_failures[m_chosen[i].get()] = reason;
    }
}

void UninstallAppsController::uninstallActionfromBottomButton() {
    m_selectButton = false;
    setState(State::Uninstalling);
    enqueue({[this] { m_uninstallation->run(*m_run); }, [this] { attemptEnded(); }});
}

void UninstallAppsController::attemptEnded() {
    m_failures.clear();
    m_reasons.clear();
    m_stayed.clear();
    const auto &records = m_uninstallation->records();
    for (std::size_t i = 0; i < records.size(); ++i) {
        const AppItems::Pointer &item = m_chosen[i];
        const bool hasGone = records[i].outcome == UninstallOutcome::Removed;
        if (hasGone)
            std::erase(m_searchAllAppArr, item);
        if (records[i].isWhole())
            continue;
        const QString reason = UninstallTexts::reason(records[i], !lacksRights());
        (hasGone ? m_stayed : m_reasons) += QStringLiteral("%1: %2").arg(item->name, reason);
        if (!hasGone)
            m_failures[item.get()] = reason;
    }
    renewList();
    if (m_uninstallation->isOpen() && !m_isSecondAttempt && lacksRights()) {
        m_isSecondAttempt = true;
        return askForRights();
    }
    if (!m_reasons.isEmpty())
        tellFailure();
    else if (!m_stayed.isEmpty())
        tellStayed();
    else
        m_uninstallTextField = {
            localizedText("Selected application(s) were uninstalled successfully."), {}};
    finish();
}

// The applications have gone, and only leftovers of them stay.
void UninstallAppsController::tellStayed(const QString &refusal) {
    m_uninstallTextField = {};
    m_uninstallTextField.text = localizedText("UNINSTALL_BUT_LEFTOVERS");
    tellNotice(refusal);
}

void UninstallAppsController::tellNotice(const QString &refusal) {
    QStringList lines = m_stayed;
    if (!refusal.isEmpty())
        lines += refusal;
    m_uninstallTextField.notice = lines.join(u'\n');
}

void UninstallAppsController::tellFailure(const QString &refusal) {
    const QString words = localizedText("Failed to uninstall the selected application(s). Please "
                                        "refer to Help for more info.");
    QStringList lines = QStringList{words} + m_reasons + m_stayed;
    if (!refusal.isEmpty())
        lines += refusal;
    m_uninstallTextField = {};
    m_uninstallTextField.text = words.left(longestFailure) + QStringLiteral("...");
    m_uninstallTextField.toolTip = lines.join(u'\n');
    m_uninstallTextField.isFailure = true;
    tellNotice(refusal);
}

void UninstallAppsController::finish() {
    m_uninstallation.reset();
    m_run.reset();
    m_progress.clear();
    m_chosen.clear();
    m_plans.clear();
    setState(State::Ready);
    Q_EMIT rowsChanged();
    postSelectNum(true);
    listAgain();
}

} // namespace brightsweep
