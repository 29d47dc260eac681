#pragma once

#include "foundation/FileTime.h"
#include "foundation/Result.h"

#include <QString>

#include <filesystem>
#include <string>

namespace brightsweep {

/// What the desktop knows of files. Main thread, except where a call says otherwise.
class Workspace {
public:
    virtual ~Workspace();
    virtual std::string unavailableReason() const { return {}; }

    /// The text under which the desktop shows the item. Any thread.
    virtual QString displayName(const std::filesystem::path &path) = 0;
    /// True for a directory that is shown as one thing. Any thread.
    virtual bool isPackage(const std::filesystem::path &path) = 0;
    /// The type of the item, empty for a plain folder and for what does not exist. Any thread.
    virtual QString typeOf(const std::filesystem::path &path) = 0;
    /// When the item was made or, where its file system does not tell, last changed; a link is not
    /// followed. Any thread.
    virtual Result<FileTime> created(const std::filesystem::path &path) = 0;
    /// True for a program, by its name or path, that is certainly not there: not where a volume
    /// belongs that is not mounted. Any thread.
    virtual bool isMissing(const std::string &program) = 0;
    /// True for a path that leads to where a volume belongs that is not mounted: what is not found
    /// there may well come back. Any thread.
    virtual bool mayLieOnAbsentVolume(const std::filesystem::path &path) = 0;
    /// Opens the item with the user's default program for it; a folder in the file manager. Does
    /// not wait for that program; false where nothing can be started for the item.
    virtual bool open(const std::filesystem::path &path) = 0;
    /// Shows the item in its folder, in the file manager; where that cannot be, opens the folder.
    /// Does not wait; false for an item that does not exist.
    virtual bool reveal(const std::filesystem::path &path) = 0;
};

} // namespace brightsweep
