#include "duplicates/ui/DuplicatesFolder.h"

#include "duplicates/RecentFolders.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "foundation/Identity.h"
#include "ui/FolderChoice.h"

namespace brightsweep {

namespace {

// After a search the page holds a sentence in place of a path.
std::filesystem::path startOf(const SameFileDeleteViewController &page) {
    const std::string &path = page.searchPath();
    if (path.starts_with('/'))
        return path;
    const auto recent = recentFolders();
    return recent.empty() ? homeFolder() : recent.front();
}

} // namespace

FolderChoice *takeFolders(SameFileDeleteViewController &page, QWidget *panel) {
    auto *const choice = new FolderChoice(
        {[&page] { return page.canBegin(); }, [&page] { return startOf(page); },
         [&page](const std::filesystem::path &folder) { page.viewDragAction(folder); }},
        panel);
    QObject::connect(&page, &SameFileDeleteViewController::askForFolder, choice,
                     [choice] { choice->ask(); });
    return choice;
}

} // namespace brightsweep
