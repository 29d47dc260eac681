#include "helper/PackagesRemoval.h"

#include "helper/AptReports.h"
#include "linux/PackageDatabase.h"
#include "linux/PackageSafety.h"

#include <unistd.h>

#include <algorithm>
#include <array>

namespace brightsweep::helper {

namespace {

constexpr char aptGet[] = "/usr/bin/apt-get";
constexpr char dpkg[] = "/usr/bin/dpkg";
constexpr char dnf[] = "/usr/bin/dnf";
constexpr char zypper[] = "/usr/bin/zypper";
constexpr char rpm[] = "/usr/bin/rpm";
constexpr char pacman[] = "/usr/bin/pacman";
constexpr std::uint32_t longestWait = 60; // seconds

struct Saying {
    std::string_view words;
    PackagesOutcome outcome;
};

// What a package manager says that has done nothing. The first that is found counts.
constexpr std::array sayings = {
    Saying{hookRefusal, PackagesOutcome::Changed},
    Saying{"Could not get lock", PackagesOutcome::Busy},
    Saying{"Unable to acquire the dpkg frontend lock", PackagesOutcome::Busy},
    Saying{"locked by another process", PackagesOutcome::Busy},
    Saying{"already locked by", PackagesOutcome::Busy},
    Saying{"can't create transaction lock", PackagesOutcome::Busy},
    Saying{"unable to lock database", PackagesOutcome::Busy},
    Saying{"System management is locked", PackagesOutcome::Busy},
};

// What apt-get says of packages that lack something, whatever it is asked for.
constexpr std::string_view unmetDependencies = "Unmet dependencies";

bool isThere(const char *tool) {
    return ::access(tool, X_OK) == 0;
}

// apt-get hands a hook's line to a shell, and takes what stands before the first blank for the
// program.
bool isPlainPath(std::string_view path) {
    return path.starts_with('/') && std::all_of(path.begin(), path.end(), [](char letter) {
               return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
                      (letter >= '0' && letter <= '9') || letter == '/' || letter == '.' ||
                      letter == '_' || letter == '-' || letter == '+';
           });
}

std::vector<std::string> with(std::vector<std::string> arguments,
                              const std::vector<std::string> &names) {
    arguments.insert(arguments.end(), names.begin(), names.end());
    return arguments;
}

// By the names of what stands in the way; the tool's own last line leaves them out.
std::string wordsOf(const DryRun &run, const std::vector<std::string> &going) {
    std::string names;
    for (const std::string &name : run.dependents) {
        if (std::find(going.begin(), going.end(), name) == going.end())
            names += (names.empty() ? "needed by " : ", ") + name;
    }
    if (!names.empty())
        return names;
    return run.words.empty() ? "it would break" : run.words;
}

} // namespace

std::vector<std::string> PackagesRemoval::environment() {
    return {"PATH=/usr/sbin:/usr/bin:/sbin:/bin",
            "LC_ALL=C",
            "HOME=/root",
            "DEBIAN_FRONTEND=noninteractive",
            "DEBCONF_NONINTERACTIVE_SEEN=true",
            "APT_LISTCHANGES_FRONTEND=none",
            "APT_LISTBUGS_FRONTEND=none",
            "NEEDRESTART_MODE=l",
            "NEEDRESTART_SUSPEND=1"};
}

PackagesReply PackagesRemoval::run(const PackageRemoval &removal) const {
    if (const auto words = refusalOfPackages(removal); !words.empty())
        return {PackagesOutcome::Refused, {}, std::string(words)};
    const auto database = PackageDatabase::open({}, m_run);
    if (!database || database->family() != removal.family)
        return {PackagesOutcome::Refused, {}, "this system has no such package manager"};
    if (PackagesReply refused = checked(removal, *database); !refused.words.empty())
        return refused;
    const ToolOutput output = act(removal);

    PackagesReply reply;
    reply.words = output.text;
    const auto after = PackageDatabase::open({}, m_run);
    const bool isBroken = !after || !after->unfinished().empty();
    for (const std::string &name : removal.names) {
        const PackageRecord *record = after ? after->find(name) : nullptr;
        if (after && (!record || !record->isInstalled))
            reply.gone.push_back(name);
    }
    if (isBroken) {
        reply.outcome = PackagesOutcome::Broken;
    } else if (reply.gone.size() == removal.names.size()) {
        reply.outcome = PackagesOutcome::Removed;
    } else {
        const auto saying = std::find_if(sayings.begin(), sayings.end(), [&](const Saying &row) {
            return output.text.find(row.words) != output.text.npos;
        });
        const bool nothingDone = saying != sayings.end() && reply.gone.empty();
        reply.outcome = nothingDone ? saying->outcome : PackagesOutcome::Failed;
    }
    if (reply.words.empty())
        reply.words = "the package manager ended with " + std::to_string(output.status);
    return reply;
}

// Without words where nothing stands against it.
PackagesReply PackagesRemoval::checked(const PackageRemoval &removal,
                                       PackageDatabase &database) const {
    if (const Refusal refusal = PackageSafety(database, {}).refusalOf(removal.names)) {
        switch (refusal.why) {
        case PackageRefusal::Gone:
            return {PackagesOutcome::Changed, {}, refusal.words};
        case PackageRefusal::Interrupted:
            return {PackagesOutcome::Broken, {}, refusal.words};
        default:
            return {PackagesOutcome::Refused, {}, refusal.words};
        }
    }
    // A dependent that came in between stands in the way here.
    if (const DryRun run = database.dryRun(removal.names); !run.passes)
        return {PackagesOutcome::Changed, {}, wordsOf(run, removal.names)};
    if (removal.family != PackageFamily::Dpkg || !isThere(aptGet))
        return {PackagesOutcome::Removed, {}, {}};
    if (!isPlainPath(m_hook))
        return {PackagesOutcome::Refused, {}, "the program lies in a folder of an unusual name"};
    const ToolOutput simulated =
        m_run(with({aptGet, "-s", "-q", "--no-auto-remove", "remove", "--"}, removal.names));
    if (matchesSimulation(simulated.text, removal.names))
        return {PackagesOutcome::Removed, {}, {}};
    const bool isBroken = simulated.text.find(unmetDependencies) != simulated.text.npos;
    return {isBroken ? PackagesOutcome::Broken : PackagesOutcome::Changed,
            {},
            simulated.text.empty() ? "apt-get does not answer" : simulated.text};
}

ToolOutput PackagesRemoval::act(const PackageRemoval &removal) const {
    switch (removal.family) {
    case PackageFamily::Dpkg: {
        const ToolOutput output = isThere(aptGet) ? actByApt(removal) : actByDpkg(removal);
        if (output.status != 0 || removal.purge.empty())
            return output;
        return m_run(with({dpkg, "--purge", "--"}, removal.purge));
    }
    case PackageFamily::Rpm:
        if (isThere(dnf))
            // Else it would wait for a lock without limit.
            return m_run(with({dnf, "-y", "-C", "--disablerepo=*", "--setopt=exit_on_lock=True",
                               "--setopt=clean_requirements_on_remove=False", "remove"},
                              removal.names));
        if (isThere(zypper))
            return m_run(
                with({zypper, "--non-interactive", "--no-refresh", "remove", "--no-clean-deps"},
                     removal.names));
        return m_run(with({rpm, "-e", "--"}, removal.names));
    case PackageFamily::Pacman: {
        std::vector<std::string> others;
        for (const std::string &name : removal.names) {
            if (std::find(removal.purge.begin(), removal.purge.end(), name) == removal.purge.end())
                others.push_back(name);
        }
        // What depends on the application goes before it.
        ToolOutput output{0, {}};
        if (!others.empty())
            output = m_run(with({pacman, "-R", "--noconfirm", "--"}, others));
        if (output.status == 0 && !removal.purge.empty())
            output = m_run(with({pacman, "-Rn", "--noconfirm", "--"}, removal.purge));
        return output;
    }
    }
    return {};
}

ToolOutput PackagesRemoval::actByDpkg(const PackageRemoval &removal) const {
    const ToolOutput output = m_run(with({dpkg, "--remove", "--"}, removal.names));
    // What could not be removed stays wanted away, and would go with whatever is done next.
    if (output.status != 0)
        m_run(with({"/bin/sh", "-c",
                    "dpkg-query -W -f '${binary:Package} ${db:Status-Status}\\n' -- \"$@\" | "
                    "sed -n 's/ installed$/ install/p' | dpkg --set-selections",
                    "sh"},
                   removal.names));
    return output;
}

ToolOutput PackagesRemoval::actByApt(const PackageRemoval &removal) const {
    std::string hook = m_hook + ' ' + std::string(verifyArgument);
    for (const std::string &name : removal.names)
        hook += ' ' + name;
    const auto wait = std::to_string(std::min(removal.lockSeconds, longestWait));
    return m_run(with({aptGet, "-y", "-q", "--no-auto-remove", "-o", "DPkg::Lock::Timeout=" + wait,
                       "-o", "Dpkg::Use-Pty=0", "-o", "DPkg::Pre-Install-Pkgs::=" + hook, "-o",
                       "DPkg::Tools::Options::" + m_hook + "::Version=3", "remove", "--"},
                      removal.names));
}

} // namespace brightsweep::helper
