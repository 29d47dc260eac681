#pragma once

#include "duplicates/ContentReader.h"
#include "duplicates/fileAttrbItem.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace brightsweep {

/// The plain definition of which files are equal: same size, same checksum of the first kilobyte,
/// same checksum of the whole file. ComparisonRun finds the same groups without its quadratic
/// search.
///
/// One object is used by one thread. Files that cannot be read are logged and equal to nothing.
class algorithm {
public:
    algorithm();

    /// Length in bytes of a file that can be opened, else 0.
    std::uint64_t getFileSize(const std::filesystem::path &path);
    /// Fills md5_1k; always over 1,024 bytes, so the value of a shorter file covers what earlier
    /// reads of this object have left behind and is comparable only with files of its size.
    bool getMD5_1K(fileAttrbItem &item);
    /// Fills md5; false for an empty file.
    bool getMD5(fileAttrbItem &item);

    /// Appends the files of the item's size; always true.
    bool findFileWithSize(const FileList &list, FileList &outArray, const fileAttrbItem &findItem);
    /// Moves the files equal to the item out of a list of its size, and appends the item to them,
    /// last, if there are any. False only where the item itself cannot be read.
    bool findFileWithMd5(FileList &list, FileList &outArray,
                         const std::shared_ptr<fileAttrbItem> &findItem);
    /// Both steps; false where no other file has the item's size.
    bool getDuplicateFile(const std::shared_ptr<fileAttrbItem> &item, const FileList &from,
                          FileList &result);

    bool compareWholeFile(const std::filesystem::path &file,
                          const std::filesystem::path &anotherFile);
    /// The checksum of bytes in memory.
    std::uint64_t getSingleMd5WithData(std::string_view data);
    /// True when everything below the two directories bears the same names, in the same order.
    bool CompareDirectoryWithoutHash(const std::filesystem::path &directory,
                                     const std::filesystem::path &otherDirectory);
    bool CompareDirectory(const std::filesystem::path &directory,
                          const std::filesystem::path &otherDirectory);

private:
    ContentReader m_reader;
    std::vector<unsigned char> m_Buf;
};

} // namespace brightsweep
