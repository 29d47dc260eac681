#include "duplicates/RecentFolders.h"

#include "core/RecentFolders.h"

namespace brightsweep {

namespace {

constexpr QLatin1String DSDuplicatesFolders("DSDuplicatesFolders");

} // namespace

std::vector<std::filesystem::path> recentFolders() {
    return recentFolders(DSDuplicatesFolders);
}

void rememberFolder(const std::filesystem::path &folder) {
    rememberFolder(DSDuplicatesFolders, folder);
}

} // namespace brightsweep
