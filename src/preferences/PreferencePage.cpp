// The controls of the preferences page.

#include "core/LaunchAtLogin.h"
#include "core/MacLog.h"
#include "core/SettingKeys.h"
#include "core/Texts.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "memory/getMemoryInfo.h"
#include "platform/MemorySource.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "preferences/PreferenceViewController.h"
#include "volumes/FillLevel.h"
#include "volumes/MenuItem.h"
#include "volumes/VolumeNotifications.h"
#include "volumes/VolumeRows.h"
#include "volumes/VolumesInfo.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <system_error>

namespace brightsweep {

namespace {

constexpr qsizetype longestLimit = 4; // characters
constexpr char notANumberKey[] = QT_TRID_NOOP("不是数字");

const UserDefaults &stored() {
    return UserDefaults::standardUserDefaults();
}

// Why a change would not be kept now; empty where it would.
std::string storeProblem() {
    const QFileInfo folder(
        QFile::decodeName(QByteArray::fromStdString(paths::parent(stored().file()).native())));
    std::string problem = stored().problem();
    // A closed folder is told before a change has failed for it.
    if (problem.empty() && folder.exists() && !folder.isWritable())
        problem = std::make_error_code(std::errc::permission_denied).message();
    return problem;
}

// What cannot be kept is not done: it would be carried out later, when nobody expects it any more.
bool change(const QString &key, const QVariant &value) {
    return UserDefaults::standardUserDefaults().change(key, value);
}

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

} // namespace

PreferenceViewController::PreferenceViewController(Surroundings surroundings, QObject *parent)
    : QObject(parent),
      m_surroundings(std::move(surroundings)),
      m_languageInUse(stored().stringForKey(languageKey)) {
    NotificationCenter::defaultCenter().addObserver(
        this, UserDefaultsDidChangeNotification, [this](const Notification &) {
            // A worker's change is told once the main thread gets to it.
            if (QThread::currentThread() == thread())
                Q_EMIT settingsChanged();
            else
                m_queue.post([this] { Q_EMIT settingsChanged(); });
        });
    NotificationCenter::defaultCenter().addObserver(
        this, LaunchAtLoginDidChangeNotification,
        [this](const Notification &) { Q_EMIT settingsChanged(); });
}

PreferenceViewController::~PreferenceViewController() {
    NotificationCenter::defaultCenter().removeObserver(this);
}

// -- What the controls show

float PreferenceViewController::alarmSlider() const {
    return stored().floatForKey(DSSpaceAlarmKey);
}

float PreferenceViewController::memorySlider() const {
    return stored().floatForKey(DSMemoryAlarmKey);
}

std::int64_t PreferenceViewController::limit(const LimitField &field) const {
    return stored().integerForKey(field.limitKey);
}

int PreferenceViewController::unitTag(const LimitField &field) const {
    return int(stored().integerForKey(field.unitKey));
}

bool PreferenceViewController::sysCheckBox() const {
    return stored().boolForKey(DSSystemDuplication);
}

bool PreferenceViewController::hideCheckBox() const {
    return stored().boolForKey(DSHidenDuplication);
}

bool PreferenceViewController::autoCheckUpdates() const {
    return stored().boolForKey(SUEnableAutomaticChecks);
}

int PreferenceViewController::updateTime() const {
    return int(stored().integerForKey(SUScheduledCheckInterval));
}

bool PreferenceViewController::checkBoxBtn() const {
    return LaunchAtLogin::isOn();
}

QString PreferenceViewController::launchProblem() const {
    return LaunchAtLogin::problem();
}

Qt::CheckState PreferenceViewController::category(int tag) const {
    const QLatin1String key(cleanCategories[std::size_t(tag - 1)].key);
    switch (stored().integerForKey(key)) {
    case 0:
        return Qt::Unchecked;
    case 2:
        return Qt::PartiallyChecked;
    default:
        return Qt::Checked;
    }
}

bool PreferenceViewController::categoriesAreFree() const {
    return !m_surroundings.categoriesAreFree || m_surroundings.categoriesAreFree();
}

QString PreferenceViewController::language() const {
    return stored().stringForKey(languageKey);
}

bool PreferenceViewController::cleanMayAskForRights() const {
    return stored().boolForKey(cleanMayAskForRightsKey);
}

void PreferenceViewController::lookAgainAtProblem() {
    UserDefaults::standardUserDefaults().lookAgain();
}

QString PreferenceViewController::settingsProblem() const {
    const std::string problem = storeProblem();
    return problem.empty() ? QString()
                           : localizedText("SETTINGS_NOT_KEPT")
                                 .arg(nameInSentence(paths::displayFromHome(stored().file())),
                                      localizedText(QString::fromStdString(problem)));
}

std::filesystem::path PreferenceViewController::logFile() const {
    return paths::join(MacLog::supportFolder(), logFileName);
}

std::uint64_t PreferenceViewController::logSize() const {
    std::error_code error;
    const auto size = std::filesystem::file_size(logFile(), error);
    return error ? 0 : size;
}

AlarmPreview PreferenceViewController::spacePreview(float alarm) const {
    VolumesInfo volumes(*Platform::current().volumes);
    for (const DSVolumeInfo &volume : volumes.getAllVolsInfo()) {
        if (volume.bIsDefaultVol) {
            const int percent = int(alarm * 100);
            return {VolumeRows::imageNameOf(&volume, alarm * 100),
                    FillLevel::isLow(volume.nTotalSize, volume.nFreeSize, percent),
                    FillLevel::freePercent(volume.nTotalSize, volume.nFreeSize)};
        }
    }
    return {};
}

AlarmPreview PreferenceViewController::memoryPreview(float alarm) const {
    MemoryInfo memory;
    getMemoryInfo(&memory);
    const auto available = Platform::current().memory->availableBytes();
    if (!available)
        return {};
    MenuItem row;
    row.myStorage = memoryStorage;
    row.nTotalSize = memory.totalMem;
    row.nFreeSize = std::min(*available, memory.totalMem);
    row.errorValue = QString::number(double(alarm * 100), 'f', 6);
    return {row.getPrograssImage(), row.warns(),
            FillLevel::freePercent(row.nTotalSize, row.nFreeSize)};
}

// -- Actions

void PreferenceViewController::changeArlarmSliderValue(float value) {
    change(DSSpaceAlarmKey, value);
}

void PreferenceViewController::changeMemorySliderVaule(float value) {
    change(DSMemoryAlarmKey, value);
}

void PreferenceViewController::changeLimitUnit(int selectedTag) {
    change(DSDuplicatesUnit, selectedTag);
}

void PreferenceViewController::changeDiskUsageUnit(int selectedTag) {
    change(DSDiskUsageUnit, selectedTag);
}

void PreferenceViewController::changeCheckInterval(int selectedTag) {
    change(SUScheduledCheckInterval, selectedTag);
}

void PreferenceViewController::changeAutoUpdate(int state) {
    change(SUEnableAutomaticChecks, state >= 1);
}

void PreferenceViewController::changeSysDuplicates(int state) {
    change(DSSystemDuplication, state >= 1);
}

void PreferenceViewController::changeHiddenDuplicates(int state) {
    change(DSHidenDuplication, state >= 1);
}

void PreferenceViewController::loginButtonAction(int state) {
    if (change(DSLoginCheckKey, state))
        m_surroundings.launchAtLogin(state);
}

void PreferenceViewController::changeCategory(int tag) {
    const bool flag = category(tag) != Qt::Unchecked;
    // Stored first, so that whoever hears of it reads what it is now.
    if (!categoriesAreFree() ||
        !change(QLatin1String(cleanCategories[std::size_t(tag - 1)].key), flag ? 0 : 1))
        return;
    NotificationCenter::defaultCenter().post(
        changeCheckBoxNotification, nullptr,
        {{QStringLiteral("tag"), tag}, {QStringLiteral("flag"), flag}});
}

void PreferenceViewController::changeShowStatusBtnClick() {
    const bool hidden = !getHiddenStatusItem();
    if (!change(DSShowStatusItem, hidden))
        return;
    NSLog("ischose:%d", hidden);
    NotificationCenter::defaultCenter().post(setStatusBarHiddenNotification, nullptr,
                                             {{QStringLiteral("object"), hidden}});
}

void PreferenceViewController::changeLanguage(const QString &locale) {
    change(languageKey, locale);
}

void PreferenceViewController::changeCleanMayAskForRights(int state) {
    change(cleanMayAskForRightsKey, state >= 1);
}

void PreferenceViewController::openLog() {
    // No program may be set for such a file.
    if (!Platform::current().workspace->open(logFile()))
        Platform::current().workspace->reveal(logFile());
}

// -- The limit fields

QString PreferenceViewController::controlTextDidChange(int tag, const QString &text) {
    const QString kept = text.toUpper().left(longestLimit);
    for (const LimitField &field : limitFields) {
        if (field.tag == tag && !change(field.limitKey, qlonglong(integerFromText(kept))))
            return QString::number(stored().integerForKey(field.limitKey));
    }
    return kept;
}

bool PreferenceViewController::isPartialStringValid(const QString &partialString,
                                                    qsizetype proposedSelectionStart,
                                                    qsizetype originalSelectionStart,
                                                    QString *errorDescription) {
    const auto size = std::max<qsizetype>(0, proposedSelectionStart - originalSelectionStart);
    const QString added = partialString.mid(originalSelectionStart, size);
    if (std::all_of(added.begin(), added.end(), isDigit))
        return true;
    if (errorDescription)
        *errorDescription = QString::fromUtf8(notANumberKey);
    return false;
}

} // namespace brightsweep
