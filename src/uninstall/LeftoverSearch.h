#pragma once

#include "platform/ApplicationSource.h"
#include "platform/StandardDirectories.h"
#include "uninstall/LeftoverLook.h"
#include "uninstall/LeftoverRules.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <tuple>
#include <vector>

namespace brightsweep {

/// A folder whose direct children are compared with names, and what they are then.
struct SearchedFolder {
    LeftoverPlace place;
    StandardDirectory directory;
    LeftoverKind kind;

    std::filesystem::path path() const;
};
/// The user's folders for settings, caches, state and data, and the home.
std::span<const SearchedFolder> searchedFolders();
/// Those in which bundles leave something, in the order in which it goes.
std::span<const SearchedFolder> bundleFolders();

/// A search for leftovers: what it finds, each once, however many ways lead to it.
class LeftoverSearch {
public:
    /// What holds the application itself, or lies in it, is no leftover of it.
    explicit LeftoverSearch(const std::atomic<bool> *stop, std::filesystem::path application = {})
        : m_stop(stop), m_application(std::move(application)) {}

    /// Null where it is no leftover, or is listed already; else valid until the next one is added.
    Leftover *add(const RemovalTarget &target, LeftoverKind kind, std::string reason,
                  bool ticksData = false);
    Leftover *add(std::optional<Leftover> leftover);
    /// The same for what may not be there at all.
    void addIfThere(const std::filesystem::path &folder, const std::filesystem::path &way,
                    LeftoverKind kind, std::string reason);
    /// Everything that has one of the names, and that nothing else claims.
    void addNamed(const LeftoverNames &names, const LeftoverNames &claimed,
                  const std::string &reason);

    const std::atomic<bool> *stop() const { return m_stop; }
    std::vector<Leftover> take() { return std::move(m_leftovers); }

private:
    const std::atomic<bool> *m_stop;
    const std::filesystem::path m_application;
    std::set<std::tuple<std::uint64_t, std::uint64_t, std::string>> m_seen;
    std::vector<Leftover> m_leftovers;
};

/// Calls it with every name of a folder, sorted, and the folder as removals start from it. Nothing
/// happens where the folder cannot be read.
void forEachName(const std::filesystem::path &folder,
                 const std::function<void(const RemovalRoot &root, const std::string &name)> &call);

} // namespace brightsweep
