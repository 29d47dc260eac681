#include "duplicates/algorithm.h"

#include "duplicates/FileListWalk.h"
#include "duplicates/QrxLog.h"
#include "duplicates/crc.h"
#include "platform/Platform.h"

#include <algorithm>

namespace brightsweep {

namespace {

constexpr std::size_t bufferSize = 4'194'304;

FileOperations &files() {
    return *Platform::current().files;
}

// What lies below a directory, relative to it.
bool namesBelow(const std::filesystem::path &directory, std::vector<std::string> &names) {
    FileListWalk walk(files(), FileListWalk::Rules{.collect = FileListWalk::Collect::Names});
    if (walk.walkFolder(directory.native()))
        return false;
    const auto add = [&](const std::string &path) {
        names.push_back(path.substr(directory.native().size()));
    };
    FileListWalk::Finds finds;
    finds.candidate = [&](std::shared_ptr<fileAttrbItem> item) { add(item->filePathName); };
    finds.folder = add;
    walk.giveOut(finds);
    return true;
}

} // namespace

algorithm::algorithm() : m_reader(files()), m_Buf(bufferSize) {}

std::uint64_t algorithm::getFileSize(const std::filesystem::path &path) {
    const auto file = files().openFile(path);
    const auto attributes =
        file ? files().fileAttributes(*file) : Result<FileAttributes>(file.error());
    if (!attributes) {
        QRX_LOG("-[algorithm getFileSize:]", "open file failed:%@", attributes.error());
        return 0;
    }
    return attributes->size;
}

bool algorithm::getMD5_1K(fileAttrbItem &item) {
    const auto file = files().openFile(item.filePathName);
    // Only a descriptor of 0 counts as a failure here: a file that does not open takes on the
    // checksum of what the buffer holds, and fails at the second stage.
    if (file && file->get() == 0) {
        QRX_LOG("-[algorithm getMD5_1K:]", "open file:%@ failed", item.filePathName);
        return false;
    }
    if (file) {
        const auto cached = files().readCachedAt(*file, m_Buf.data(), ContentReader::headSize, 0);
        if (!cached) {
            files().fetchOnlyWhatIsRead(*file);
            // A failed or short read leaves the rest of the buffer as it was.
            (void)files().readAt(*file, m_Buf.data(), ContentReader::headSize, 0);
            if (cached.error() == std::errc::operation_would_block)
                files().dropCached(*file, 0, 0);
        }
    }
    item.md5_1k = crc::crc64(m_Buf.data(), std::int32_t(ContentReader::headSize));
    return true;
}

bool algorithm::getMD5(fileAttrbItem &item) {
    fileAttrbItem now = item;
    now.fileSize = getFileSize(item.filePathName);
    if (now.fileSize == 0)
        return false;
    const auto value = m_reader.wholeFile(now);
    if (!value) {
        QRX_LOG("-[algorithm getMD5:]", "open file :%@ failed", item.filePathName);
        return false;
    }
    item.md5 = *value;
    return true;
}

bool algorithm::findFileWithSize(const FileList &list, FileList &outArray,
                                 const fileAttrbItem &findItem) {
    for (const auto &candidate : list) {
        if (candidate->fileSize == findItem.fileSize)
            outArray.push_back(candidate);
    }
    return true;
}

bool algorithm::findFileWithMd5(FileList &list, FileList &outArray,
                                const std::shared_ptr<fileAttrbItem> &findItem) {
    if (findItem->md5 == 0 && !getMD5(*findItem))
        return false;
    if (findItem->md5_1k == 0 && !getMD5_1K(*findItem))
        return false;
    for (const auto &candidate : list) {
        if (candidate->md5_1k == 0 && !getMD5_1K(*candidate))
            continue;
        if (candidate->md5_1k != findItem->md5_1k)
            continue;
        if (candidate->md5 == 0 && !getMD5(*candidate))
            continue;
        if (candidate->md5 == findItem->md5)
            outArray.push_back(candidate);
    }
    if (outArray.empty())
        return true;
    outArray.push_back(findItem);
    std::erase_if(list, [&](const auto &candidate) {
        return std::find(outArray.begin(), outArray.end(), candidate) != outArray.end();
    });
    return true;
}

bool algorithm::getDuplicateFile(const std::shared_ptr<fileAttrbItem> &item, const FileList &from,
                                 FileList &result) {
    if (!item)
        return false;
    FileList sameSize;
    findFileWithSize(from, sameSize, *item);
    return !sameSize.empty() && findFileWithMd5(sameSize, result, item);
}

bool algorithm::compareWholeFile(const std::filesystem::path &file,
                                 const std::filesystem::path &anotherFile) {
    fileAttrbItem one;
    fileAttrbItem other;
    one.filePathName = file.native();
    other.filePathName = anotherFile.native();
    return getMD5(one) && getMD5(other) && one.md5 == other.md5;
}

std::uint64_t algorithm::getSingleMd5WithData(std::string_view data) {
    return crc::fold(crc::start, data.data(), data.size());
}

bool algorithm::CompareDirectoryWithoutHash(const std::filesystem::path &directory,
                                            const std::filesystem::path &otherDirectory) {
    std::vector<std::string> names;
    std::vector<std::string> otherNames;
    return namesBelow(directory, names) && namesBelow(otherDirectory, otherNames) &&
           names == otherNames;
}

bool algorithm::CompareDirectory(const std::filesystem::path &directory,
                                 const std::filesystem::path &otherDirectory) {
    return CompareDirectoryWithoutHash(directory, otherDirectory);
}

} // namespace brightsweep
