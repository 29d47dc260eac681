#include "duplicates/duplicateFind.h"

#include "duplicates/ComparisonRun.h"
#include "duplicates/FindDuplicateApp.h"
#include "duplicates/QrxLog.h"
#include "duplicates/getFileList.h"
#include "platform/Platform.h"

#include <utility>

namespace brightsweep {

duplicateFind::duplicateFind(unsigned threads) : m_threads(threads) {}

duplicateFind::~duplicateFind() = default;

void duplicateFind::setSearchOption(bool hidden, bool system) {
    m_bSearchHiddenFile = hidden;
    m_bSearchSystemDirectory = system;
}

void duplicateFind::searchDuplicateFileAtPath(const std::filesystem::path &path,
                                              std::uint64_t limittedSize) {
    const auto attributes = Platform::current().files->attributesFollowing(path);
    if (!attributes || attributes->type != EntryType::Directory)
        return;
    m_path = path;
    m_limittedSize = limittedSize;
    const bool result = _searchDuplicateFile();
    QRX_LOG("-[duplicateFind searchDuplicateFileAtPath:limittedSize:]", "findDuplicate result:%d",
            int(result));
}

bool duplicateFind::_searchDuplicateFile() {
    m_passedOver = Platform::current().files->repeatedByOverlays(m_path);
    if (!m_passedOver.empty())
        QRX_LOG("-[duplicateFind _searchDuplicateFile]",
                " -INFO:%llu directories are passed over, as overlay mounts show their files too",
                m_passedOver.size());
    const auto fileList = std::make_shared<getFileList>(m_threads, &m_Stop);
    fileList->setPassedOver(m_passedOver);
    fileList->setM_bSearchHiddenFile(m_bSearchHiddenFile);
    fileList->setM_bSearchSystemDirectory(m_bSearchSystemDirectory);
    {
        const std::lock_guard lock(m_mutex);
        m_fileList = fileList;
    }
    const bool listed =
        fileList->getListAtPath(m_path, m_allFileArray, DirectoryArray, m_limittedSize);
    getDuplicateApp(DirectoryArray);
    {
        const std::lock_guard lock(m_mutex);
        m_fileList.reset();
    }
    if (!listed)
        return false;
    if (m_Stop)
        return true;
    if (m_allFileArray.empty())
        return false;
    compareFiles();
    return true;
}

void duplicateFind::getDuplicateApp(const std::vector<std::string> &directories) {
    if (!directories.empty()) {
        const auto findApp = std::make_shared<FindDuplicateApp>(m_threads);
        {
            const std::lock_guard lock(m_mutex);
            m_findDuplicateApp = findApp;
        }
        findApp->setPassedOver(m_passedOver);
        // A stop that came before the stage was there to hear of it.
        if (m_Stop)
            findApp->setM_StopSearch(true);
        findApp->FindAppInArray(directories, [this](AppList group) {
            const std::lock_guard lock(m_mutex);
            m_allAppArray.push_back(std::move(group));
        });
    }
    const std::lock_guard lock(m_mutex);
    m_findDuplicateApp.reset();
    m_iAppProgress = 100;
}

void duplicateFind::compareFiles() {
    {
        ComparisonRun run(*Platform::current().files, m_allFileArray, m_Stop, m_threads);
        ComparisonRun::Listener listener;
        listener.passBegan = [this](const fileAttrbItem &item) {
            const std::lock_guard lock(m_mutex);
            m_CurrentSearchPath = item.filePathName;
        };
        listener.found = [this](const FileList &group) {
            const std::lock_guard lock(m_mutex);
            m_newFileArray.insert(m_newFileArray.end(), group.begin(), group.end());
        };
        listener.progress = [this](std::uint64_t percent) { m_iProgress = percent; };
        run.run(listener);
    }
    m_allFileArray = {};
}

std::uint32_t duplicateFind::getProgress() {
    const std::lock_guard lock(m_mutex);
    if (m_findDuplicateApp)
        m_iAppProgress = m_findDuplicateApp->m_Progress();
    return (std::uint32_t(m_iAppProgress) + std::uint32_t(m_iProgress)) >> 1;
}

std::string duplicateFind::getCurrentSearchPath() {
    const std::lock_guard lock(m_mutex);
    if (m_fileList)
        m_CurrentSearchPath = m_fileList->m_CurrentPath();
    if (m_findDuplicateApp)
        m_CurrentSearchPath = m_findDuplicateApp->m_CurrentSearchFile();
    return m_CurrentSearchPath;
}

// The own flag first: a stage that begins meanwhile looks at it when it is ready to be told.
void duplicateFind::stopSearch() {
    m_Stop = true;
    const std::lock_guard lock(m_mutex);
    if (m_fileList)
        m_fileList->stopSearch();
    if (m_findDuplicateApp)
        m_findDuplicateApp->setM_StopSearch(true);
}

void duplicateFind::findNewDuplicateFile(FileList &files, std::size_t fromIndex) const {
    const std::lock_guard lock(m_mutex);
    if (fromIndex < m_newFileArray.size())
        files.insert(files.end(), m_newFileArray.begin() + std::ptrdiff_t(fromIndex),
                     m_newFileArray.end());
}

void duplicateFind::getNewAppDuplicateDir(std::vector<AppList> &groups,
                                          std::size_t fromIndex) const {
    const std::lock_guard lock(m_mutex);
    if (fromIndex < m_allAppArray.size())
        groups.insert(groups.end(), m_allAppArray.begin() + std::ptrdiff_t(fromIndex),
                      m_allAppArray.end());
}

} // namespace brightsweep
