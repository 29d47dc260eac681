#pragma once

#include <QVariant>

namespace brightsweep {

/// The class-wide accessors of the settings, by the names under which the pages know them. They
/// read and write the standard settings at once and keep nothing.
class PreferenceViewController {
public:
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
};

} // namespace brightsweep
