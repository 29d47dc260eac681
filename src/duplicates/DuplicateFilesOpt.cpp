#include "duplicates/DuplicateFilesOpt.h"

#include "duplicates/QrxLog.h"
#include "duplicates/duplicateFind.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"

namespace brightsweep {

namespace {

// How far ahead of the tree's making items are fetched; a name only once its item has come.
constexpr std::size_t itemsAhead = 16;
constexpr std::size_t namesAhead = 8;
constexpr char beginMethod[] = "-[DuplicateFilesOpt beginSearchAtPath:withLimitSize:]";

void append(TreeNode &parent, const std::shared_ptr<TreeNode> &child) {
    parent.insertChild(child, parent.numberOfChildren());
}

std::shared_ptr<SimpleTreeNode> groupNode(const std::string &name, const std::string &extension) {
    auto data = SimpleNodeData::groupDataWithName(name);
    data->setExtendName(extension);
    data->setIconRep(extension);
    return SimpleTreeNode::nodeWithData(std::move(data));
}

// Adds a member to a group, and its size to the group's.
void appendLeaf(SimpleTreeNode &group, std::shared_ptr<DuplicateLeaf> leaf) {
    leaf->setPlace(std::uint32_t(group.numberOfChildren()));
    group.data().setFileSize(group.data().fileSize() + leaf->fileSize());
    append(group, SimpleTreeNode::nodeWithData(std::move(leaf)));
}

std::shared_ptr<SimpleTreeNode> bundleGroup(const AppList &bundles) {
    auto group = groupNode(bundles.back()->DirectoryName, "APP");
    for (const auto &bundle : bundles) {
        SearchedFile searched{
            SearchedFile::Kind::Bundle, bundle->device, bundle->inode, bundle->DirectorySize, 0, 0};
        for (const auto &file : bundle->AllFileInDirectory) {
            searched.changed = std::max(searched.changed, file->changed);
            searched.stored += file->stored;
        }
        auto leaf = std::make_shared<DuplicateLeaf>(bundle->DirectoryPathName, searched);
        // The icon of a bundle goes by its bare name.
        leaf->setIconRep(bundle->DirectoryName);
        leaf->setFileSize(bundle->DirectorySize);
        appendLeaf(*group, std::move(leaf));
    }
    return group;
}

std::shared_ptr<DuplicateLeaf> fileLeaf(const fileAttrbItem &file) {
    const auto kind = file.kind == fileAttrbItem::Kind::Link ? SearchedFile::Kind::Link
                                                             : SearchedFile::Kind::File;
    auto leaf = std::make_shared<DuplicateLeaf>(
        file.filePathName, SearchedFile{kind, file.device, file.inode, file.fileSize,
                                        file.ModificationDate.time_since_epoch().count(),
                                        file.changed, file.stored, file.links});
    leaf->setIconRepToName();
    leaf->setFileSize(file.fileSize);
    leaf->setModificationDate(file.ModificationDate);
    return leaf;
}

} // namespace

DuplicateFilesOpt::DuplicateFilesOpt(unsigned threads) : m_threads(threads) {}

DuplicateFilesOpt::~DuplicateFilesOpt() = default;

void DuplicateFilesOpt::beginSearchAtPath(const std::filesystem::path &path,
                                          std::uint64_t withLimitSize) {
    const auto search = std::make_shared<duplicateFind>(m_threads);
    search->setSearchOption(m_option.hidden, m_option.system);
    {
        const std::lock_guard lock(m_mutex);
        if (m_findDuplicate) {
            QRX_LOG(beginMethod, " error need reinit");
            return;
        }
        m_findDuplicate = search;
        if (m_isStopped)
            search->stopSearch();
        m_CurrentSearchPath = path.native();
    }
    const auto root = Platform::current().files->rememberRoot(path);
    m_root = root ? Result<SearchRoot>(SearchRoot{path, *root}) : root.error();
    QRX_LOG(beginMethod, " -INFO:search Path:%@  limitedsize:%llu", path, withLimitSize);
    search->searchDuplicateFileAtPath(path, withLimitSize);
}

std::shared_ptr<duplicateFind> DuplicateFilesOpt::find() {
    const std::lock_guard lock(m_mutex);
    return m_findDuplicate;
}

std::uint32_t DuplicateFilesOpt::getProgress() {
    const auto search = find();
    return search ? search->getProgress() : 0;
}

std::string DuplicateFilesOpt::getCurrentSearchFile() {
    const auto search = find();
    std::string path = search ? search->getCurrentSearchPath() : std::string();
    const std::lock_guard lock(m_mutex);
    if (!path.empty())
        m_CurrentSearchPath = std::move(path);
    return m_CurrentSearchPath;
}

void DuplicateFilesOpt::stopSearch() {
    const std::lock_guard lock(m_mutex);
    m_isStopped = true;
    if (m_findDuplicate)
        m_findDuplicate->stopSearch();
}

bool DuplicateFilesOpt::getDuplicateFiles(std::shared_ptr<SimpleTreeNode> &root) {
    const auto search = find();
    if (!search)
        return false;
    FileList files;
    std::vector<AppList> bundles;
    search->getAllDuplicateFile(files);
    search->getAllAppDuplicateDir(bundles);
    if (files.empty() && bundles.empty())
        return false;
    m_Index = m_findArray.size();
    m_findArray.insert(m_findArray.end(), std::make_move_iterator(files.begin()),
                       std::make_move_iterator(files.end()));
    m_findAppArray.insert(m_findAppArray.end(), std::make_move_iterator(bundles.begin()),
                          std::make_move_iterator(bundles.end()));

    auto tree = SimpleTreeNode::nodeWithData(SimpleNodeData::groupDataWithName("Root"));
    for (const AppList &group : m_findAppArray)
        append(*tree, bundleGroup(group));
    // Groups are told apart by the checksum of the whole file alone. The first of a group names it
    // and becomes its last leaf.
    // The items have lain untouched since they were read: those that come soon are fetched early.
    const auto fetchBefore = [this](std::size_t index) {
        if (index + itemsAhead < m_findArray.size()) {
            __builtin_prefetch(m_findArray[index + itemsAhead].get());
            __builtin_prefetch(m_findArray[index + namesAhead]->filePathName.data());
        }
    };
    for (std::size_t begin = 0, end = 0; begin < m_findArray.size(); begin = end) {
        const fileAttrbItem &held = *m_findArray[begin];
        const std::string name(held.fileName());
        const auto group = groupNode(name, paths::extension(name));
        for (end = begin + 1; end < m_findArray.size() && m_findArray[end]->md5 == held.md5;
             ++end) {
            fetchBefore(end);
            appendLeaf(*group, fileLeaf(*m_findArray[end]));
        }
        appendLeaf(*group, fileLeaf(held));
        append(*tree, group);
    }
    root = std::move(tree);
    return true;
}

} // namespace brightsweep
