#include "linux/PackageDatabase.h"

#include "foundation/FileDescriptor.h"
#include "linux/DpkgDatabase.h"
#include "linux/PacmanDatabase.h"
#include "linux/RpmDatabase.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace brightsweep {

namespace {

constexpr off_t largestFile = off_t(256) << 20;
constexpr std::string_view usr = "/usr";
// Where "/usr" is merged these are links into it, and either name may stand in a list.
constexpr std::array<std::string_view, 7> mergedFolders = {
    "/bin/", "/sbin/", "/lib/", "/lib32/", "/lib64/", "/libx32/", "/libo32/"};
// What takes more rounds than that is a chain that half of the system hangs on.
constexpr int mostRounds = 16;

} // namespace

PackageDatabase::~PackageDatabase() = default;

std::unique_ptr<PackageDatabase> PackageDatabase::open(const std::string &root, ToolRunner run) {
    // dpkg before rpm: Debian's machines often have rpm's database too, and pacman's.
    std::array<std::unique_ptr<PackageDatabase>, 3> families = {
        std::make_unique<DpkgDatabase>(root, run), std::make_unique<RpmDatabase>(root, run),
        std::make_unique<PacmanDatabase>(root, run)};
    for (auto &family : families) {
        if (!family->locate())
            continue;
        family->m_stampWhenRead = family->stamp();
        if (family->load())
            return std::move(family);
    }
    return nullptr;
}

bool PackageDatabase::isInstalled(const std::string &name) {
    const PackageRecord *record = find(name);
    return record && record->isInstalled;
}

PackageClosure closureOf(PackageDatabase &database, const std::string &name) {
    PackageClosure closure;
    closure.names = {name};
    std::unordered_set<std::string> known = {name};
    for (int round = 0; round < mostRounds; ++round) {
        const DryRun run = database.dryRun(closure.names);
        if (run.passes) {
            closure.end = PackageClosure::End::Complete;
            return closure;
        }
        bool hasGrown = false;
        for (const std::string &dependent : run.dependents) {
            if (known.insert(dependent).second) {
                closure.names.push_back(dependent);
                hasGrown = true;
            }
        }
        if (!hasGrown) {
            closure.words = run.words;
            return closure;
        }
        if (closure.names.size() > maximumPackages)
            break;
    }
    closure.end = PackageClosure::End::TooMany;
    return closure;
}

std::string stampOf(const std::string &path) {
    struct stat status;
    if (::stat(path.c_str(), &status) != 0)
        return {};
    return std::to_string(status.st_ino) + ' ' + std::to_string(status.st_size) + ' ' +
           std::to_string(status.st_mtim.tv_sec) + ' ' + std::to_string(status.st_mtim.tv_nsec) +
           '\n';
}

std::string otherNameOf(std::string_view path) {
    const bool isBelowUsr = path.starts_with("/usr/");
    const std::string_view plain = isBelowUsr ? path.substr(usr.size()) : path;
    const bool isMerged =
        std::any_of(mergedFolders.begin(), mergedFolders.end(),
                    [&](std::string_view folder) { return plain.starts_with(folder); });
    if (!isMerged)
        return {};
    return isBelowUsr ? std::string(plain) : std::string(usr) + std::string(path);
}

bool readDatabaseFile(int directory, const char *name, std::string &text) {
    text.clear();
    const FileDescriptor file(
        ::openat(directory, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status;
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > largestFile)
        return false;
    text.resize(std::size_t(status.st_size));
    std::size_t got = 0;
    while (got < text.size()) {
        const ssize_t count = ::read(file.get(), text.data() + got, text.size() - got);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        got += std::size_t(count);
    }
    text.resize(got);
    return true;
}

WantedPaths::WantedPaths(const PathSet &paths) {
    // The views stay valid: neither the set nor the vector grows any more.
    m_otherNames.reserve(paths.size());
    for (const std::string &path : paths) {
        m_wanted.emplace(path, &path);
        if (std::string other = otherNameOf(path); !other.empty())
            m_wanted.emplace(m_otherNames.emplace_back(std::move(other)), &path);
    }
}

} // namespace brightsweep
