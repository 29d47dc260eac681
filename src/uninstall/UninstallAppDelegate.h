#pragma once

#include "uninstall/AppItems.h"

#include <filesystem>
#include <vector>

namespace brightsweep {

/// Finds the application bundles of the machine and describes each: directories that end in ".app",
/// in the four application folders. What cannot be read makes fewer or emptier records. Any thread,
/// and not the main one: it asks the disk.
class UninstallAppDelegate {
public:
    /// Adds the bundles of all application folders, in the order of the folders. A bundle that two
    /// of them lead to is there twice. Without a list nothing happens.
    void getAppInfo(std::vector<AppItems::Pointer> *apps);

    /// Adds the bundles below a folder, those in plain subfolders too. Links are followed, but into
    /// no folder for a second time and not upwards out of the folder; nothing of what is mounted
    /// below is asked. Only ".app" in lower case ends a bundle's name, and no bundle is entered.
    void applicationsInDirectory(const std::filesystem::path &directory,
                                 std::vector<std::filesystem::path> &withArray);

    /// The record of one bundle, by its Contents/Info.plist. Nothing of it is measured.
    AppItems::Pointer constructAppItem(const std::filesystem::path &path);
};

} // namespace brightsweep
