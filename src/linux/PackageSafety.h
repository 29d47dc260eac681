#pragma once

#include "linux/PackageDatabase.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace brightsweep {

enum class PackageRefusal {
    None,
    Essential,   ///< the system does not run, start or let anybody in without it
    ImageBased,  ///< the system's programs come as one image
    NeededByUs,  ///< this program is of that package
    Interrupted, ///< the package manager was stopped in the middle of something
    Held,        ///< the package manager was told to leave it as it is
    Gone,        ///< it is not installed
};

struct Refusal {
    PackageRefusal why = PackageRefusal::None;
    std::string words; ///< in English, with the package's name

    explicit operator bool() const { return why != PackageRefusal::None; }
};

/// Which packages no removal takes, whoever asks. The program asks before it shows a plan, the
/// process with administrator rights once more before it acts. As the machine is when it is made.
class PackageSafety {
public:
    /// `root` is the prefix of the database, which outlives this.
    PackageSafety(PackageDatabase &database, const std::string &root);

    /// For the first of the packages that may not go, or for all where the system allows none.
    Refusal refusalOf(const std::vector<std::string> &names) const;

private:
    PackageDatabase &m_database;
    std::string m_systemsRefusal;
    std::unordered_map<std::string, std::string> m_kept; // why, by name
    std::string m_own;                                   // the package that this program is of
};

/// True for a process of this name that the desktop session stands on.
bool isSessionProgram(std::string_view name);

} // namespace brightsweep
