#include "duplicates/FileListWalk.h"

#include "foundation/Paths.h"

#include <algorithm>
#include <array>
#include <utility>

namespace brightsweep {

namespace {

std::string joined(const std::string &directory, std::string_view name) {
    std::string path;
    path.reserve(directory.size() + 1 + name.size());
    path = directory;
    if (!path.ends_with('/'))
        path += '/';
    return path += name;
}

FileTime fileTime(std::int64_t nanoseconds) {
    return FileTime(std::chrono::nanoseconds(nanoseconds));
}

// Items come from small arrays, which live as long as one of their items: an allocation for each
// would take longer than reading its entry. Each thread has an array of its own.
std::shared_ptr<fileAttrbItem> newItem() {
    using Array = std::array<fileAttrbItem, 16>;
    thread_local std::shared_ptr<Array> array;
    thread_local std::size_t used = 0;
    if (!array) {
        array = std::make_shared<Array>();
        used = 0;
    }
    fileAttrbItem *item = &(*array)[used++];
    if (used == array->size())
        return {std::move(array), item};
    return {array, item};
}

std::shared_ptr<fileAttrbItem> makeItem(std::string path, const DirectoryEntry &entry) {
    auto item = newItem();
    item->filePathName = std::move(path);
    item->fileSize = entry.size;
    item->ModificationDate = fileTime(entry.modified);
    item->changed = entry.changed;
    item->device = entry.device;
    item->inode = entry.inode;
    item->stored = entry.stored;
    item->links = std::uint32_t(entry.links);
    item->kind = entry.type == EntryType::File   ? fileAttrbItem::Kind::File
                 : entry.type == EntryType::Link ? fileAttrbItem::Kind::Link
                                                 : fileAttrbItem::Kind::Special;
    return item;
}

} // namespace

FileListWalk::FileListWalk(FileOperations &files, Rules rules)
    : m_files(files), m_rules(std::move(rules)) {}

bool FileListWalk::isBundleName(std::string_view name) {
    const auto point = name.rfind('.');
    if (point == name.npos || point == 0 || name.size() - point != 4)
        return false;
    const auto upper = [](char letter) {
        return letter >= 'a' && letter <= 'z' ? char(letter - 'a' + 'A') : letter;
    };
    return upper(name[point + 1]) == 'A' && upper(name[point + 2]) == 'P' &&
           upper(name[point + 3]) == 'P';
}

std::string FileListWalk::bundlePrefix(std::string_view path) {
    std::string prefix = path.starts_with('/') ? "/" : "";
    while (!path.empty()) {
        const auto name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(path.size(), name.size() + 1));
        if (name.empty())
            continue;
        prefix = prefix.empty() ? std::string(name) : joined(prefix, name);
        if (isBundleName(name))
            return prefix;
    }
    return {};
}

bool FileListWalk::isHidden(std::string_view path) {
    return path.starts_with('.') || path.find("/.") != path.npos;
}

std::error_code
FileListWalk::walkRoot(const std::string &root,
                       const std::function<void(const std::string &path)> &missing) {
    auto directory = m_files.openDirectory(root);
    if (!directory)
        return directory.error();
    m_rootDirectory = std::make_shared<const OpenDirectory>(std::move(*directory));
    m_rootIsHidden = isHidden(root);
    std::string prefix = bundlePrefix(root);
    m_root = newFolder(prefix.empty() ? nullptr : newBundle(std::move(prefix)));
    m_root->isStart = true;
    DirectoryBlock block;
    do {
        if (const auto error =
                m_files.readBlock(*m_rootDirectory, block, WantedAttributes::NonDirectories))
            return error;
        for (const DirectoryEntry &entry : block.entries())
            addTopEntry(joined(root, entry.nameView()), entry, missing);
    } while (!block.atEnd() && !stopped());
    run();
    return {};
}

std::error_code FileListWalk::walkFolder(const std::string &folder) {
    auto directory = m_files.openDirectory(folder);
    if (!directory)
        return directory.error();
    m_rootDirectory = std::make_shared<const OpenDirectory>(std::move(*directory));
    m_root = newFolder(nullptr);
    m_root->isStart = true;
    m_root->path = folder;
    run();
    return {};
}

void FileListWalk::run() {
    DirectoryWalk walk(m_files, *this,
                       {.wanted = WantedAttributes::NonDirectories,
                        .threads = m_rules.threads,
                        .stop = m_rules.stop});
    m_walk = &walk;
    if (m_starts.empty() && !m_root->path.empty())
        walk.addRoot(m_rootDirectory, m_root);
    walk.run();
    m_walk = nullptr;
    m_rootDirectory.reset();
}

// -- The first level

// Links are not told from what they lead to here: one to a directory is walked under its own path,
// one to a file is a candidate by the size of the link itself.
void FileListWalk::addTopEntry(const std::string &path, const DirectoryEntry &entry,
                               const std::function<void(const std::string &path)> &missing) {
    EntryType type = entry.type;
    DirectoryEntry found = entry;
    if (type != EntryType::Directory && !entry.hasAttributes)
        type = EntryType::Unknown;
    if (type == EntryType::Link) {
        const auto target = m_files.attributesFollowing(path);
        type = target ? target->type : EntryType::Unknown;
        if (target) {
            found.device = target->device;
            found.inode = target->inode;
        }
    }
    if (type == EntryType::Unknown) {
        missing(path);
        return;
    }
    const bool passesHidden = m_rules.hidden || (!m_rootIsHidden && entry.name[0] != '.');
    if (type == EntryType::Directory) {
        if (!passesHidden || (m_rules.skipsTopDirectory && m_rules.skipsTopDirectory(path)))
            return;
        Bundle *bundle = m_root->bundle;
        if (!bundle && isBundleName(entry.nameView()))
            bundle = newBundle(path);
        Folder *start = newFolder(bundle);
        start->isStart = true;
        start->path = path;
        start->followsLink = entry.type == EntryType::Link;
        m_root->finds.emplace_back(start);
        m_starts.push_back(start);
    } else if (m_rules.collect != Collect::Candidates || passesHidden) {
        addFile(*m_root, path, found);
    }
}

bool FileListWalk::nextRoot(DirectoryWalk &walk) {
    while (m_nextStart < m_starts.size()) {
        Folder *start = m_starts[m_nextStart++];
        if (!start->followsLink) {
            walk.addRoot(m_rootDirectory, paths::lastComponent(start->path), start);
            return true;
        }
        auto directory = m_files.openDirectory(start->path);
        if (directory) {
            walk.addRoot(std::make_shared<const OpenDirectory>(std::move(*directory)), start);
            return true;
        }
        fail(*start, start->path, directory.error());
    }
    return false;
}

// -- Below it

void FileListWalk::entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) {
    if (isPassedOver(directory))
        return;
    Folder &folder = *static_cast<Folder *>(directory.context());
    const std::string path = pathOf(directory);
    if (!std::exchange(folder.isShown, true) && m_rules.current)
        m_rules.current(path);
    for (const DirectoryEntry &entry : block.entries()) {
        if (m_rules.collect == Collect::Candidates && !m_rules.hidden && entry.name[0] == '.')
            continue;
        if (entry.type == EntryType::Directory) {
            Bundle *bundle = folder.bundle;
            if (!bundle && m_rules.collect == Collect::Candidates && isBundleName(entry.nameView()))
                bundle = newBundle(joined(path, entry.nameView()));
            Folder *child = newFolder(bundle);
            if (m_rules.collect == Collect::Paths || m_rules.collect == Collect::Names)
                child->path = joined(path, entry.nameView());
            folder.finds.emplace_back(child);
            m_walk->enter(directory, entry.nameView(), child);
        } else if (!entry.hasAttributes) {
            continue; // It has vanished meanwhile.
        } else if (m_rules.collect == Collect::Members) {
            addMember(folder, joined(path, entry.nameView()), entry);
        } else if (entry.type != EntryType::Link || m_rules.collect == Collect::Names) {
            if (m_rules.collect == Collect::Candidates && entry.size <= m_rules.limit)
                continue;
            addFile(folder, joined(path, entry.nameView()), entry);
        }
    }
}

void FileListWalk::addFile(Folder &folder, std::string path, const DirectoryEntry &entry) {
    if (m_rules.collect != Collect::Candidates) {
        folder.finds.emplace_back(makeItem(std::move(path), entry));
        return;
    }
    // The limit itself is not a candidate.
    if (entry.size <= m_rules.limit)
        return;
    if (folder.bundle) {
        folder.bundle->qualifies.store(true, std::memory_order_relaxed);
    } else if (isBundleName(entry.nameView())) {
        // An ordinary file of that name counts as well.
        Bundle *bundle = newBundle(std::move(path));
        bundle->qualifies.store(true, std::memory_order_relaxed);
        folder.finds.emplace_back(bundle);
    } else if (entry.type == EntryType::File || entry.type == EntryType::Link) {
        folder.finds.emplace_back(makeItem(std::move(path), entry));
    }
}

void FileListWalk::addMember(Folder &folder, std::string path, const DirectoryEntry &entry) {
    DirectoryEntry found = entry;
    if (entry.type == EntryType::Link) {
        const auto target = m_files.attributesFollowing(path);
        if (target && target->type == EntryType::Directory)
            return;
        if (target) {
            found.device = target->device;
            found.inode = target->inode;
        }
    }
    folder.finds.emplace_back(makeItem(std::move(path), found));
}

bool FileListWalk::isPassedOver(const DirectoryWalk::Directory &directory) const {
    // Most often there are none, and nothing is to be looked up.
    const auto &all = m_rules.passedOver;
    return !all.empty() &&
           std::binary_search(all.begin(), all.end(),
                              FileIdentity{directory.device(), directory.inode()}) &&
           !(m_rootDirectory && directory.device() == m_rootDirectory->device &&
             directory.inode() == m_rootDirectory->inode);
}

void FileListWalk::read(DirectoryWalk::Directory &directory, std::error_code error) {
    if (!error && isPassedOver(directory))
        return;
    Folder &folder = *static_cast<Folder *>(directory.context());
    const bool isShown = std::exchange(folder.isShown, true);
    const bool sizeCounts = folder.bundle && !folder.isStart &&
                            !folder.bundle->qualifies.load(std::memory_order_relaxed);
    folder.isRead = !error && !stopped();
    if (!error && isShown && !sizeCounts)
        return;
    const std::string path = pathOf(directory);
    if (!isShown && m_rules.current)
        m_rules.current(path);
    if (error) {
        fail(folder, path, error);
    } else if (sizeCounts) {
        // A bundle's directories are members too, with the size of their own entry.
        const auto attributes = m_files.attributes(path);
        if (attributes && attributes->size > m_rules.limit)
            folder.bundle->qualifies.store(true, std::memory_order_relaxed);
    }
}

void FileListWalk::fail(Folder &folder, const std::string &path, std::error_code error) {
    folder.failure = std::make_unique<std::string>(path + ": " + error.message());
    m_failed.store(true, std::memory_order_relaxed);
}

std::string FileListWalk::pathOf(const DirectoryWalk::Directory &directory) {
    std::vector<std::string_view> names;
    std::size_t size = 0;
    const auto *each = &directory;
    for (; each->parent(); each = each->parent()) {
        names.push_back(each->name());
        size += 1 + names.back().size();
    }
    const std::string &start = static_cast<const Folder *>(each->context())->path;
    std::string path;
    path.reserve(start.size() + size);
    path = start;
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        if (!path.ends_with('/'))
            path += '/';
        path += *name;
    }
    return path;
}

FileListWalk::Folder *FileListWalk::newFolder(Bundle *bundle) {
    const std::lock_guard lock(m_mutex);
    Folder &folder = m_folders.emplace_back();
    folder.bundle = bundle;
    return &folder;
}

FileListWalk::Bundle *FileListWalk::newBundle(std::string path) {
    const std::lock_guard lock(m_mutex);
    Bundle &bundle = m_bundles.emplace_back();
    bundle.path = std::move(path);
    return &bundle;
}

// -- Giving out

void FileListWalk::giveOut(const Finds &finds) {
    struct Level {
        Folder *folder;
        std::size_t next;
    };
    std::vector<Level> levels;
    const auto begin = [&](Folder &folder, const Bundle *outer) {
        if (folder.failure && finds.failure)
            finds.failure(*folder.failure);
        if (folder.bundle && folder.bundle != outer && folder.bundle->qualifies && finds.bundle)
            finds.bundle(folder.bundle->path);
        levels.push_back({&folder, 0});
    };
    if (m_root)
        begin(*m_root, nullptr);
    while (!levels.empty() && !stopped()) {
        Folder &folder = *levels.back().folder;
        if (levels.back().next == folder.finds.size()) {
            std::vector<Find>().swap(folder.finds);
            if (finds.folder && folder.isRead && !folder.isStart)
                finds.folder(folder.path);
            levels.pop_back();
            continue;
        }
        Find &find = folder.finds[levels.back().next++];
        if (auto *item = std::get_if<std::shared_ptr<fileAttrbItem>>(&find))
            finds.candidate(std::move(*item));
        else if (auto *const *child = std::get_if<Folder *>(&find))
            begin(**child, folder.bundle);
        else if (finds.bundle)
            finds.bundle(std::get<Bundle *>(find)->path);
    }
}

} // namespace brightsweep
