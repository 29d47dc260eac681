#include "cleaning/NewMainViewController.h"

#include "cleaning/CategoryListModel.h"
#include "cleaning/CleanCategories.h"
#include "cleaning/CleanNotifications.h"
#include "cleaning/CustomTableView.h"
#include "cleaning/FolderUtilities.h"
#include "cleaning/NewLeftCustomTableView.h"
#include "cleaning/ScanViewController.h"
#include "cleaning/V3MainListView.h"
#include "core/ParseFileLog.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "volumes/VolumesInfo.h"

#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

constexpr int startOfProgress = 5;

const QString object = QStringLiteral("object");
const QString disabledCleanImage = QStringLiteral("clean_d.png");
const QString enabledCleanImage = QStringLiteral("clean_normal.png");

template <typename Owned>
auto pointers(const std::vector<std::unique_ptr<Owned>> &owned) {
    std::vector<Owned *> all;
    for (const auto &each : owned)
        all.push_back(each.get());
    return all;
}

} // namespace

NewMainViewController::NewMainViewController(QObject *parent)
    : NewMainViewController(Surroundings(), parent) {}

NewMainViewController::NewMainViewController(Surroundings surroundings, QObject *parent)
    : QObject(parent),
      m_surroundings(std::move(surroundings)),
      m_clock(m_surroundings.clock ? *m_surroundings.clock : Clock::eventLoop()) {
    v3MainViewInfo();
    for (unsigned index = 0; index < categoryCount; ++index) {
        auto controller = std::make_unique<ScanViewController>();
        connect(controller.get(), &ScanViewController::scanFinishedChanged, this,
                &NewMainViewController::scanFinished);
        connect(controller.get(), &ScanViewController::cleanFinishedChanged, this,
                &NewMainViewController::cleanFinished);
        m_lists.push_back(std::make_unique<CategoryListModel>(*controller, index));
        tableControllers.push_back(std::move(controller));
    }
    m_selection = std::make_unique<CleanSelection>(pointers(tableControllers), pointers(m_lists));
    m_outline = std::make_unique<CleanOutlineController>(pointers(tableControllers));
    connect(m_outline.get(), &CleanOutlineController::ticksChanged, this, [this] {
        for (const auto &list : m_lists)
            list->reload();
        setCleanButtonState();
    });
    connect(m_outline.get(), &CleanOutlineController::holdersFound, this,
            [this](const auto &programOfPath) {
                for (const auto &list : m_lists)
                    list->setHolders(programOfPath);
            });
    connect(m_outline.get(), &CleanOutlineController::flyToTrash, this,
            &NewMainViewController::flyToTrash);
    m_customTableView = std::make_unique<CustomTableView>();
    m_newCustomTableView = std::make_unique<NewLeftCustomTableView>();

    observe(selectedRowInFastCleanNotification, &NewMainViewController::callBackCheckBoxClick);
    observe(shouldSelectRowNotification, &NewMainViewController::shouldSelectRow);
    observe(updateSelectNumberNotification, &NewMainViewController::updateSelectNumber);
    observe(cleanShowSelectNumInBottomNotification,
            &NewMainViewController::cleanShowSelectNumInBottom);
    observe(scanItemGetScanBtnNotification, &NewMainViewController::scanItemGetScanBtn);
    observe(FreeTotleArrNotification, &NewMainViewController::GetFreeTotleArr);
    observe(refNewTableViewSizeLabelNotification, &NewMainViewController::refNewTableViewSizeLabel);
    observe(quickCleanEndedNotification, &NewMainViewController::quickCleanEnded);
    readHistory();
    postStartupVolume();
}

NewMainViewController::~NewMainViewController() {
    m_clock.cancel(m_alertCall);
    NotificationCenter::defaultCenter().removeObserver(this);
}

void NewMainViewController::observe(QLatin1String name, Handler handler) {
    NotificationCenter::defaultCenter().addObserver(
        this, name,
        [this, handler](const Notification &notification) { (this->*handler)(notification); });
}

void NewMainViewController::v3MainViewInfo() {
    m_selectionProblem = selectionProblem();
    const QStringList stored = getDefaultsValue();
    for (unsigned index = 0; index < categoryCount; ++index) {
        const bool none = stored[index] == QLatin1String("0");
        allNewViewArr.push_back(std::make_unique<V3MainListView>(
            none ? QStringLiteral("option_no.png") : QStringLiteral("option_yes.png"),
            QLatin1String(cleanCategories[index].rowImage),
            QLatin1String(cleanCategories[index].name), QStringLiteral("0.0KB"), int(index), none));
    }
}

void NewMainViewController::setState(State state) {
    m_state = state;
    Q_EMIT stateChanged(state);
}

bool NewMainViewController::refuseUnless(bool allowed, const char *action) const {
    if (!allowed)
        NSLog("The clean page is not ready for %@", action);
    return !allowed;
}

// -- Scanning

void NewMainViewController::clickScanBtn() {
    if (refuseUnless(m_state == State::Idle || m_state == State::Results, "a scan"))
        return;
    switch2QcAnimation(true);
    scanButtonAction();
}

void NewMainViewController::switch2QcAnimation(bool scanning) {
    m_view4FastClean = scanning ? 1 : 2;
    if (scanning)
        Q_EMIT displayPanel(QStringLiteral("QC_FastClean"), true);
    else if (m_surroundings.selectedItem() == QLatin1String("Scan"))
        Q_EMIT displayPanel(QStringLiteral("DATA_FastClean"), true);
}

void NewMainViewController::clickBackBtn() {
    if (refuseUnless(m_state == State::Results, "the way back"))
        return;
    m_view4FastClean = 0;
    setState(State::Idle);
    Q_EMIT displayPanel(QStringLiteral("Scan"), true);
}

void NewMainViewController::scanItemGetScanBtn(const Notification &) {
    const bool isCancelButton = m_state == State::Scanning || m_state == State::Stopping;
    if (!refuseUnless(isCancelButton || m_state == State::Idle || m_state == State::Results,
                      "a scan"))
        scanButtonAction();
}

void NewMainViewController::scanButtonAction() {
    m_showCleanedSize.reset();
    if (m_state == State::Scanning || m_state == State::Stopping) {
        // It marks the workers and ends none of them; clickStopScanBtn() is what stops.
        m_controls.scanButton.enabled = false;
        for (const unsigned index : m_run.scanObjsArr)
            tableControllers[index]->cancelScanTask();
        Q_EMIT controlsChanged();
        return;
    }
    setState(State::Scanning);
    // Nothing is stored of rows that are still coming.
    setTicksEnabled(false);
    m_outcome = CleanOutcome::None;
    m_isOutdated = false;
    m_controls.cleanButton = {false, m_controls.cleanButton.hidden, disabledCleanImage};
    m_controls.scanButton.image = QStringLiteral("back_index.png");
    m_controls.stopScanBtn = {};
    m_controls.freeSpaceLine.clear();
    m_run = {};
    m_run.kind = Run::Kind::Scan;
    m_selection->reload();
    m_customTableView->comeBackStringValue();
    m_customTableView->setIsCleanInfo(false);
    m_customTableView->setProImageNum(0);
    m_run.finishScanCount = categoryCount;
    // All six, whatever their ticks: those decide only which rows come up ticked.
    for (unsigned index = 0; index < categoryCount; ++index) {
        V3MainListView &view = *allNewViewArr[index];
        view.setCheckBoxHidden(true);
        view.startPrograssAnimation();
        view.setSizeStrLabelString(QStringLiteral("0.00KB"));
        m_run.scanObjsArr.push_back(index);
        view.bind(*tableControllers[index]);
        std::vector<LeftOutFolder> leftOut;
        auto folders = FolderUtilities::getFolderPath(index, &leftOut);
        view.setNote(FolderUtilities::wordsOf(leftOut));
        tableControllers[index]->beginScanTask(std::move(folders));
    }
    Q_EMIT baseNumberSetPrograss(startOfProgress);
    Q_EMIT controlsChanged();
}

void NewMainViewController::clickStopScanBtn() {
    if (refuseUnless(m_state == State::Scanning, "a stop"))
        return;
    setState(State::Stopping);
    m_needsRestart = true;
    m_controls.scanProgressShown = false;
    m_controls.stopScanBtn = {false, true, {}};
    m_controls.stopTextShown = true;
    for (const unsigned index : m_run.scanObjsArr)
        tableControllers[index]->stopScan();
    Q_EMIT controlsChanged();
}

void NewMainViewController::pausButtonAction() {
    NSLog("::: pause :::");
}

void NewMainViewController::restart() {
    if (!refuseUnless(m_state == State::Idle || m_state == State::Results, "a restart"))
        Q_EMIT restartRequested();
}

QString NewMainViewController::notice() const {
    return m_needsRestart ? localizedText(cleanPageTexts::restartText) : m_selectionProblem;
}

void NewMainViewController::scanFinished() {
    Q_EMIT prograssShowDependChangeSize(1);
    if (--m_run.finishScanCount == 0)
        endScan();
}

void NewMainViewController::endScan() {
    m_customTableView->setProImageNum(100);
    m_selectionProblem = selectionProblem();
    m_selection->reload();
    const bool anySelected = m_selection->returnSelectNum() >= 1;
    for (const unsigned index : m_run.scanObjsArr) {
        V3MainListView &view = *allNewViewArr[index];
        view.unbind();
        view.setCheckBoxHidden(false);
        view.stopPrograssAnimation();
    }
    m_selection->applyStored();
    for (unsigned index = 0; index < categoryCount; ++index)
        allNewViewArr[index]->refCheckBoxInMainView(m_selection->selectArray()[index].toInt());
    const bool stopped = m_state == State::Stopping;
    setTicksEnabled(true);
    setState(State::Results);
    m_controls.scanButton.enabled = true;
    m_outline->constructTree();
    refreshCounters();
    // By what is selected, not by what was found.
    setCleanButtonEnabled(anySelected);
    m_outcome = stopped || (m_needsRestart && m_outline->tree().groups().empty())
                    ? CleanOutcome::Stopped
                : m_outline->tree().groups().empty() ? CleanOutcome::NothingFound
                                                     : CleanOutcome::Found;
    switch2QcAnimation(false);
    m_controls.stopTextShown = false;
    m_controls.scanProgressShown = true;
    m_controls.stopScanBtn = {};
    Q_EMIT baseNumberSetPrograss(startOfProgress);
    Q_EMIT controlsChanged();
    m_outline->markHolders();
    postStartupVolume();
}

// -- Selection

void NewMainViewController::setCleanButtonEnabled(bool enabled) {
    m_controls.cleanButton.enabled = enabled;
    m_controls.cleanButton.image = enabled ? enabledCleanImage : disabledCleanImage;
}

void NewMainViewController::setCleanButtonState() {
    const bool isCategory = m_selectRowNum >= 1 && m_selectRowNum <= int(categoryCount);
    m_controls.cleanButton.hidden = m_selectRowNum != 0;
    m_controls.oneListCleanButton.hidden = !isCategory;
    if (m_selectRowNum == 0)
        return cleanShowSelectNumCommAction();
    refreshCounters();
}

// Stores what is ticked and shows it. Before the first scan and during one the rows are not there
// yet, and nothing of them is stored; during a clean the rows are the worker's.
void NewMainViewController::cleanShowSelectNumCommAction() {
    const bool scanning = m_state == State::Scanning || m_state == State::Stopping;
    if (m_run.kind != Run::Kind::None && !scanning && isCleanFinshed()) {
        const auto states = m_selection->store();
        for (unsigned index = 0; index < categoryCount; ++index)
            allNewViewArr[index]->refCheckBoxInMainView(states[index]);
    }
    refreshCounters();
}

void NewMainViewController::refreshCounters() {
    std::array<int, categoryCount> states{};
    CleanSelection::Counts all;
    CleanSelection::Counts shown;
    for (unsigned index = 0; index < categoryCount; ++index) {
        // Every count looks at all rows of its category.
        const CleanSelection::Counts one = m_selection->counts(index);
        states[index] = CleanSelection::stateOf(index, one);
        all += one;
        if (m_selectRowNum == int(index) + 1)
            shown = one;
    }
    const bool free = isCleanFinshed() && m_state != State::Scanning && m_state != State::Stopping;
    m_selectCount2Clean = all.selected;
    m_allSelectTotalSize = all.bytes;
    m_controls.trashFileNumTF = readersNumber(all.selected);
    m_controls.allSelect = m_outline->allSelectState();
    m_customTableView->showStates(states);
    setCleanButtonEnabled(free && all.selected >= 1);
    if (m_selectRowNum < 1 || m_selectRowNum > int(categoryCount)) {
        shown = all;
    } else {
        const bool any = free && shown.selected > 0;
        m_controls.oneListCleanButton.enabled = any;
        m_controls.oneListCleanButton.image =
            any ? QStringLiteral("clean_cj.png") : QStringLiteral("clean_cj_d.png");
    }
    changeStateTextFeild(cleanPageTexts::countLine(shown.selected, shown.total, shown.bytes));
}

void NewMainViewController::changeStateTextFeild(const CleanStyledText &text) {
    m_controls.stateTextField = text;
    m_controls.stateTextHidden = m_run.kind == Run::Kind::None || !m_parts.stateLine;
    Q_EMIT controlsChanged();
}

void NewMainViewController::updateSelectNumber(const Notification &notification) {
    if (refuseUnless(m_state == State::Idle || m_state == State::Results, "another selection"))
        return;
    m_selection->reload();
    m_controls.scanButton.enabled = true;
    // The overview's rows name the category in the object, the left list beside it.
    const QString rowNum = QStringLiteral("rowNum");
    const QVariant row = notification.userInfo.value(object).toMap().value(
        rowNum, notification.userInfo.value(rowNum));
    const unsigned index = row.toUInt();
    if (row.isValid() && index < categoryCount) {
        const int state = m_selection->selectArray()[index].toInt();
        m_selection->tickAll(index, state >= 1);
        allNewViewArr[index]->refCheckBoxInMainView(state);
    } else {
        NSLog("There is no row to select in this notification");
    }
    setCleanButtonEnabled(m_selection->returnSelectNum() >= 1);
    NotificationCenter::defaultCenter().post(cleanShowSelectNumInBottomNotification);
}

void NewMainViewController::cleanShowSelectNumInBottom(const Notification &notification) {
    const QVariantMap &userInfo = notification.userInfo;
    if (userInfo.value(QStringLiteral("animation")).toString() == QLatin1String("animation") &&
        userInfo.value(object).toBool())
        Q_EMIT flyToTrash(QStringLiteral("file1.png"), QModelIndex());
    // The tree stays as it is until all six have ended.
    if (m_state != State::Scanning && m_state != State::Stopping)
        m_outline->constructTree();
    setCleanButtonState();
}

void NewMainViewController::callBackCheckBoxClick(const Notification &notification) {
    const int row = notification.userInfo.value(object).toInt();
    const bool isCategory = m_selectRowNum >= 1 && m_selectRowNum <= int(categoryCount);
    Q_EMIT flyToTrash(notification.userInfo.value(QStringLiteral("iconImage")),
                      isCategory ? m_lists[std::size_t(m_selectRowNum - 1)]->index(row, 0)
                                 : QModelIndex());
}

void NewMainViewController::refNewTableViewSizeLabel(const Notification &notification) {
    const QVariant row =
        notification.userInfo.value(object).toMap().value(QStringLiteral("rowNum"));
    bool isNumber = false;
    const unsigned index = row.toUInt(&isNumber);
    if (isNumber && index < allNewViewArr.size())
        allNewViewArr[index]->initSizeLable();
}

void NewMainViewController::quickCleanEnded(const Notification &notification) {
    readHistory();
    postStartupVolume();
    Q_EMIT headingChanged();
    // Before the first scan there is no list.
    if (m_run.kind == Run::Kind::None || notification.userInfo.value(object).toULongLong() == 0)
        return;
    m_isOutdated = true;
    Q_EMIT controlsChanged();
}

// -- Rows of the left list

void NewMainViewController::shouldSelectRow(const Notification &notification) {
    const QVariantList list = notification.userInfo.value(object).toList();
    if (!refuseUnless(list.size() >= 2, "a row without a number"))
        shouldSelectRowWithArray(list[1].toInt());
}

void NewMainViewController::shouldSelectRowWithArray(int row) {
    if (!isCleanFinshed())
        return;
    NSLog("row :%d", row);
    m_selectRowNum = row;
    if (row == 0)
        readHistory(); // another process may have cleaned
    m_parts = {row};
    m_parts.v3MainView = row == 0;
    const bool isCategory = row >= 1 && row <= int(categoryCount);
    if (isCategory)
        m_parts.box = row - 1;
    else if (row == 8)
        NSLog("There is no list %d to show", row - 2);
    m_parts.uninstallTextField = row == 8;
    m_parts.diskSizeView = row == 9;
    m_parts.stateLine = row != 7 && row != 8;
    m_controls.scanButton.hidden = row == 8 || row == 9;
    Q_EMIT partsChanged();
    Q_EMIT headingChanged();
    setCleanButtonState();
    if (row == 0 && m_showCleanedSize)
        changeStateTextFeild(cleanPageTexts::cleanedLine(*m_showCleanedSize));
}

void NewMainViewController::readHistory() {
    const std::int64_t size = ParseFileLog().getSize(&m_recoveredDate);
    m_recoveredSize = std::uint64_t(std::max<std::int64_t>(size, 0));
}

CleanStyledText NewMainViewController::recovered() const {
    return m_recoveredSize > 0 ? cleanPageTexts::recoveredLine(m_recoveredSize, m_recoveredDate,
                                                               freeString, totleString)
                               : CleanStyledText();
}

CleanStyledText NewMainViewController::capacity() const {
    return cleanPageTexts::recoveredLine(0, {}, freeString, totleString);
}

CleanHeading NewMainViewController::heading() const {
    CleanHeading heading = changeNoteText(m_selectRowNum);
    if (m_selectRowNum == 0)
        heading.description = cleanPageTexts::recoveredLine(m_recoveredSize, m_recoveredDate,
                                                            freeString, totleString);
    return heading;
}

// The sentence names the capacity first, so that is what stands in the first text.
void NewMainViewController::GetFreeTotleArr(const Notification &notification) {
    const QVariantList list = notification.userInfo.value(object).toList();
    if (refuseUnless(list.size() >= 2, "figures that are not two"))
        return;
    freeString = list[0].toString();
    totleString = list[1].toString();
    Q_EMIT headingChanged();
}

// Gives the free space in words; empty where the startup volume is not listed.
QString NewMainViewController::postStartupVolume() {
    VolumesInfo volumes;
    for (const DSVolumeInfo &volume : volumes.getAllVolsInfo()) {
        if (!volume.bIsDefaultVol)
            continue;
        NotificationCenter::defaultCenter().post(
            FreeTotleArrNotification, this,
            {{object, QVariantList{volume.totalSpace, volume.freeSpace}}});
        return volume.freeSpace;
    }
    return {};
}

} // namespace brightsweep
