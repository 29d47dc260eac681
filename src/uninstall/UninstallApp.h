#pragma once

#include "platform/ApplicationSource.h"
#include "removal/ItemRemoval.h"
#include "uninstall/AppItems.h"

#include <QString>

#include <atomic>
#include <filesystem>
#include <vector>

namespace brightsweep {

/// Removes one application bundle and what it has left in the library folders, which is found by
/// name alone: entries that begin with the bundle's id. Any thread; part of the removal run that is
/// under way, and blocks for as long as it takes.
class UninstallApp {
public:
    /// `stop`, when given, outlives this object.
    explicit UninstallApp(const std::atomic<bool> *stop = nullptr) : m_stop(stop) {}

    /// Where bundles leave something, in the order in which it goes: the machine's library, then
    /// the user's library, preferences and caches.
    static std::vector<std::filesystem::path> leftoverFolders();

    /// Every entry of the folders that begins with the id, in the order of the folders and then of
    /// the system; no folder in them is looked into. It may well be another bundle's, as
    /// "com.example.editor2" is for "com.example.editor".
    static std::vector<std::filesystem::path>
    getFilesByBundle(const QString &bundleID, const std::vector<std::filesystem::path> &Paths);

    /// Removes what can be no other bundle's, then the bundle. The first item that stays ends it
    /// and leaves all after it, so that the bundle outlives a leftover that cannot go. A bundle
    /// without an id leaves nothing.
    bool uninstallApp(const AppItems &item);
    /// The same with the leftovers that the user chose, all as they were shown.
    bool uninstallApp(const QString &bundleID, std::vector<Leftover> leftovers,
                      const Leftover &bundle);

    /// After a removal that returned false: what stayed, and why.
    const std::filesystem::path &stayed() const { return m_stayed; }
    const RemovalOutcome &outcome() const { return m_outcome; }

private:
    const std::atomic<bool> *m_stop;
    std::filesystem::path m_stayed;
    RemovalOutcome m_outcome;
};

} // namespace brightsweep
