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

} // namespace

std::span<const FileClass> fileClasses() {
    return classes;
}

std::int32_t fileTypeOfExtension(std::string_view extension) {
    if (extension.empty())
        return 0;
    // The names in the table have no other letters.
    std::string lower(extension);
    for (char &letter : lower)
        letter = letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
    for (const FileClass &fileClass : classes) {
        if (fileClass.extensions.empty() ||
            std::find(fileClass.extensions.begin(), fileClass.extensions.end(), lower) !=
                fileClass.extensions.end())
            return fileClass.fileType;
    }
    return 0;
}

} // namespace brightsweep
