#include "linux/SystemPlaces.h"

#include "foundation/PathBytes.h"
#include "linux/RemovalError.h"
#include "linux/VolumeSelection.h"

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace brightsweep {

namespace {

// Folders come and go; an answer may be that old.
constexpr std::chrono::milliseconds freshness(200);

enum class Kind {
    System,             ///< the system's own; no volume lies in it
    SystemWithChildren, ///< likewise, and none of its direct children goes either
    HomeParent,         ///< likewise, but homes lie in it
    RootHome,           ///< likewise, and itself a home
    MediaParent,        ///< volumes lie in it, wherever it is itself
    Place,              ///< keeps its place, no more
};

struct KeptPlace {
    std::string_view path;
    Kind kind = Kind::Place;
};

constexpr std::array keptPlaces = {
    KeptPlace{"/bin", Kind::System},
    KeptPlace{"/boot", Kind::SystemWithChildren},
    KeptPlace{"/dev", Kind::System},
    KeptPlace{"/efi", Kind::System},
    KeptPlace{"/etc", Kind::System},
    KeptPlace{"/home", Kind::HomeParent},
    KeptPlace{"/lib", Kind::System},
    KeptPlace{"/lib32", Kind::System},
    KeptPlace{"/lib64", Kind::System},
    KeptPlace{"/libx32", Kind::System},
    KeptPlace{"/media", Kind::MediaParent},
    KeptPlace{"/mnt", Kind::MediaParent},
    KeptPlace{"/nix", Kind::System},
    KeptPlace{"/opt"},
    KeptPlace{"/proc", Kind::System},
    KeptPlace{"/root", Kind::RootHome},
    KeptPlace{"/run", Kind::System},
    KeptPlace{"/run/media", Kind::MediaParent},
    KeptPlace{"/sbin", Kind::System},
    KeptPlace{"/snap", Kind::System},
    KeptPlace{"/srv"},
    KeptPlace{"/sys", Kind::System},
    KeptPlace{"/tmp"},
    KeptPlace{"/usr", Kind::SystemWithChildren},
    KeptPlace{"/usr/local/bin"},
    KeptPlace{"/usr/local/etc"},
    KeptPlace{"/usr/local/games"},
    KeptPlace{"/usr/local/include"},
    KeptPlace{"/usr/local/lib"},
    KeptPlace{"/usr/local/libexec"},
    KeptPlace{"/usr/local/man"},
    KeptPlace{"/usr/local/sbin"},
    KeptPlace{"/usr/local/share"},
    KeptPlace{"/usr/local/src"},
    KeptPlace{"/var", Kind::SystemWithChildren},
};

struct HomePlace {
    std::string_view path;
    /// The user's settings may put it elsewhere, and then tell so as a StandardFolder.
    bool isStandard = false;
};

constexpr std::array homePlaces = {
    HomePlace{".cache", true},
    HomePlace{".config", true},
    HomePlace{".gnupg"},
    HomePlace{".local"},
    HomePlace{".local/bin"},
    HomePlace{".local/share", true},
    HomePlace{".local/share/Trash", true},
    HomePlace{".local/share/Trash/files", true},
    HomePlace{".local/share/Trash/info"},
    HomePlace{".local/share/applications"},
    HomePlace{".local/state", true},
    HomePlace{".ssh"},
    HomePlace{"Applications"},
    HomePlace{"Desktop", true},
    HomePlace{"Documents", true},
    HomePlace{"Downloads", true},
    HomePlace{"Music", true},
    HomePlace{"Pictures", true},
    HomePlace{"Public", true},
    HomePlace{"Templates", true},
    HomePlace{"Videos", true},
};

template <typename Reach>
struct RootReach {
    std::string_view path;
    Reach reach;
};

// In these nothing goes by rights: records that others rely on.
constexpr std::array<std::string_view, 2> recordsOfOthers = {"/var/log/journal",
                                                             "/var/cache/debconf"};

bool isBefore(const Place &one, const Place &other) {
    return std::pair(one.device, one.inode) < std::pair(other.device, other.inode);
}

bool contains(const std::vector<Place> &places, const Place &place) {
    return std::find(places.begin(), places.end(), place) != places.end();
}

bool meets(const std::vector<Place> &chain, const std::vector<Place> &places) {
    return std::any_of(chain.begin(), chain.end(),
                       [&](const Place &place) { return contains(places, place); });
}

bool hasComponents(std::string_view path) {
    return path.find_first_not_of('/') != path.npos && path.starts_with('/');
}

} // namespace

SystemPlaces::SystemPlaces(const RemovalCaller &caller, std::shared_ptr<const MountSnapshot> mounts)
    : m_mounts(std::move(mounts)), m_user(caller.user) {
    addSystem({});
    if (hasComponents(caller.systemRoot))
        addSystem(std::string(paths::withoutTrailingSlashes(caller.systemRoot)));
    addHomes(caller);
    for (const auto *folders : {&caller.standardFolders, &caller.furtherFolders}) {
        for (const StandardFolder &folder : *folders)
            protect(folder.path, folder.role);
    }
    const std::string home = caller.homes.empty() ? std::string() : caller.homes.front();
    for (const SelectedVolume &volume : selectVolumes(m_mounts->all(), {caller.systemRoot, home})) {
        if (volume.mount.mountPoint == "/")
            continue;
        m_volumes.push_back(std::uint64_t(volume.mount.id));
    }
    std::sort(m_protected.begin(), m_protected.end(),
              [](const Protected &one, const Protected &other) {
                  return isBefore(one.place, other.place);
              });
}

void SystemPlaces::addSystem(const std::string &prefix) {
    protectChildren(prefix + "/");
    for (const KeptPlace &row : keptPlaces) {
        const std::string path = prefix + std::string(row.path);
        const Chain chain = chainOf(path);
        if (chain.empty())
            continue;
        protect(path, systemRole);
        if (row.kind == Kind::SystemWithChildren)
            protectChildren(path);
        if (row.kind == Kind::MediaParent)
            m_mediaParents.push_back(chain.front());
        if (row.kind == Kind::HomeParent)
            m_homeParents.push_back(chain.front());
        if (row.kind == Kind::RootHome)
            m_rootHomes.push_back(chain.front());
        if (row.kind == Kind::MediaParent || row.kind == Kind::Place)
            continue;
        m_system.push_back(chain.front());
        m_holdsSystem.insert(m_holdsSystem.end(), chain.begin() + 1, chain.end());
    }
    for (std::size_t row = 0; row < systemFolders.size(); ++row) {
        const std::string path = prefix + std::string(systemFolders[row].path);
        protect(path, roleOfSystemFolder(row));
        addRegion(path, Reach::Everything);
    }
    constexpr std::array reaches = {
        RootReach<Reach>{"/Applications", Reach::Everything},
        RootReach<Reach>{"/Developer/Applications", Reach::Everything},
        RootReach<Reach>{"/Network/Applications", Reach::Everything},
        RootReach<Reach>{"/opt", Reach::Everything},
        RootReach<Reach>{"/srv", Reach::Everything},
        RootReach<Reach>{"/usr/local", Reach::Everything},
        RootReach<Reach>{"/tmp", Reach::OwnedByCaller},
        RootReach<Reach>{"/var/tmp", Reach::OwnedByCaller},
        RootReach<Reach>{"/var/cache", Reach::RegularFiles},
        RootReach<Reach>{"/var/log", Reach::RegularFiles},
    };
    for (const auto &row : reaches)
        addRegion(prefix + std::string(row.path), row.reach);
    for (const std::string_view path : recordsOfOthers) {
        if (const Chain chain = chainOf(prefix + std::string(path)); !chain.empty())
            m_kept.push_back(chain.front());
    }
    const std::string archives = prefix + std::string(aptArchives);
    if (const Chain chain = chainOf(archives); !chain.empty())
        m_aptArchives.emplace_back(chain.front(), archives);
}

void SystemPlaces::addHomes(const RemovalCaller &caller) {
    std::vector<std::string> own = caller.homes;
    const std::vector<std::string> all = homesOfUsers();
    if (caller.ownsAllHomes)
        own.insert(own.end(), all.begin(), all.end());
    std::vector<Place> ownPlaces;
    for (const std::string &home : own) {
        const Chain chain = hasComponents(home) ? chainOf(home) : Chain();
        if (chain.empty() || contains(ownPlaces, chain.front()))
            continue;
        ownPlaces.push_back(chain.front());
        protect(home, systemRole);
        const bool isTold = &home == &own.front() && !caller.standardFolders.empty();
        for (const HomePlace &row : homePlaces) {
            if (!row.isStandard || !isTold)
                protect(std::string(paths::withoutTrailingSlashes(home)) + '/' +
                            std::string(row.path),
                        systemRole);
        }
        if (isOpenHome(chain))
            m_regions.push_back({chain.front(), Reach::Everything});
    }
    for (const std::string &home : all) {
        const Chain chain = chainOf(home);
        if (chain.empty() || contains(ownPlaces, chain.front()))
            continue;
        protect(home, systemRole);
        m_othersHomes.push_back(chain.front());
    }
}

SystemPlaces::Chain SystemPlaces::chainOf(const std::string &path) const {
    const auto place = openPlace(path);
    auto chain = place ? climb(place->get()) : Result<Chain>(place.error());
    return chain ? *std::move(chain) : Chain();
}

void SystemPlaces::addRegion(const std::string &path, Reach reach) {
    if (const Chain chain = chainOf(path); !chain.empty())
        m_regions.push_back({chain.front(), reach});
}

void SystemPlaces::protect(const std::string &path, int role) {
    const Chain chain = chainOf(path);
    for (std::size_t i = 0; i < chain.size(); ++i)
        m_protected.push_back({chain[i], i == 0 ? role : systemRole});
}

void SystemPlaces::protectChildren(const std::string &path) {
    struct Close {
        void operator()(DIR *stream) const { ::closedir(stream); }
    };
    protect(path, systemRole);
    const std::unique_ptr<DIR, Close> directory(::opendir(path.c_str()));
    while (const dirent *entry = directory ? ::readdir(directory.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        const bool mayBeFolder =
            entry->d_type == DT_DIR || entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN;
        if (!mayBeFolder || name == "." || name == "..")
            continue;
        const auto child = openPlace(path + '/' + std::string(name));
        const auto place = child ? placeOf(child->get()) : Result<Place>(child.error());
        if (place)
            m_protected.push_back({*place, childOfSystemRole});
    }
}

bool SystemPlaces::isProtected(std::uint64_t device, std::uint64_t inode, int except) const {
    const Protected wanted{{device, inode, 0}, 0};
    const auto [first, last] = std::equal_range(m_protected.begin(), m_protected.end(), wanted,
                                                [](const Protected &one, const Protected &other) {
                                                    return isBefore(one.place, other.place);
                                                });
    const bool mayBeChild = except >= roleOfSystemFolder(0);
    return std::any_of(first, last, [&](const Protected &row) {
        return row.role != except && !(mayBeChild && row.role == childOfSystemRole);
    });
}

// A protected folder on the way up that was reached by a mount which is not its own.
bool SystemPlaces::isAlias(const Chain &chain) const {
    return std::any_of(chain.begin(), chain.end(), [&](const Place &place) {
        const auto [first, last] =
            std::equal_range(m_protected.begin(), m_protected.end(), Protected{place, 0},
                             [](const Protected &one, const Protected &other) {
                                 return isBefore(one.place, other.place);
                             });
        return first != last && std::none_of(first, last, [&](const Protected &row) {
                   return row.place.mount == place.mount;
               });
    });
}

// A home counts where people's homes lie, or at least outside of what is the system's.
bool SystemPlaces::isOpenHome(const Chain &home) const {
    for (std::size_t i = 0; i < home.size(); ++i) {
        if (contains(m_rootHomes, home[i]) || (i > 0 && contains(m_homeParents, home[i])))
            return true;
        if (contains(m_system, home[i]))
            return false;
    }
    return !contains(m_holdsSystem, home.front());
}

bool SystemPlaces::isOnFurtherVolume(const Chain &chain) const {
    const std::uint64_t mount = chain.front().mount;
    if (std::find(m_volumes.begin(), m_volumes.end(), mount) == m_volumes.end())
        return false;
    std::size_t top = 0;
    while (top + 1 < chain.size() && chain[top + 1].mount == mount)
        ++top;
    if (contains(m_holdsSystem, chain[top]))
        return false;
    for (std::size_t i = top; i < chain.size(); ++i) {
        if (contains(m_mediaParents, chain[i]))
            return true;
        // A volume may well be mounted in a home.
        if (contains(m_system, chain[i]))
            return i > top && contains(m_homeParents, chain[i]);
    }
    return true;
}

std::error_code SystemPlaces::refusalForRoot(const std::vector<Place> &chain, std::string_view name,
                                             const struct stat &item) const {
    if (isProtected(item.st_dev, item.st_ino))
        return RemovalError::ProtectedPlace;
    const auto isKept = [&](const Place &place) {
        return place.device == item.st_dev && place.inode == item.st_ino;
    };
    if (chain.empty() || isAlias(chain) || meets(chain, m_kept) ||
        std::any_of(m_kept.begin(), m_kept.end(), isKept) || meets(chain, m_othersHomes) ||
        isAptReserved(chain.front(), name))
        return RemovalError::PartOfSystem;
    for (const Region &region : m_regions) {
        if (region.place.mount != chain.front().mount || !contains(chain, region.place))
            continue;
        if (region.reach == Reach::Everything ||
            (region.reach == Reach::OwnedByCaller && item.st_uid == m_user) ||
            (region.reach == Reach::RegularFiles && S_ISREG(item.st_mode)))
            return {};
    }
    return isOnFurtherVolume(chain) ? std::error_code() : RemovalError::PartOfSystem;
}

std::string SystemPlaces::aptArchivesOf(const std::vector<Place> &chain) const {
    for (const auto &[place, path] : m_aptArchives) {
        if (contains(chain, place))
            return path;
    }
    return {};
}

bool SystemPlaces::isAptReserved(const Place &directory, std::string_view name) const {
    return std::find(aptReserved.begin(), aptReserved.end(), name) != aptReserved.end() &&
           std::any_of(m_aptArchives.begin(), m_aptArchives.end(),
                       [&](const auto &archives) { return archives.first.isSameFile(directory); });
}

std::shared_ptr<const SystemPlaces>
RecentPlaces::get(const std::function<RemovalCaller()> &caller,
                  const std::shared_ptr<const MountSnapshot> &mounts) {
    const auto now = std::chrono::steady_clock::now();
    if (!m_places || m_places->mounts() != mounts || now - m_madeAt > freshness) {
        m_places = std::make_shared<const SystemPlaces>(caller(), mounts);
        m_madeAt = now;
    }
    return m_places;
}

bool isAptAtWork(const std::string &archives) {
    if (archives.empty())
        return false;
    const FileDescriptor file(
        ::open((archives + "/lock").c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return file && ::fcntl(file.get(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

std::vector<std::string> homesOfUsers() {
    constexpr uid_t firstPerson = 1000;
    constexpr uid_t nobody = 65534;
    struct Close {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };
    std::vector<std::string> homes;
    const std::unique_ptr<std::FILE, Close> file(std::fopen("/etc/passwd", "re"));
    while (const passwd *entry = file ? ::fgetpwent(file.get()) : nullptr) {
        const bool isPerson =
            entry->pw_uid == 0 || (entry->pw_uid >= firstPerson && entry->pw_uid != nobody);
        if (isPerson && hasComponents(entry->pw_dir))
            homes.emplace_back(entry->pw_dir);
    }
    return homes;
}

} // namespace brightsweep
