#include "duplicates/FileFacts.h"

#include "foundation/Paths.h"
#include "linux/Mounts.h"
#include "linux/Place.h"
#include "linux/VolumeSelection.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"

#include <algorithm>
#include <string_view>

namespace brightsweep {

namespace {

constexpr std::size_t textRead = 8 * 1024;
constexpr std::size_t mostLines = 40;
constexpr std::size_t longestSequence = 4; // of UTF-8

// Told by the mount of its folder, so that no server is asked.
Result<bool> isOnOwnDisk(const std::filesystem::path &path) {
    const auto folder = openPlace(paths::parent(path).native());
    const auto place = folder ? placeOf(folder->get()) : Result<Place>(folder.error());
    if (!place)
        return place.error();
    const auto mounts = ownMounts().currentWith(place->mount);
    const Mount *const mount = mounts->find(place->mount);
    return mount && !asksOthers(mount->type);
}

// Text is UTF-8 without control characters of a binary file; a character may be cut at the end.
bool isText(std::string_view bytes) {
    if (bytes.find('\0') != std::string_view::npos)
        return false;
    for (std::size_t cut = 0; cut < std::min(longestSequence, bytes.size()); ++cut) {
        if (paths::isValidUtf8(bytes.substr(0, bytes.size() - cut)))
            return true;
    }
    return false;
}

std::vector<std::string> linesOf(std::string_view bytes) {
    std::vector<std::string> lines;
    while (!bytes.empty() && lines.size() < mostLines) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        std::string_view line = bytes.substr(0, end);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        std::string &shown = lines.emplace_back();
        for (const char each : line)
            shown.append(each == '\t' ? std::string("    ") : std::string(1, each));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    return lines;
}

// Where each component begins, with the slash in front of it.
std::vector<std::size_t> componentsOf(const std::string &path) {
    std::vector<std::size_t> starts;
    for (std::size_t at = 0; at < path.size(); ++at) {
        if (path[at] == '/')
            starts.push_back(at);
    }
    starts.push_back(path.size());
    return starts;
}

std::string_view component(const std::string &path, const std::vector<std::size_t> &starts,
                           std::size_t number) {
    return std::string_view(path).substr(starts[number], starts[number + 1] - starts[number]);
}

} // namespace

FileFacts factsOf(const std::filesystem::path &path) {
    FileFacts facts;
    const auto isOwn = isOnOwnDisk(path);
    // Of what cannot be reached nothing is known, least of all that it is elsewhere.
    facts.isLocal = !isOwn || *isOwn;
    if (!isOwn || !*isOwn)
        return facts;
    FileOperations &files = *Platform::current().files;
    const auto file = files.openFile(path);
    const auto attributes =
        file ? files.fileAttributes(*file) : Result<FileAttributes>(file.error());
    if (!attributes)
        return facts;
    facts.isFile = true;
    facts.size = attributes->size;
    facts.stored = attributes->stored;
    facts.links = attributes->links;
    facts.modified = attributes->modified;
    if (const auto unshared = files.unsharedBytes(*file))
        facts.unshared = *unshared;
    std::string begin(std::min<std::uint64_t>(textRead, facts.size), '\0');
    const auto read = files.readAt(*file, begin.data(), begin.size(), 0);
    begin.resize(read ? *read : 0);
    if (isText(begin))
        facts.lines = linesOf(begin);
    return facts;
}

PathDifference differenceOf(const std::vector<std::string> &paths) {
    std::vector<std::vector<std::size_t>> starts;
    std::size_t fewest = std::string::npos;
    for (const std::string &path : paths) {
        starts.push_back(componentsOf(path));
        fewest = std::min(fewest, starts.back().size() - 1);
    }
    const auto allAgree = [&](const auto &numberOf) {
        const auto wanted = component(paths.front(), starts.front(), numberOf(0));
        for (std::size_t i = 1; i < paths.size(); ++i) {
            if (component(paths[i], starts[i], numberOf(i)) != wanted)
                return false;
        }
        return true;
    };
    // The name itself is never part of what all begin with.
    std::size_t before = 0;
    while (before + 1 < fewest && allAgree([&](std::size_t) { return before; }))
        ++before;
    std::size_t behind = 0;
    while (paths.size() > 1 && before + behind < fewest &&
           allAgree([&](std::size_t i) { return starts[i].size() - 2 - behind; }))
        ++behind;
    PathDifference difference;
    difference.common = paths.front().substr(0, starts.front()[before] + 1);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const std::size_t begin = starts[i][before];
        const std::size_t end = starts[i][starts[i].size() - 1 - behind];
        const std::size_t slash = end > begin ? 1 : 0;
        difference.paths.push_back({paths[i].substr(begin + slash, end - begin - slash),
                                    paths[i].substr(slash ? end : end + 1)});
    }
    if (paths.size() == 1)
        difference.paths.front() = {{}, difference.paths.front().differs};
    return difference;
}

} // namespace brightsweep
