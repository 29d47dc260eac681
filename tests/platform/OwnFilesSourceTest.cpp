#include "platform/linux/AppImageSource.h"
#include "platform/linux/FolderSource.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>

namespace brightsweep {
namespace {

using namespace test;

class OwnFiles : public testing::Test {
protected:
    std::filesystem::path program(std::string_view place, TestTree &tree) {
        tree.file(place, "#!/bin/sh\n");
        tree.mode(place, 0755);
        return tree.path(place);
    }
    std::filesystem::path image(std::string_view place, char type = 2) {
        std::string bytes = "\177ELF\2\1\1";
        bytes += std::string("\0AI", 3) + type + std::string(64, '\0');
        home.file(place, bytes);
        home.mode(place, 0755);
        return home.path(place);
    }
    void entry(const std::string &id, const std::string &exec, const std::string &more = {}) {
        home.file(".local/share/applications/" + id + ".desktop",
                  "[Desktop Entry]\nType=Application\nName=" + id + " Name\nExec=" + exec + "\n" +
                      more);
    }
    // A program in a folder of its own, with an entry called like the folder.
    std::filesystem::path add(const std::string &place, const std::string &id) {
        const auto file = program(place, home);
        entry(id, "\"" + file.native() + "\"");
        return file;
    }
    template <typename Source>
    std::map<std::string, InstalledApplication> listed() {
        Source source([this](const std::unordered_set<std::string> &paths) {
            std::unordered_set<std::string> owned;
            for (const auto &path : packaged) {
                if (paths.contains(path))
                    owned.insert(path);
            }
            return owned;
        });
        std::map<std::string, InstalledApplication> found;
        const auto all = source.applications();
        for (const InstalledApplication &application : *all)
            found.emplace(application.path.filename().native(), application);
        return found;
    }

    TestTree home{TestEnvironment::current().home()};
    TestTree system{TestEnvironment::current().system()};
    std::vector<std::string> packaged;
};

TEST_F(OwnFiles, AppImagesAreTakenForWhatTheyAre) {
    image("Applications/Krita-5.2.0-x86_64.AppImage");
    image("bin/first", 1);
    image("bin/third", 3);
    image("Downloads/loose.AppImage");
    image("AppImages/packaged.AppImage");
    packaged = {home.path("AppImages/packaged.AppImage").native()};
    entry("appimagekit_0-draw", image("Downloads/Draw.AppImage").native() + " %U",
          "X-AppImage-Version=7.1\n");
    home.link(".local/bin/draw", home.path("Downloads/Draw.AppImage"));
    home.fifo("Applications/pipe");
    const auto found = listed<AppImageSource>();
    ASSERT_EQ(found.size(), 3u);
    const auto &krita = found.at("Krita-5.2.0-x86_64.AppImage");
    EXPECT_EQ(krita.name + " " + krita.version, "Krita 5.2.0");
    EXPECT_TRUE(krita.userOwned && krita.ids.empty() && krita.bytes == 75u);
    const auto &draw = found.at("Draw.AppImage");
    EXPECT_EQ(draw.name + " " + draw.version, "appimagekit_0-draw Name 7.1");
    EXPECT_EQ(draw.desktopId(), "appimagekit_0-draw");
    EXPECT_TRUE(found.contains("first"));
    EXPECT_TRUE(listed<FolderSource>().empty()) << "an image is no folder";
}

TEST_F(OwnFiles, FoldersAreOnlyThoseThatNobodyElseUses) {
    add(".local/opt/Editor/bin/editor", "Editor");
    entry("Editor-2", home.path(".local/opt/Editor/bin/editor").native() + " --new");
    add(".local/share/Alone/alone", "Alone");
    home.link(".local/bin/linked", add(".local/share/Linked/bin/linked", "Linked"));
    add("Applications/E.app/run", "bundle");
    add(".local/share/icons/tool", "icons");
    // Somebody else's data, each in its own way.
    add(".local/share/Deep/a/b/deep", "Deep");
    add(".local/share/ByLink/bylink", "ByLink");
    home.link(".local/bin/other", program(".local/share/ByLink/tools/other", home));
    const std::string data = home.path(".local/share").native();
    const std::pair<const char *, std::string> users[] = {
        {".config/systemd/user/by1-x.service",
         "ExecStart=" + program(".local/share/By1/x/x", home).native() + "\n"},
        {".config/systemd/user/2.service", "ExecStart=sh -c 'cd ~/.local/share/By2 && y'\n"},
        {".local/share/systemd/user/a.service.d/3.conf", "WorkingDirectory=%h/.local/share/By3\n"},
        {"bin/4", "#!/bin/sh\nAD=/ D=\"$HOME/.local/share\"; exec ${D}/By4/run\n"},
        {"bin/5", "#!/bin/sh\nexec ~/data/By5/run\n"},
        {".local/bin/6", "#!/bin/sh\nexec \"${XDG_DATA_HOME}\"/By6/run \"$@\"\n"},
        {"bin/7", "#!/bin/sh\ncd ~/.local; exec share/By7/run\n"},
        {".profile", "PATH=$PATH:~/.local/share/By8\n"},
        {".local/bin/9", "#!/bin/sh\ncd \"$HOME\"/.local/share/My\\ By9; ./run\n"},
        {"bin/10", "#!/bin/sh\n" + std::string(70'000, '#') + "\n~/.local/share//By10/x\n"}};
    for (int number = 1; const auto &[file, text] : users) {
        const std::string name = (number == 9 ? "My By" : "By") + std::to_string(number);
        add(".local/share/" + name + "/by", name);
        home.file(file, text);
        ++number;
    }
    for (const char *place : {"Desktop", ".config", "Applications"}) {
        add(std::string(".local/share/LinkedFrom") + place + "/run", place);
        home.link(std::string(place) + "/a link", data + "/LinkedFrom" + place);
    }
    add(".local/share/Plugged/plugged", "Plugged");
    home.link(".config/other/a/b/plug", "../../../../.local/share/Plugged/plugins");
    home.link("data", data);
    home.link(".local/share/Alone/own", data + "/Alone/plugins");
    add(".local/share/BrightSweep/run", "ours");
    add(".local/share/LIB/run", "standard");
    // Its own entries do no harm, nor what has a longer name.
    home.file(".config/autostart/alone.desktop",
              "[Desktop Entry]\nExec=" + data + "/Alone/alone --hidden\n");
    home.file(".local/bin/alone", "#!/bin/sh\nexec ~/.local/share/Alone/alone \"$@\"\n");
    home.file(".local/bin/another", "#!/bin/sh\ncd ~/.local/share/Alone-2 $HOME2/.local/share/Alone"
                                    " /x$HOME/.local/share/Alone ~/.local/share/Alone.old\n");
    add(".local/share/ByEntry/byentry", "ByEntry");
    program("usr/bin/z", system);
    entry("z", "z --data " + home.path(".local/share/ByEntry/data").native());
    add(".local/share/ByName/byname", "ByName");
    program("usr/bin/byname", system);
    add("Applications/Games/one/one", "one");
    add("Applications/Games/two/two", "two");
    // Each holds another application, or what a package owns.
    add(".local/opt/Tools/run", "Tools");
    entry("image", image(".local/opt/Tools/foo.AppImage").native());
    add("Applications/Suite/run", "Suite");
    home.file("Applications/Suite/Photo.app/Contents/Info.plist");

    entry("image-2", program(".local/opt/Tools/tool", home).native());
    add(".local/opt/Owned/run", "Owned");
    home.file(".local/opt/Owned/data");
    // A package's.
    const auto vendor = program("opt/Vendor/vendor", system);
    entry("vendor", "/opt/Vendor/vendor");
    const auto own = program("opt/Mine/mine", system);
    entry("mine", "/opt/Mine/mine");
    packaged = {vendor.parent_path().native(), home.path(".local/opt/Owned/data").native()};

    const auto found = listed<FolderSource>();
    std::vector<std::string> names;
    for (const auto &[name, application] : found)
        names.push_back(name);
    EXPECT_THAT(names, testing::UnorderedElementsAre("Editor", "Alone", "Linked", "Mine"));
    const auto &editor = found.at("Editor");
    EXPECT_EQ(editor.name, "Editor Name");
    EXPECT_THAT(editor.ids, testing::ElementsAre("Editor", "Editor-2"));
    EXPECT_EQ(editor.programs.size(), 1u);
}

TEST_F(OwnFiles, FoldersOfProgramsThatOthersUseStayWithTheReason) {
    add("opt/Free/bin/free", "Free");
    entry("second", program("opt/Free/run.sh", home).native());
    entry("hidden", program("opt/Free/bin/url", home).native() + " %u", "NoDisplay=true\n");
    entry("third", program("bin/free-wrapper", home).native(),
          "Path=" + home.path("opt/Free").native() + "\n");
    home.file("bin/free-wrapper", "#!/bin/sh\ncd ~/opt/Free; exec ~/opt/Free/bin/free\n");
    home.file("opt/Free/tools/tool", "#!" + home.path("opt/Free/bin/run").native() + "\n");
    home.link(".local/bin/tool", "../../opt/Free/tools/tool");
    home.link(".local/share/icons/tool.png", "../../../opt/Free/tool.png");
    home.file(".profile", "[ -d ~/opt/Free/bin ] && PATH=~/opt/Free/bin:$PATH\n");
    home.file(".mozilla/native-messaging-hosts/org.free.host.json",
              "{\"path\": \"" + home.path("opt/Free/host").native() + "\"}");
    home.file("bin/other", "#!/bin/sh\nexec /opt/Free/run ~/opt/Freedom/run\n");
    const std::pair<const char *, const char *> users[] = {
        {".config/systemd/user/1.service", "ExecStart=%h/opt/Used1/run\n"},
        {"bin/my-used2-nightly", "#!/bin/sh\nexec \"$HOME\"/opt/Used2/run\n"},
        {".config/chromium/NativeMessagingHosts/3.json", "{\"path\":\"/home/u/opt/Used3/host\"}"},
        {".xsessionrc", "~/opt/Used4/run &\n"},
        {".config/other/a/plug", nullptr},
        {".config/systemd/user/default.target.wants/6.service", nullptr}};
    int number = 0;
    for (const auto &[file, text] : users) {
        const std::string folder = "opt/Used" + std::to_string(++number);
        add(folder + "/run", folder.substr(4));
        if (text)
            home.file(file, text);
        else
            home.link(file, home.path(folder + "/missing/x"));
    }
    add("opt/Maker/one/bin/one", "one");
    entry("one-2", home.path("opt/Maker/one/bin/one").native());
    home.link(".local/bin/two", program("opt/Maker/two/bin/two", home));
    const auto found = listed<FolderSource>();
    EXPECT_EQ(found.size(), std::size(users) + 2);
    EXPECT_EQ(found.at("Maker").usedBy, home.path(".local/bin/two"));
    EXPECT_EQ(found.at("Free").usedBy, "");
    EXPECT_EQ(found.at("Free").ids.size(), 2u);
    for (; number > 0; --number)
        EXPECT_EQ(found.at("Used" + std::to_string(number)).usedBy,
                  home.path(users[number - 1].first));
    FolderSource source({});
    EXPECT_EQ(source.plan(found.at("Used1")).blocker, Blocker::Unsupported);
}

} // namespace
} // namespace brightsweep
