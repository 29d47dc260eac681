#pragma once

#include "core/UKLoginItemRegistry.h"
#include "uninstall/AppItems.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace brightsweep {

/// A row of the login items page.
struct LoginItemRow : AppItems {
    using Pointer = std::shared_ptr<LoginItemRow>;

    /// What its file says; without a name where the row is of an entry that could not be made.
    LoginItemEntry entry;
};

/// Describes login items as rows. Reads the disk, any thread but the main one.
class AppInformation {
public:
    /// Adds a row for each login item.
    void getAppInfo(std::vector<LoginItemRow::Pointer> *appsInfo,
                    const std::vector<LoginItem> &items);
    /// The row of the program, document or bundle at that path.
    LoginItemRow::Pointer constructAppItem(const std::filesystem::path &path, bool hide);

    /// Stores the flag that this program starts at login, and has the menu show it. Main thread.
    static void writeFileOfLaunchAppWhenLogin(int number);
};

} // namespace brightsweep
