#include "support/CleanableMachine.h"

#include "foundation/Paths.h"
#include "support/TestEnvironment.h"

#include <algorithm>

namespace brightsweep::test {

namespace {

constexpr const char ownRecords[] = "/com.norvmac.DeskSweeperPro";
constexpr const char ownFolder[] = "/.local/share/Brightsweep";

// Inode, mode and contents, without the number of links between them.
std::string lasting(const std::string &facts) {
    const auto links = facts.find(' ', facts.find(' ') + 1);
    const auto contents = facts.find(' ', links + 1);
    return facts.substr(0, links) + (contents == facts.npos ? "" : facts.substr(contents));
}

} // namespace

std::vector<std::string> changes(const std::map<std::string, std::string> &before,
                                 const std::map<std::string, std::string> &after) {
    std::vector<std::string> lines;
    for (const auto &[path, facts] : before) {
        const auto now = after.find(path);
        if (now == after.end())
            lines.push_back("- " + path);
        else if (lasting(now->second) != lasting(facts))
            lines.push_back("~ " + path);
    }
    for (const auto &[path, facts] : after) {
        if (!before.contains(path))
            lines.push_back("+ " + path);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

CleanableMachine::CleanableMachine()
    : CleanableMachine(TestEnvironment::current().home(), TestEnvironment::current().system()) {}

CleanableMachine::CleanableMachine(const std::filesystem::path &homeFolder,
                                   const std::filesystem::path &systemFolder)
    : home(homeFolder), system(systemFolder) {
    makeSystem();
    makeHome();
    makeTrash();
    m_state = state();
}

void CleanableMachine::addItem(unsigned category, const std::filesystem::path &item) {
    items[category].insert(item.native());
}

void CleanableMachine::makeSystem() {
    addItem(0, system.file("var/cache/apt/archives/a_1.0_all.deb", std::string(3000, 'd')));
    addItem(0, system.file("var/cache/man/index.db", std::string(500, 'i')));
    addItem(0, system.file("var/cache/man/de/index.db", "de").parent_path());
    addItem(2, system.file("var/log/apt/history.log", std::string(400, 'h')));
    addItem(2, system.file("var/crash/_usr_bin_x.0.crash", std::string(600, 'c')));
    system.mode("var/crash", 01777);
    system.file("var/cache/apt/archives/lock", "");
    system.file("var/cache/apt/archives/partial/b_1.0_all.deb.part");
    system.file("var/cache/apt/pkgcache.bin");
    system.file("var/cache/private/kept");
    system.file("var/log/syslog");
    system.file("var/log/journal/kept");
    system.file("var/lib/dpkg/status");
}

void CleanableMachine::makeHome() {
    const auto page = home.file(".cache/browser/page", std::string(2000, 'p'));
    home.file(".cache/browser/deep/er/b");
    addItem(1, page.parent_path());
    addItem(1, home.file(".cache/bad\xff\xfename", "bad"));
    addItem(1, home.file(".cache/two\nlines", "two"));
    addItem(1, home.link(".cache/documents", home.directory("Documents")));
    addItem(3, home.file(".local/state/log/a.log", std::string(100, 'a')));
    addItem(3, home.file(".config/editor/logs/b.log.1", std::string(10, 'b')));
    addItem(3, home.file(".config/editor/logs/2026-01-31/c", "c").parent_path());
    addItem(3, home.file(".npm/_logs/debug.log", "n"));
    addItem(5, home.file("Downloads/image.iso", std::string(9000, 'i')));
    addItem(5, home.file("Downloads/folder/file", "f").parent_path());
    home.file("Documents/letter", "dear");
    home.hardLink("Documents/page", page);
    home.file(".config/chat/logs/friend.txt");
    home.file(".config/chat/logs/a.log");
    home.file(".local/share/game/save");
    home.file(".cachefile");
}

void CleanableMachine::makeTrash() {
    addItem(4, home.file(".local/share/Trash/files/old.txt", "old"));
    addItem(4, home.file(".local/share/Trash/files/a folder/file", "in").parent_path());
    home.file(".local/share/Trash/info/old.txt.trashinfo", "[Trash Info]\nPath=/old.txt\n");
    home.file(".local/share/Trash/info/a folder.trashinfo", "[Trash Info]\nPath=/a%20folder\n");
    home.file(".local/share/Trash/info/elsewhere.trashinfo", "[Trash Info]\nPath=/elsewhere\n");
    home.file(".local/share/Trash/directorysizes", "2 1700000000 a%20folder\n7 17 elsewhere\n");
    home.mode(".local/share/Trash", 0700);
}

void CleanableMachine::giveHome(unsigned user) {
    home.own("", user);
    m_state = state();
}

std::map<std::string, std::string> CleanableMachine::state() const {
    std::map<std::string, std::string> all;
    for (const TestTree *tree : {&home, &system}) {
        for (const auto &[path, facts] : tree->snapshot()) {
            const std::string whole = tree->path(path);
            if (whole.find(ownRecords) == whole.npos && whole.find(ownFolder) == whole.npos)
                all[whole] = facts;
        }
    }
    return all;
}

std::vector<std::string> CleanableMachine::changesOf(const std::set<unsigned> &categories) const {
    std::set<std::string> gone;
    for (const unsigned category : categories)
        gone.insert(items[category].begin(), items[category].end());
    return changesOfItems(gone);
}

std::vector<std::string> CleanableMachine::changesOfItems(const std::set<std::string> &gone) const {
    const std::string trash = home.path(".local/share/Trash");
    std::set<std::string> places = gone;
    for (const std::string &item : gone) {
        if (item.starts_with(trash))
            places.insert(trash + "/info/" + paths::lastComponent(item) + ".trashinfo");
    }
    std::vector<std::string> lines;
    for (const auto &[path, facts] : m_state) {
        if (std::any_of(places.begin(), places.end(), [&path = path](const std::string &place) {
                return paths::isSameOrBelow(path, place);
            }))
            lines.push_back("- " + path);
    }
    if (gone.contains(trash + "/files/a folder"))
        lines.push_back("~ " + trash + "/directorysizes");
    std::sort(lines.begin(), lines.end());
    return lines;
}

} // namespace brightsweep::test
