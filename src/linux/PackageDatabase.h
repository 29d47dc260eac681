#pragma once

#include "linux/PackageNames.h"
#include "linux/ToolRun.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace brightsweep {

/// Why the system needs a package.
enum class PackageRole {
    None,
    Collection, ///< a metapackage that is installed asks for it by name
    Standard,   ///< priority important or standard
    Required,   ///< essential, protected, important, priority required, or held by its manager
};

/// A package that is installed, or of which settings are left.
struct PackageRecord {
    std::string name; ///< as the tools take it: with its architecture where that is a foreign one
    std::string version;
    std::uint64_t bytes = 0;    ///< as the package itself says
    std::int64_t installed = 0; ///< seconds since the epoch; 0 where it is not known
    PackageRole role = PackageRole::None;
    std::string collection;  ///< with PackageRole::Collection: which
    bool isInstalled = true; ///< false where it has been removed but for its settings
    bool isHeld = false;     ///< its manager was told to leave it as it is
    /// What to do where an act upon it was broken off in the middle: a sentence; else empty.
    std::string_view wayOut = {};
    /// Settings of the whole system that a removal leaves and a purge takes.
    std::vector<std::string> settings;
};

/// What a removal of exactly some packages would meet.
struct DryRun {
    bool passes = false;
    std::vector<std::string> dependents; ///< packages that need one of them
    std::string words;                   ///< of the tool
};

using PathSet = std::unordered_set<std::string>;
using PathOwners = std::unordered_map<std::string, std::string>;

/// What a package manager knows, read from its own files where they are ours to read, as they are
/// when it is opened. Changes nothing, needs no rights. One thread.
class PackageDatabase {
public:
    /// That of the system below a prefix, which is empty for the running one: the first family
    /// whose database is there and not empty. Null where there is none.
    static std::unique_ptr<PackageDatabase> open(const std::string &root, ToolRunner run);
    virtual ~PackageDatabase();

    virtual PackageFamily family() const = 0;
    /// Another text as soon as something has been installed or removed.
    virtual std::string stamp() const = 0;
    /// What stamp() was before the records were read.
    const std::string &stampWhenRead() const { return m_stampWhenRead; }
    /// Files and folders in which such a change shows.
    virtual std::vector<std::string> watched() const = 0;
    /// Nothing where the package is neither installed nor left in settings. Valid while this lives.
    virtual const PackageRecord *find(const std::string &name) = 0;
    bool isInstalled(const std::string &name);
    /// Names of what has gone but for its settings.
    virtual std::vector<std::string> formerNames() { return {}; }
    /// What is to be put right before the package manager does anything else, and how: the first
    /// of several, in English; empty where nothing is.
    virtual std::string unfinished() const { return {}; }
    /// The same for a manager that stopped in the middle though its database tells of nothing;
    /// empty where its family has no such way out.
    virtual std::string wayOutOfUnknown() const { return {}; }

    /// Which package has each of the paths, as far as one has. One pass for all.
    virtual PathOwners owners(const PathSet &paths) = 0;
    /// The files and folders of a package.
    virtual std::vector<std::string> filesOf(const std::string &name) = 0;
    /// Asks the lowest tool, as any user.
    virtual DryRun dryRun(const std::vector<std::string> &names) = 0;

protected:
    PackageDatabase(std::string root, ToolRunner run)
        : m_root(std::move(root)), m_run(std::move(run)) {}
    /// Finds the database; false where there is none. stamp() is asked after it.
    virtual bool locate() = 0;
    /// Reads the records; false where there are none.
    virtual bool load() = 0;
    ToolOutput runTool(const std::vector<std::string> &arguments) const { return m_run(arguments); }
    /// The path on this machine of one of the system.
    std::string place(std::string_view path) const { return m_root + std::string(path); }
    const std::string &root() const { return m_root; }

private:
    const std::string m_root;
    const ToolRunner m_run;
    std::string m_stampWhenRead;
};

/// A set of packages that can go together: the application first.
struct PackageClosure {
    enum class End { Complete, TooMany, Refused } end = End::Refused;
    std::vector<std::string> names;
    std::string words; ///< where it was refused: of the tool
};

/// Adds what depends on the packages until a dry run passes.
PackageClosure closureOf(PackageDatabase &database, const std::string &name);

// -- For the families

/// What of a path changes with it: number, size and time of change; empty where there is none.
std::string stampOf(const std::string &path);
/// The path by its other name, where "/usr" holds what once lay beside it; empty where it has none.
std::string otherNameOf(std::string_view path);
/// Reads the whole of a regular file into the text; false where that cannot be, or it is larger
/// than anything sane. `directory` as of openat().
bool readDatabaseFile(int directory, const char *name, std::string &text);
/// Calls for each line, without its end.
template <typename Call>
void forEachLine(std::string_view text, Call call) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        call(text.substr(0, end));
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
    }
}

/// Paths that are looked for in lists of files, by whichever of their names stands there.
class WantedPaths {
public:
    explicit WantedPaths(const PathSet &paths);
    /// The path that was asked for, by a listed one; null where it is none of them.
    const std::string *find(std::string_view listed) const {
        const auto found = m_wanted.find(listed);
        return found == m_wanted.end() ? nullptr : found->second;
    }

private:
    std::vector<std::string> m_otherNames;
    std::unordered_map<std::string_view, const std::string *> m_wanted;
};

} // namespace brightsweep
