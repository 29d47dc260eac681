#pragma once

#include "core/SettingKeys.h"
#include "foundation/CallQueue.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>

namespace brightsweep {

/// Posted when the check box of a category was clicked, on the main thread. User info: "tag", its
/// number from 1 on, and "flag", whether anything of it was ticked before.
inline constexpr QLatin1String changeCheckBoxNotification("changeCheckBox");

/// A field of a size limit, by the tag that it carries, with its two settings.
struct LimitField {
    int tag;
    QLatin1String limitKey;
    QLatin1String unitKey;
};

/// How often updates are looked for: the tag, which is stored, is the interval in seconds.
struct CheckInterval {
    int tag;
    const char *title; ///< a key
};
inline constexpr std::array checkIntervals = {
    CheckInterval{86'400, QT_TRID_NOOP("Daily")},
    CheckInterval{604'800, QT_TRID_NOOP("Weekly")},
    CheckInterval{2'592'000, QT_TRID_NOOP("Monthly")},
};

/// A language that the window can be set to.
struct WindowLanguage {
    const char *locale; ///< stored; empty for that of the desktop
    const char *name;   ///< in the language itself; null for that of the desktop
};
inline constexpr std::array windowLanguages = {
    WindowLanguage{"", nullptr},
    WindowLanguage{"en", "English"},
    WindowLanguage{"de", "Deutsch"},
    WindowLanguage{"zh_CN", "简体中文"},
};

/// What an alarm would show now at some level.
struct AlarmPreview {
    QString image; ///< of the status item, or the bar of the memory's row; empty where unknown
    bool warns = false;
    std::uint64_t freePercent = 0;
};

/// The settings: the class-wide accessors, by the names under which the pages know them, and the
/// preferences page without its screen. Neither keeps anything: what is asked for is read from the
/// store, and an action is written through at once. Main thread.
class PreferenceViewController : public QObject {
    Q_OBJECT

public:
    struct Surroundings {
        /// False while ticks of the categories are in use, by a scan or a clean; else true.
        std::function<bool()> categoriesAreFree;
        /// Stores the flag, 0 or 1, and renews or removes the program's entry.
        std::function<void(int state)> launchAtLogin;
        /// Where updates come from; empty where nobody offers any.
        QString updateService{};
    };

    static constexpr std::array limitFields = {
        LimitField{1024, DSDuplicationLimit, DSDuplicatesUnit},
        LimitField{2048, DSDiskUsageLimit, DSDiskUsageUnit},
    };

    explicit PreferenceViewController(Surroundings surroundings, QObject *parent = nullptr);
    ~PreferenceViewController() override;

    // -- What the controls show

    float alarmSlider() const;
    float memorySlider() const;
    std::int64_t limit(const LimitField &field) const;
    int unitTag(const LimitField &field) const;
    bool sysCheckBox() const;
    bool hideCheckBox() const;
    bool autoCheckUpdates() const;
    int updateTime() const;
    /// Ticked: the status item is hidden.
    bool showStatusBtn() const { return getHiddenStatusItem(); }
    /// Ticked: launch at login.
    bool checkBoxBtn() const;
    /// Why launch at login could not be changed, in words; empty where it could.
    QString launchProblem() const;
    /// The state of a category, by its tag from 1 on.
    Qt::CheckState category(int tag) const;
    bool categoriesAreFree() const;
    const QString &updateService() const { return m_surroundings.updateService; }
    QString language() const;
    /// Another language was chosen than the one that the window speaks until it starts anew.
    bool needsRestart() const { return language() != m_languageInUse; }
    bool cleanMayAskForRights() const;
    /// Why changes are not kept, in words with the settings' file; empty where they are.
    QString settingsProblem() const;
    /// Finds out whether the problem is still there; where changes are kept this does nothing.
    void lookAgainAtProblem();
    std::filesystem::path logFile() const;
    std::uint64_t logSize() const;

    AlarmPreview spacePreview(float alarm) const;
    AlarmPreview memoryPreview(float alarm) const;

    // -- Actions, one for each control. While the settings keep nothing, none does anything, then
    // or later.

    void changeArlarmSliderValue(float value);
    void changeMemorySliderVaule(float value);
    void changeLimitUnit(int selectedTag);
    void changeDiskUsageUnit(int selectedTag);
    void changeCheckInterval(int selectedTag);
    void changeAutoUpdate(int state);
    void changeSysDuplicates(int state);
    void changeHiddenDuplicates(int state);
    void loginButtonAction(int state);
    void changeSysCachesState() { changeCategory(1); }
    void changeUserCaches() { changeCategory(2); }
    void changeSystemLogs() { changeCategory(3); }
    void changeUserLogs() { changeCategory(4); }
    void changeUserTrash() { changeCategory(5); }
    void changeUserDownloads() { changeCategory(6); }
    /// What the six above do: none becomes all, anything else none.
    void changeCategory(int tag);
    /// The click's own state plays no part: the stored one is turned over.
    void changeShowStatusBtnClick();
    void changeLanguage(const QString &locale);
    void changeCleanMayAskForRights(int state);
    void openLog();
    void restart() { Q_EMIT restartRequested(); }

    /// A limit field's text has changed. Gives the text to put back: four characters at most,
    /// and the stored limit where that cannot be changed.
    static QString controlTextDidChange(int tag, const QString &text);
    /// False where what was put into the text, from the start of the old selection to the start of
    /// the new one, has anything but the digits 0 to 9; `errorDescription` gets the key of why.
    static bool isPartialStringValid(const QString &partialString, qsizetype proposedSelectionStart,
                                     qsizetype originalSelectionStart, QString *errorDescription);

    /// Registers the defaults of the settings and synchronizes. Once in a process, before any
    /// setting is read.
    static void initialize();

    /// The state of a category, by its index: 0 none, 1 all, 2 part.
    static void setCategoryClicked(unsigned category, int number);
    // The same for each of the six. The getters hand back the stored object itself, which is
    // valid once the defaults are registered, whatever its number.
    static void setSystemCashesClicked(int number);
    static QVariant getSystemCashesClicked();
    static void setUserCashesClicked(int number);
    static QVariant getUserCashesClicked();
    static void setSystemLogsClicked(int number);
    static QVariant getSystemLogsClickedClicked();
    static void setUserLogsClicked(int number);
    static QVariant getUserLogsClicked();
    static void setUserTrashClicked(int number);
    static QVariant getUserTrashClicked();
    static void setUserDownLoadsFolderClicked(int number);
    static QVariant getUserDownLoadsFoldeClicked();

    static void setUninstallClicked(int number);
    static bool getUninstallClicked();
    static void setFreeSpaceClicked(int number);
    static bool getFreeSpaceClicked();
    static void setLastClickRow(int row);
    static int getLastClickRow();
    static void setLoginItemIsHide(int number);
    static bool getLoginItemIsHide();
    /// True: the status item is hidden.
    static void setHiddenStatusItem(bool hidden);
    static bool getHiddenStatusItem();

Q_SIGNALS:
    /// A setting has another value, by whomever; the controls are to be read again.
    void settingsChanged();
    void restartRequested();

private:
    const Surroundings m_surroundings;
    const QString m_languageInUse;
    CallQueue m_queue;
};

} // namespace brightsweep
