#include "results/FileClasses.h"

#include <algorithm>
#include <string>

namespace brightsweep {

namespace {

constexpr std::string_view documents[] = {
    "doc", "docx", "xls", "xlsx", "mpp", "ppt", "pptx", "txt",  "rtf", "pdf",   "odt",
    "ott", "ods",  "odg", "odf",  "odb", "odp", "htm",  "html", "xml", "pages", "key",
};
constexpr std::string_view music[] = {
    "wav", "aiff", "au", "mp3", "midi", "wma", "acc", "ape", "ra", "aac",
};
constexpr std::string_view videos[] = {
    "avi", "rmvb", "rm",  "3gp", "3g2", "flv", "mpeg", "mpg", "qt",
    "qtm", "qtx",  "mov", "mpe", "mp4", "m4v", "mkv",  "wmv", "ogg",
};
// The last two never match: the extension of such a name is what stands behind its last point.
constexpr std::string_view archives[] = {"zip", "rar", "tar", "tar.gz", "tar.bz2"};
constexpr std::string_view pictures[] = {
    "bmp", "jpg", "png", "ico", "gif", "tiff", "jpeg", "tga", "exif",
    "fpx", "svg", "psd", "cdr", "pcd", "dxf",  "ufo",  "eps",
};

constexpr std::array<FileClass, 6> classes = {{
    {1, documents},
    {2, music},
    {3, videos},
    {4, archives},
    {5, pictures},
    {6, {}},
}};

constexpr std::int32_t restOfFiles = 6;

// An extension in one number, in lower case; 0 for one that is longer than any in the table. The
// names in the table have no other letters than those of ASCII.
constexpr std::uint64_t packed(std::string_view extension) {
    std::uint64_t letters = 0;
    if (extension.size() > sizeof letters)
        return 0;
    for (const char letter : extension) {
        const char lower = letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
        letters = letters << 8 | std::uint8_t(lower);
    }
    return letters;
}

struct Word {
    std::uint64_t letters = 0;
    std::int32_t fileType = 0;
};

// Every file of a scan is looked up.
constexpr auto sortedWords = [] {
    std::array<Word, std::size(documents) + std::size(music) + std::size(videos) +
                         std::size(archives) + std::size(pictures)>
        words;
    std::size_t count = 0;
    for (const FileClass &fileClass : classes) {
        for (const std::string_view extension : fileClass.extensions)
            words[count++] = {packed(extension), fileClass.fileType};
    }
    std::sort(words.begin(), words.end(),
              [](const Word &a, const Word &b) { return a.letters < b.letters; });
    return words;
}();

} // namespace

std::span<const FileClass> fileClasses() {
    return classes;
}

std::int32_t fileTypeOfExtension(std::string_view extension) {
    if (extension.empty())
        return 0;
    const auto row = std::lower_bound(
        sortedWords.begin(), sortedWords.end(), packed(extension),
        [](const Word &word, std::uint64_t wanted) { return word.letters < wanted; });
    const bool isKnown = row != sortedWords.end() && row->letters == packed(extension);
    return isKnown ? row->fileType : restOfFiles;
}

} // namespace brightsweep
