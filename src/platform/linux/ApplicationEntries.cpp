#include "platform/linux/ApplicationEntries.h"

#include "foundation/Paths.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace brightsweep {

namespace {

bool isAboutSettings(const NamedEntry &entry) {
    const auto categories = entry.entry->list("Categories");
    return std::find(categories.begin(), categories.end(), "Settings") != categories.end() ||
           entry.id.find("settings") != entry.id.npos ||
           entry.id.find("preferences") != entry.id.npos;
}

bool isNamed(const NamedEntry &entry, const std::string &wanted) {
    return entry.id == wanted || entry.id.ends_with("." + wanted);
}

bool startsNamed(const NamedEntry &entry, const std::string &wanted) {
    return paths::lastComponent(entry.program) == wanted;
}

} // namespace

void describeByEntries(InstalledApplication &application, const std::vector<NamedEntry> &entries,
                       const std::string &wanted) {
    if (entries.empty())
        return;
    auto main = std::find_if(entries.begin(), entries.end(),
                             [&](const auto &entry) { return isNamed(entry, wanted); });
    if (main == entries.end())
        main = std::find_if(entries.begin(), entries.end(),
                            [&](const auto &entry) { return startsNamed(entry, wanted); });
    if (main == entries.end())
        main = std::find_if_not(entries.begin(), entries.end(), isAboutSettings);
    if (main == entries.end())
        main = entries.begin();
    const auto locales = messageLocales();
    const auto add = [&](const NamedEntry &entry) {
        application.ids.push_back(entry.id);
        if (!entry.program.empty() &&
            std::find(application.programs.begin(), application.programs.end(), entry.program) ==
                application.programs.end())
            application.programs.push_back(entry.program);
    };
    add(*main);
    if (std::string name = main->entry->localeString("Name", locales); !name.empty())
        application.name = std::move(name);
    application.icon = main->entry->localeString("Icon", locales);
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (entry == main)
            continue;
        add(*entry);
        application.otherEntries.push_back(entry->entry->localeString("Name", locales));
    }
}

std::filesystem::path realPath(const std::filesystem::path &path) {
    std::error_code error;
    std::filesystem::path place = std::filesystem::canonical(path, error);
    return error ? std::filesystem::path() : place;
}

std::int64_t madeAt(const std::filesystem::path &path) {
    struct statx status;
    if (::statx(AT_FDCWD, path.c_str(), AT_STATX_DONT_SYNC | AT_SYMLINK_NOFOLLOW,
                STATX_BTIME | STATX_MTIME, &status) != 0)
        return 0;
    return status.stx_mask & STATX_BTIME ? status.stx_btime.tv_sec : status.stx_mtime.tv_sec;
}

bool isUsersOwn(const std::filesystem::path &path) {
    struct stat status;
    return ::lstat(path.c_str(), &status) == 0 && status.st_uid == ::geteuid() &&
           ::faccessat(AT_FDCWD, paths::parent(path).c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

} // namespace brightsweep
