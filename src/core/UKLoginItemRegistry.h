#pragma once

#include "platform/LoginItemSource.h"

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

namespace brightsweep {

/// A login item as listed. An index is its place in the list, from 0.
struct LoginItem {
    std::string url; ///< "file://localhost" and the path, its bytes percent-encoded where needed
    bool hidden = false;
    LoginItemEntry entry;
};

/// The list of what starts with the session, as the pages and the command line use it: over the
/// platform's LoginItemSource, without a state of its own. A failure is a line in the log and an
/// answer. Every call may block, a listing for a minute and more, and is not for the main thread;
/// safe from every other.
class UKLoginItemRegistry {
public:
    /// The reason where the list cannot be read. A source that times out is asked again once a
    /// second, 61 times in all: right after login a home on a server may not be there yet.
    static Result<std::vector<LoginItem>> allLoginItems();

    static bool addLoginItemWithURL(const std::string &url, bool hideIt);
    static bool addLoginItemWithPath(const std::filesystem::path &path, bool hideIt);
    static bool removeLoginItemAtIndex(int index);
    /// The first one with that URL; -1 where there is none and where the list cannot be read.
    static int indexForLoginItemWithURL(const std::string &url);
    static int indexForLoginItemWithPath(const std::filesystem::path &path);
    static bool removeLoginItemWithURL(const std::string &url);
    static bool removeLoginItemWithPath(const std::filesystem::path &path);

    // -- The same by the name of the entry's file, which a change from outside does not turn to
    // another entry, and with the reason of a failure.

    static Result<std::string> addLoginItem(const std::filesystem::path &path, bool hideIt);
    static std::error_code removeLoginItemWithFile(const std::string &file);
    static std::error_code setHidden(const std::string &file, bool hidden);

    /// The URL of an absolute path, and the path of such a URL: what follows the first "localhost",
    /// empty where that word is missing.
    static std::string urlOfPath(const std::filesystem::path &path);
    static std::filesystem::path pathOfURL(const std::string &url);

    /// What is done between two tries; null for a second's wait. Before any call.
    static void setPause(std::function<void()> pause);
};

} // namespace brightsweep
