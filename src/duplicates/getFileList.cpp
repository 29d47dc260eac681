#include "duplicates/getFileList.h"

#include "duplicates/FileListWalk.h"
#include "duplicates/QrxLog.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>

namespace brightsweep {

namespace {

constexpr char listMethod[] = "-[getFileList getListAtPath:FileArray:DirectoryArray:LimittedSize:]";
constexpr char topMethod[] = "-[getFileList getDirectoryAtPath:resultArray:]";
constexpr char deepMethod[] = "-[getFileList getSubpathsOfDirectoryAtPath:InPath:]";

// The second row plays the system's role on this machine.
constexpr std::array<std::string_view, 21> systemWords = {
    "Library", "Developer", "System", "Volumes", "bin",    "sbin", //
    "usr",     "lib",       "lib32",  "lib64",   "libx32", "boot", "etc", "opt",
    "var",     "run",       "dev",    "proc",    "sys",    "snap", "nix",
};

char upper(char letter) {
    return letter >= 'a' && letter <= 'z' ? char(letter - 'a' + 'A') : letter;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return upper(x) == upper(y); });
}

std::vector<std::string_view> components(std::string_view path) {
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const auto part = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(path.size(), part.size() + 1));
        if (!part.empty())
            parts.push_back(part);
    }
    return parts;
}

void logListing(const std::string &description) {
    QRX_LOG(deepMethod, "get contents Of Directory At Path failed%@", description);
}

void logMissing(const std::string &path) {
    QRX_LOG(topMethod, "directory not exsts:%@", path);
}

} // namespace

getFileList::getFileList(unsigned threads, const std::atomic<bool> *stop)
    : m_threads(threads), m_ownersStop(stop) {}

bool getFileList::getListAtPath(const std::filesystem::path &root, FileList &fileArray,
                                std::vector<std::string> &directoryArray,
                                std::uint64_t limittedSize) {
    m_bStopSearch = false;
    if (m_ownersStop && *m_ownersStop)
        m_bStopSearch = true;
    FileListWalk walk(*Platform::current().files,
                      {.collect = FileListWalk::Collect::Candidates,
                       .hidden = m_bSearchHiddenFile,
                       .limit = limittedSize,
                       .threads = m_threads,
                       .stop = &m_bStopSearch,
                       .passedOver = m_passedOver,
                       .current = [this](std::string path) { setCurrentPath(std::move(path)); },
                       .skipsTopDirectory =
                           [&](const std::string &path) { return skipsTopDirectory(root, path); }});
    if (const auto error = walk.walkRoot(root.native(), logMissing)) {
        QRX_LOG(topMethod, "get contents Of Directory At Path failed%@",
                root.native() + ": " + error.message());
        return false;
    }
    ObjectLog log;
    const bool isLogged = Log::descriptor() >= 0;
    std::unordered_set<std::string> bundles(directoryArray.begin(), directoryArray.end());
    FileListWalk::Finds finds;
    finds.candidate = [&](std::shared_ptr<fileAttrbItem> item) {
        if (isLogged)
            QRX_OBJECT_LOG(log, listMethod, "file:%@ filesize:%llu", item->filePathName,
                           item->fileSize);
        fileArray.push_back(std::move(item));
    };
    finds.bundle = [&](const std::string &path) {
        if (bundles.insert(path).second)
            directoryArray.push_back(path);
    };
    finds.failure = logListing;
    walk.giveOut(finds);
    return true;
}

bool getFileList::skipsTopDirectory(const std::filesystem::path &root,
                                    const std::string &path) const {
    return !m_bSearchSystemDirectory && root == "/" && IsSystemDirectory(path);
}

bool getFileList::getDirectoryAtPath(const std::filesystem::path &root,
                                     std::vector<std::string> *resultArray) {
    if (root.empty() || !resultArray)
        return false;
    FileListWalk walk(*Platform::current().files,
                      {.collect = FileListWalk::Collect::Paths,
                       .hidden = m_bSearchHiddenFile,
                       .threads = m_threads,
                       .stop = &m_bStopSearch,
                       .current = [this](std::string path) { setCurrentPath(std::move(path)); },
                       .skipsTopDirectory =
                           [&](const std::string &path) { return skipsTopDirectory(root, path); }});
    if (const auto error = walk.walkRoot(root.native(), logMissing)) {
        QRX_LOG(topMethod, "get contents Of Directory At Path failed%@",
                root.native() + ": " + error.message());
        return false;
    }
    FileListWalk::Finds finds;
    finds.candidate = [&](std::shared_ptr<fileAttrbItem> item) {
        resultArray->push_back(std::move(item->filePathName));
    };
    finds.folder = [&](const std::string &path) { resultArray->push_back(path); };
    finds.failure = logListing;
    walk.giveOut(finds);
    return true;
}

bool getFileList::getSubpathsOfDirectoryAtPath(std::vector<std::string> *resultArray,
                                               const std::filesystem::path &inPath) {
    if (!resultArray || inPath.empty() || m_bStopSearch)
        return false;
    FileListWalk walk(*Platform::current().files,
                      {.collect = FileListWalk::Collect::Paths,
                       .threads = m_threads,
                       .stop = &m_bStopSearch,
                       .current = [this](std::string path) { setCurrentPath(std::move(path)); }});
    if (const auto error = walk.walkFolder(inPath.native())) {
        logListing(inPath.native() + ": " + error.message());
        return false;
    }
    FileListWalk::Finds finds;
    finds.candidate = [&](std::shared_ptr<fileAttrbItem> item) {
        resultArray->push_back(std::move(item->filePathName));
    };
    finds.folder = [&](const std::string &path) { resultArray->push_back(path); };
    finds.failure = logListing;
    walk.giveOut(finds);
    return true;
}

bool getFileList::IsHiddenFile(const std::filesystem::path &path) {
    return FileListWalk::isHidden(path.native());
}

bool getFileList::IsSystemDirectory(const std::filesystem::path &path) {
    const auto parts = components(path.native());
    return !parts.empty() &&
           std::any_of(systemWords.begin(), systemWords.end(), [&](std::string_view word) {
               return equalIgnoringCase(parts.front(), word);
           });
}

bool getFileList::getAppDirectory(const std::filesystem::path &path,
                                  std::vector<std::string> *outArray, std::uint64_t limitSize) {
    if (path.empty() || !outArray)
        return false;
    const std::string prefix = FileListWalk::bundlePrefix(path.native());
    if (prefix.empty())
        return false;
    const auto attributes = Platform::current().files->attributes(path);
    if (std::find(outArray->begin(), outArray->end(), prefix) == outArray->end() && attributes &&
        attributes->size > limitSize)
        outArray->push_back(prefix);
    return true;
}

bool getFileList::IsAppDirectory(const std::filesystem::path &path) {
    return FileListWalk::isBundleName(paths::lastComponent(path));
}

bool getFileList::HasAppDirectory(const std::filesystem::path &path) {
    const auto parts = components(path.native());
    return std::any_of(parts.begin(), parts.end(), [](std::string_view part) {
        return part.size() >= 4 && equalIgnoringCase(part.substr(part.size() - 4), ".APP");
    });
}

std::string getFileList::m_CurrentPath() const {
    const std::lock_guard lock(m_mutex);
    return m_currentPath;
}

void getFileList::setCurrentPath(std::string path) {
    const std::lock_guard lock(m_mutex);
    m_currentPath.swap(path);
}

} // namespace brightsweep
