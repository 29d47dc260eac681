#pragma once

#include "linux/PackageRemoval.h"
#include "linux/ToolRun.h"

#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {
class PackageDatabase;
}

namespace brightsweep::helper {

/// Removes packages of the running system by the distribution's own package manager.
///
/// Whatever the program has checked is checked here again: the words, what may not go, a dry run of
/// exactly this set, and with apt that nothing else would go and nothing come. The real run of
/// apt-get asks once more under its own lock (matchesReport()). What went is read back from the
/// database. A removal that runs is never ended.
class PackagesRemoval {
public:
    /// `hook` is the program that apt-get calls to compare what it is about to do.
    PackagesRemoval(ToolRunner run, std::string hook) : m_run(std::move(run)), m_hook(hook) {}

    PackagesReply run(const PackageRemoval &removal) const;

    /// The environment of everything that is started: the system's tools, no questions.
    static std::vector<std::string> environment();

private:
    PackagesReply checked(const PackageRemoval &removal, PackageDatabase &database) const;
    ToolOutput act(const PackageRemoval &removal) const;
    ToolOutput actByDpkg(const PackageRemoval &removal) const;
    ToolOutput actByApt(const PackageRemoval &removal) const;

    const ToolRunner m_run;
    const std::string m_hook;
};

/// The argument by which the hook knows its purpose, before the names.
inline constexpr std::string_view verifyArgument = "verify";
/// What the hook says when it stops apt-get.
inline constexpr std::string_view hookRefusal = "brightsweep: something else would change as well";

} // namespace brightsweep::helper
