#include "cleaning/NewMainViewController.h"

#include "cleaning/CategoryListModel.h"
#include "cleaning/CleanCategories.h"
#include "cleaning/CleanNotifications.h"
#include "cleaning/CustomTableView.h"
#include "cleaning/FolderUtilities.h"
#include "cleaning/ItemSizes.h"
#include "cleaning/ScanViewController.h"
#include "cleaning/V3MainListView.h"
#include "core/ParseFileLog.h"
#include "core/SettingKeys.h"
#include "core/UtilityFunction.h"
#include "foundation/NotificationCenter.h"
#include "foundation/SaturatingSum.h"
#include "foundation/UserDefaults.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "removal/RemovalRun.h"

#include <algorithm>
#include <chrono>
#include <utility>

// The cleaning side of the page: questions, the run, its figures.

namespace brightsweep {

namespace {

using namespace std::chrono_literals;

constexpr unsigned downloads = downloadsCategory;
constexpr unsigned allCategories = categoryCount;
// So that the sheet follows the last reload.
constexpr auto alertDelay = 200ms;
const QString object = QStringLiteral("object");

bool mayAskForRights() {
    return UserDefaults::standardUserDefaults().boolForKey(cleanMayAskForRightsKey);
}

} // namespace

void NewMainViewController::cleanButtonActionInfo() {
    if (refuseUnless(m_state == State::Results, "a clean") || !m_surroundings.licenceGate())
        return;
    allCleanButtonActionInfo();
}

void NewMainViewController::beginClean(Run::Kind kind) {
    m_run = {};
    m_run.kind = kind;
    for (const auto &view : allNewViewArr)
        m_run.sizeArr += view->sizeLabel();
    m_customTableView->setRowsEnabled(false);
    m_controls.cleanButton.enabled = false;
    m_controls.oneListCleanButton.enabled = false;
    m_controls.scanButton.enabled = false;
    m_run.freeBefore = postStartupVolume();
}

void NewMainViewController::allCleanButtonActionInfo() {
    beginClean(Run::Kind::CleanAll);
    m_customTableView->setIsCleanInfo(true);
    m_customTableView->setTotalSelectNum(0);
    m_customTableView->setSelectTotalSize(m_allSelectTotalSize);
    if (m_selection->counts(downloads).selected > 0) {
        setState(State::Warning);
        setTicksEnabled(false);
        Q_EMIT controlsChanged();
        Q_EMIT askDownloads();
        return;
    }
    startClean(allCategories, false);
}

// Empty where another removal is under way; the clean is then called off.
std::shared_ptr<RemovalRun> NewMainViewController::beginRun() {
    RemovalRun::Begun begun = RemovalRun::begin(QT_TRID_NOOP("Clean"));
    if (!begun.run) {
        callOff();
        Q_EMIT removalRefused(RemovalRun::refusal(begun));
    }
    return std::move(begun.run);
}

void NewMainViewController::enterCleaning() {
    setState(State::Cleaning);
    m_controls.backButton.enabled = false;
    m_controls.outlineEnabled = false;
    setTicksEnabled(false);
}

void NewMainViewController::startCategory(unsigned index, const std::shared_ptr<RemovalRun> &run) {
    m_run.scanObjsArr.push_back(index);
    allNewViewArr[index]->bind(*tableControllers[index]);
    tableControllers[index]->beginCleanTask(run);
}

// The first ones of the categories; all of them start, also those with nothing ticked.
void NewMainViewController::startClean(unsigned categories, bool allRunDown) {
    const auto run = beginRun();
    if (!run)
        return;
    enterCleaning();
    m_run.finishScanCount = categories;
    for (unsigned index = 0; index < categories; ++index) {
        startCategory(index, run);
        if (allRunDown || m_selection->counts(index).selected > 0)
            allNewViewArr[index]->minishPrograss();
    }
    Q_EMIT controlsChanged();
}

void NewMainViewController::alertWindowYesButtonAction() {
    if (!refuseUnless(m_state == State::Warning && m_run.kind == Run::Kind::CleanAll, "an answer"))
        startClean(allCategories, true);
}

void NewMainViewController::alertWindowNoButtonAction() {
    if (refuseUnless(m_state == State::Warning && m_run.kind == Run::Kind::CleanAll, "an answer"))
        return;
    m_selection->tickAll(downloads, false);
    m_outline->constructTree();
    startClean(downloads, true);
}

void NewMainViewController::alertWindowCalledOff() {
    if (!refuseUnless(m_state == State::Warning, "an answer"))
        callOff();
}

void NewMainViewController::callOff() {
    m_customTableView->setIsCleanInfo(false);
    leaveCleaning();
    refreshCounters();
}

void NewMainViewController::openViewNewLink() {
    const auto folders = FolderUtilities::getFolderPath(downloads);
    if (!refuseUnless(!folders.empty(), "a folder that is not there"))
        Platform::current().workspace->open(folders.front().path);
}

void NewMainViewController::cleanButtonAction() {
    if (refuseUnless(m_state == State::Results, "a clean") || !m_surroundings.licenceGate())
        return;
    if (m_selectRowNum == 0)
        return allCleanButtonActionInfo();
    if (refuseUnless(m_selectRowNum >= 1 && m_selectRowNum <= int(categoryCount),
                     "a clean of this row"))
        return;
    beginClean(Run::Kind::CleanOne);
    if (m_selectRowNum != rowOfCategory(downloads))
        return oneScanButtonAction();
    setState(State::Warning);
    setTicksEnabled(false);
    Q_EMIT controlsChanged();
    Q_EMIT askDownloadsAlone();
}

void NewMainViewController::downloadAlertEnded(int code) {
    if (refuseUnless(m_state == State::Warning && m_run.kind == Run::Kind::CleanOne, "an answer"))
        return;
    if (code == 1)
        oneScanButtonAction();
    else
        callOff();
}

void NewMainViewController::oneScanButtonAction() {
    const auto run = beginRun();
    if (!run)
        return;
    enterCleaning();
    const unsigned index = unsigned(m_selectRowNum - 1);
    m_run.finishScanCount = 1;
    startCategory(index, run);
    allNewViewArr[index]->minishPrograss();
    Q_EMIT controlsChanged();
}

void NewMainViewController::cleanFinished() {
    if (--m_run.finishScanCount > 0)
        return;
    if (m_run.kind == Run::Kind::CleanOne)
        endOneClean();
    else
        endClean();
}

// Of words, as they round, and unsigned: a figure that grew would wrap around.
std::uint64_t NewMainViewController::freedOf(unsigned index, const QString &before) {
    V3MainListView &view = *allNewViewArr[index];
    const std::uint64_t freed = UtilityFunction::getVolSpaceFromString(before) -
                                UtilityFunction::getVolSpaceFromString(view.sizeLabel());
    view.setSizeStrLabelString(UtilityFunction::convertVolSpace(freed));
    return freed;
}

std::size_t NewMainViewController::failuresOf(unsigned index) const {
    return m_selection->counts(index).selected;
}

void NewMainViewController::endOneClean() {
    const unsigned index = m_run.scanObjsArr.front();
    allNewViewArr[index]->unbind();
    allNewViewArr[index]->setAnimationFinish();
    const std::uint64_t freed = freedOf(index, m_run.sizeArr[index]);
    recordHistory();
    leaveCleaning();
    NotificationCenter::defaultCenter().post(cleanShowSelectNumInBottomNotification, nullptr,
                                             {{object, QStringLiteral("clean")}});
    changeStateTextFeild(cleanPageTexts::cleanedLine(freed));
    if (failuresOf(index) > 0 && mayAskForRights()) {
        Q_EMIT lockAnimation(true);
        Q_EMIT showAlertForPrivilegesToClean();
    }
}

void NewMainViewController::endClean() {
    m_customTableView->setTotalSelectNum(CustomTableView::cleanIsFinished);
    for (const unsigned index : m_run.scanObjsArr) {
        allNewViewArr[index]->unbind();
        allNewViewArr[index]->setAnimationFinish();
    }
    std::size_t failures = 0;
    std::uint64_t cleaned = 0;
    for (unsigned index = 0; index < categoryCount; ++index) {
        cleaned += freedOf(index, m_run.sizeArr[index]);
        // What is left of the downloads raises no alert.
        if (index != downloads)
            failures += failuresOf(index);
    }
    m_showCleanedSize = cleaned;
    recordHistory();
    leaveCleaning();
    NotificationCenter::defaultCenter().post(cleanShowSelectNumInBottomNotification, nullptr,
                                             {{object, QStringLiteral("clean")}});
    changeStateTextFeild(cleanPageTexts::cleanedLine(cleaned));
    if (failures > 0 && mayAskForRights()) {
        m_clock.cancel(m_alertCall);
        m_alertCall = m_clock.callAfter(alertDelay, [this] {
            Q_EMIT lockAnimation(true);
            Q_EMIT showAlertForPrivilegesToClean();
        });
    }
}

// The history takes what really went, not the page's sum of words.
void NewMainViewController::recordHistory() {
    std::uint64_t went = 0;
    for (const unsigned index : m_run.scanObjsArr)
        went = addSaturating(went, tableControllers[index]->cleanSize());
    ParseFileLog().recordClean(went);
    readHistory();
    m_outcome = CleanOutcome::Cleaned;
    const QString freeAfter = postStartupVolume();
    m_controls.freeSpaceLine = cleanPageTexts::freeSpaceLine(m_run.freeBefore, freeAfter);
    Q_EMIT headingChanged();
}

// What is ticked belongs to the clean, from the question on.
void NewMainViewController::setTicksEnabled(bool enabled) {
    m_outline->setEnabled(enabled);
    m_customTableView->setTicksEnabled(enabled);
    for (unsigned index = 0; index < categoryCount; ++index) {
        m_lists[index]->setEnabled(enabled);
        allNewViewArr[index]->setEnabled(enabled);
    }
}

void NewMainViewController::leaveCleaning() {
    m_customTableView->setRowsEnabled(true);
    m_controls.scanButton.enabled = true;
    m_controls.backButton.enabled = true;
    m_controls.outlineEnabled = true;
    setTicksEnabled(true);
    // Before the views look at what a clean has emptied.
    for (unsigned index = 0; index < categoryCount; ++index) {
        if (tableControllers[index]->rowCount() == 0)
            allNewViewArr[index]->setCheckBoxHidden(true);
        m_lists[index]->reload();
    }
    setState(State::Results);
}

} // namespace brightsweep
