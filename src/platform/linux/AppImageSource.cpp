#include "platform/linux/AppImageSource.h"

#include "foundation/FileDescriptor.h"
#include "foundation/Identity.h"
#include "foundation/LowerCase.h"
#include "foundation/Paths.h"
#include "platform/linux/ApplicationEntries.h"
#include "platform/linux/GivesMemoryBack.h"
#include "platform/linux/OwnPlaces.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <map>

namespace brightsweep {

namespace {

using std::filesystem::path;

std::vector<path> searchedFolders() {
    const path home = homeFolder();
    return {paths::join(home, "Applications"), paths::join(home, "AppImages"),
            paths::join(home, ".local/bin"),   paths::join(home, "bin"),
            systemPath("/Applications"),       systemPath("/opt")};
}

struct NameAndVersion {
    std::string name;
    std::string version;
};

// "Krita-5.2.0-x86_64.AppImage", "krita_5.2.AppImage": the version begins with a digit and has a
// point in it; what follows is the machine.
NameAndVersion readName(std::string_view file) {
    constexpr std::string_view ending = ".appimage";
    if (file.size() > ending.size() && lowerCase(file).ends_with(ending))
        file.remove_suffix(ending.size());
    NameAndVersion read{std::string(file), {}};
    for (auto i = file.find_first_of("-_ "); i != file.npos; i = file.find_first_of("-_ ", i + 1)) {
        std::string_view word = file.substr(i + 1, file.find_first_of("-_ ", i + 1) - i - 1);
        if (word.starts_with('v'))
            word.remove_prefix(1);
        if (word.empty() || word.front() < '0' || word.front() > '9' || word.find('.') == word.npos)
            continue;
        read.name = file.substr(0, i);
        read.version = word;
        break;
    }
    return read;
}

} // namespace

bool isAppImage(const path &file) {
    const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status;
    char bytes[11];
    return opened && ::fstat(opened.get(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::pread(opened.get(), bytes, sizeof bytes, 0) == ssize_t(sizeof bytes) &&
           std::memcmp(bytes, "\177ELF", 4) == 0 && bytes[8] == 'A' && bytes[9] == 'I' &&
           (bytes[10] == 1 || bytes[10] == 2);
}

Result<std::vector<InstalledApplication>> AppImageSource::applications() {
    const GivesMemoryBack givesBack;
    const auto entries = readDesktopEntries();
    // By what they are, each once; a link to one is only a name of it.
    std::map<path, std::vector<NamedEntry>> images;
    for (const DesktopEntryFile &file : entries) {
        if (file.program.empty() || file.entry.has("X-Flatpak"))
            continue;
        const path program = realPath(file.program);
        if (!program.empty() && isAppImage(program))
            images[program].push_back({file.id, &file.entry, program.native()});
    }
    for (const path &folder : searchedFolders()) {
        std::error_code error;
        for (std::filesystem::directory_iterator i(folder, error), end; !error && i != end;
             i.increment(error)) {
            std::error_code unknown;
            if (i->symlink_status(unknown).type() == std::filesystem::file_type::regular &&
                isAppImage(i->path()))
                images.try_emplace(realPath(i->path()));
        }
    }
    std::unordered_set<std::string> asked;
    for (const auto &[file, named] : images)
        asked.insert(file.native());
    const auto packaged = owned(asked);
    std::vector<InstalledApplication> found;
    for (const auto &[file, named] : images) {
        struct stat status;
        if (packaged.contains(file.native()) || ::stat(file.c_str(), &status) != 0)
            continue;
        const auto [name, version] = readName(file.filename().native());
        InstalledApplication application;
        application.kind = ApplicationKind::AppImage;
        application.key = file.native();
        application.userOwned = isUsersOwn(file);
        application.name = name;
        application.version = version;
        application.path = file;
        application.installed = madeAt(file);
        application.bytes = std::uint64_t(status.st_size);
        describeByEntries(application, named, name);
        for (const NamedEntry &entry : named) {
            if (std::string given = entry.entry->string("X-AppImage-Version"); !given.empty())
                application.version = std::move(given);
        }
        found.push_back(std::move(application));
    }
    return found;
}

std::vector<path> AppImageSource::watched() const {
    auto folders = searchedFolders();
    const auto entries = OwnFilesSource::watched();
    folders.insert(folders.end(), entries.begin(), entries.end());
    return folders;
}

} // namespace brightsweep
