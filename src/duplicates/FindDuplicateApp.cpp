#include "duplicates/FindDuplicateApp.h"

#include "duplicates/ContentReader.h"
#include "duplicates/FileListWalk.h"
#include "duplicates/ReadingThreads.h"
#include "duplicates/SameFiles.h"
#include "foundation/Paths.h"
#include "platform/FileIdentity.h"
#include "platform/Platform.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <tuple>
#include <utility>

namespace brightsweep {

namespace {

// How far the members of two bundles are compared; each step needs them read as far.
enum class Step { Sizes, Heads, Wholes };

using Key = std::tuple<std::uint64_t, std::uint64_t, std::uint64_t>;

std::vector<Key> keysOf(const AppAttrbItem &bundle, Step step) {
    std::vector<Key> keys;
    keys.reserve(bundle.AllFileInDirectory.size());
    for (const auto &file : bundle.AllFileInDirectory)
        keys.emplace_back(file->fileSize, step >= Step::Heads ? file->md5_1k : 0,
                          step >= Step::Wholes ? file->md5 : 0);
    std::sort(keys.begin(), keys.end());
    return keys;
}

// Leaves the bundles that are equal to the item as far as the step goes.
void keepEqual(AppList &bundles, const AppAttrbItem &item, Step step) {
    const auto keys = keysOf(item, step);
    std::erase_if(bundles, [&](const auto &bundle) {
        return !item.isReadable || !bundle->isReadable ||
               bundle->AllFileInDirectory.size() != keys.size() || keysOf(*bundle, step) != keys;
    });
}

// An empty member has no contents to read, whatever its rights.
bool hasContents(const fileAttrbItem &file) {
    return file.kind != fileAttrbItem::Kind::File || file.fileSize > 0;
}

// Below this many files, helpers cost more than they bring.
constexpr std::size_t aloneUpTo = 32;

} // namespace

FindDuplicateApp::FindDuplicateApp(unsigned threads)
    : m_files(*Platform::current().files), m_threads(readingThreads(threads)) {}

void FindDuplicateApp::FindAppInArray(const std::vector<std::string> &directories,
                                      std::vector<AppList> &outArray) {
    FindAppInArray(directories, [&](AppList group) { outArray.push_back(std::move(group)); });
}

void FindDuplicateApp::FindAppInArray(const std::vector<std::string> &directories,
                                      const std::function<void(AppList group)> &found) {
    m_AppCount = directories.size();
    InitInputAppDirectory(directories);
    while (!m_AllAppItem.empty() && !m_StopSearch) {
        const auto item = m_AllAppItem.front();
        setCurrentSearchFile(item->DirectoryPathName);
        m_AllAppItem.erase(m_AllAppItem.begin());
        AppList group;
        if (getDuplicateAppDirInArray(m_AllAppItem, item, group)) {
            std::erase_if(m_AllAppItem, [&](const auto &bundle) {
                return std::find(group.begin(), group.end(), bundle) != group.end();
            });
            found(std::move(group));
        }
        std::erase_if(m_AllAppItem, [](const auto &bundle) { return bundle->isRepeated; });
        m_progress = std::uint32_t(m_AllAppItem.size() * 100 / m_AppCount);
    }
}

void FindDuplicateApp::InitInputAppDirectory(const std::vector<std::string> &directories) {
    std::set<FileIdentity> known;
    for (const std::string &path : directories) {
        if (m_StopSearch)
            break;
        auto item = std::make_shared<AppAttrbItem>();
        item->DirectoryPathName = path;
        item->DirectoryName = paths::lastComponent(path);
        const auto attributes = m_files.attributesFollowing(path);
        if (!attributes)
            continue;
        item->device = attributes->device;
        item->inode = attributes->inode;
        if (known.insert({item->device, item->inode}).second && getAllFilePathName(path, *item))
            m_AllAppItem.push_back(std::move(item));
    }
}

bool FindDuplicateApp::getAllFilePathName(const std::string &path, AppAttrbItem &item) {
    FileListWalk walk(m_files, {.collect = FileListWalk::Collect::Members,
                                .threads = m_threads,
                                .stop = &m_StopSearch,
                                .passedOver = m_passedOver});
    // What lies in a folder that cannot be read is not known to be equal to anything.
    if (walk.walkFolder(path) || walk.hasFailures() || m_StopSearch)
        return false;
    FileListWalk::Finds finds;
    finds.candidate = [&](std::shared_ptr<fileAttrbItem> file) {
        item.DirectorySize += file->fileSize;
        item.AllFileInDirectory.push_back(std::move(file));
    };
    walk.giveOut(finds);
    setCurrentSearchFile({});
    return true;
}

bool FindDuplicateApp::getSameSizeDirInArray(const AppList &list, const AppAttrbItem &item,
                                             AppList &outResult) {
    for (const auto &bundle : list) {
        if (bundle->DirectorySize == item.DirectorySize)
            outResult.push_back(bundle);
    }
    return !outResult.empty();
}

bool FindDuplicateApp::CompareDir(const std::shared_ptr<AppAttrbItem> &item,
                                  const std::shared_ptr<AppAttrbItem> &other) {
    if (!item || !other || item->AllFileInDirectory.size() != other->AllFileInDirectory.size())
        return false;
    AppList both = {item, other};
    readHeads(both);
    readWholes(both);
    keepEqual(both, *item, Step::Wholes);
    return !m_StopSearch && both.size() == 2;
}

// Reads in steps, so that a bundle is read only as far as another one still looks the same.
bool FindDuplicateApp::getDuplicateAppDirInArray(const AppList &list,
                                                 const std::shared_ptr<AppAttrbItem> &item,
                                                 AppList &outArray) {
    AppList alike;
    if (!getSameSizeDirInArray(list, *item, alike))
        return false;
    alike.push_back(item);
    keepEqual(alike, *item, Step::Sizes);
    if (alike.size() < 2)
        return false;
    readHeads(alike);
    keepEqual(alike, *item, Step::Heads);
    if (alike.size() < 2)
        return false;
    readWholes(alike);
    keepEqual(alike, *item, Step::Wholes);
    // A stop leaves not even the item itself.
    if (alike.empty())
        return false;
    dropSharing(alike);
    // A pass cut short yields nothing.
    if (alike.size() < 2 || m_StopSearch)
        return false;
    outArray.insert(outArray.end(), alike.begin(), alike.end());
    return true;
}

// Leaves of those that share a file, by a mount or by a link of one into the other, the one found
// first: what goes with one must not go from another. Two links to a file elsewhere share nothing.
// The last of the list was found first.
void FindDuplicateApp::dropSharing(AppList &bundles) {
    struct Member {
        const fileAttrbItem *file;
        std::size_t bundle; // in the order of being found
    };
    AppList inOrder = {bundles.back()};
    inOrder.insert(inOrder.end(), bundles.begin(), bundles.end() - 1);
    std::vector<Member> members;
    for (std::size_t i = 0; i < inOrder.size(); ++i) {
        for (const auto &file : inOrder[i]->AllFileInDirectory)
            members.push_back({file.get(), i});
    }
    const auto inode = [](const Member &member) {
        return std::tie(member.file->device, member.file->inode);
    };
    std::stable_sort(members.begin(), members.end(),
                     [&](const Member &a, const Member &b) { return inode(a) < inode(b); });

    // What each bundle holds of the files that more than one may hold, by their numbers.
    std::vector<std::vector<std::pair<std::size_t, bool>>> held(inOrder.size());
    std::size_t files = 0;
    for (auto begin = members.begin(), end = begin; begin != members.end(); begin = end) {
        end = std::find_if(begin, members.end(),
                           [&](const Member &member) { return inode(member) != inode(*begin); });
        if (begin->bundle == end[-1].bundle)
            continue;
        std::vector<const fileAttrbItem *> items;
        std::transform(begin, end, std::back_inserter(items),
                       [](const Member &member) { return member.file; });
        const auto kept = SameFiles(m_files, m_StopSearch).keptFor(items);
        for (std::size_t i = 0; i < items.size(); ++i)
            held[begin[std::ptrdiff_t(i)].bundle].emplace_back(
                files + kept[i], items[i]->kind == fileAttrbItem::Kind::Link);
        files += items.size();
    }
    enum class Holder : std::uint8_t { None, Link, Itself };
    std::vector<Holder> holders(files, Holder::None); // of those that stay
    for (std::size_t i = 0; i < inOrder.size(); ++i) {
        inOrder[i]->isRepeated = std::any_of(held[i].begin(), held[i].end(), [&](const auto &file) {
            return holders[file.first] == Holder::Itself ||
                   (holders[file.first] == Holder::Link && !file.second);
        });
        for (const auto &[file, isLink] : held[i]) {
            if (!inOrder[i]->isRepeated)
                holders[file] = std::max(holders[file], isLink ? Holder::Link : Holder::Itself);
        }
    }
    std::erase_if(bundles, [](const auto &bundle) { return bundle->isRepeated; });
}

void FindDuplicateApp::readHeads(const AppList &bundles) {
    readMembers(bundles, [](ContentReader &reader, fileAttrbItem &file) {
        if (file.md5_1k != 0)
            return true;
        const auto block = reader.firstBlock(file);
        if (!block)
            return false;
        file.md5_1k = block->md5_1k;
        file.md5 = block->md5.value_or(0);
        return true;
    });
}

void FindDuplicateApp::readWholes(const AppList &bundles) {
    readMembers(bundles, [](ContentReader &reader, fileAttrbItem &file) {
        if (file.md5 != 0)
            return true;
        const auto value = reader.wholeFile(file);
        if (!value)
            return false;
        file.md5 = *value;
        return true;
    });
}

template <typename Read>
void FindDuplicateApp::readMembers(const AppList &bundles, Read read) {
    struct Task {
        fileAttrbItem *file;
        AppAttrbItem *bundle;
        bool failed;
    };
    std::vector<Task> tasks;
    for (const auto &bundle : bundles) {
        for (const auto &file : bundle->AllFileInDirectory) {
            if (hasContents(*file))
                tasks.push_back({file.get(), bundle.get(), false});
        }
    }
    std::atomic<std::size_t> next{0};
    const unsigned threads = tasks.size() > aloneUpTo ? m_threads : 1;
    runOnThreads(threads, m_files, m_StopSearch, [&](ContentReader &reader) {
        for (std::size_t i = next++; i < tasks.size() && !m_StopSearch; i = next++)
            tasks[i].failed = !read(reader, *tasks[i].file);
    });
    for (const Task &task : tasks) {
        if (task.failed)
            task.bundle->isReadable = false;
    }
}

std::string FindDuplicateApp::m_CurrentSearchFile() const {
    const std::lock_guard lock(m_mutex);
    return m_currentSearchFile;
}

void FindDuplicateApp::setCurrentSearchFile(const std::string &path) {
    const std::lock_guard lock(m_mutex);
    m_currentSearchFile = path;
}

} // namespace brightsweep
