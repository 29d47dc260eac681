#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "removal/NvAuthorization.h"
#include "support/FaultPlatform.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "uninstall/LeftoverLook.h"
#include "uninstall/UninstallApp.h"

#include <gtest/gtest.h>

namespace brightsweep {
namespace {

using test::TestEnvironment;
using test::TestTree;

class BundleRemoval : public testing::Test {
protected:
    BundleRemoval() {
        Platform::setCurrent(makeLinuxPlatform());
        const std::string id = "com.example.editor";
        for (const char *folder :
             {"system/usr/local/share/", "home/.local/share/", "home/.config/", "home/.cache/"}) {
            m_tree.file(folder + id + "/deep/file");
            m_tree.file(folder + id + ".plist");
            m_tree.file(folder + id + "2.plist");
            m_tree.file(std::string(folder) + "Com.example.editor");
            m_tree.file(std::string(folder) + "other/" + id);
        }
        m_tree.link("home/.config/com.example.editor.link", m_tree.file("home/precious"));
        m_tree.file("home/Applications/Editor.app/Contents/Info.plist");
        m_item.path = m_tree.path("home/Applications/Editor.app");
        m_item.bundleID = QString::fromStdString(id);
    }
    ~BundleRemoval() override { Platform::setCurrent(makeNullPlatform("at the end")); }

    Leftover shown(std::string_view path) {
        return *lookAtLeftover(*NvAuthorization::targetOf(m_tree.path(path)), LeftoverKind::Data,
                               {});
    }

    TestTree m_tree{TestEnvironment::current().root()};
    AppItems m_item;
};

TEST_F(BundleRemoval, TakesWhatIsCalledLikeItAndNothingElse) {
    EXPECT_EQ(
        UninstallApp::getFilesByBundle(m_item.bundleID, UninstallApp::leftoverFolders()).size(),
        13u);
    EXPECT_TRUE(UninstallApp().uninstallApp(m_item));
    EXPECT_FALSE(m_tree.exists("home/Applications/Editor.app"));
    EXPECT_TRUE(m_tree.exists("home/precious")) << "what a link leads to";
    for (const std::string folder :
         {"system/usr/local/share/", "home/.local/share/", "home/.config/", "home/.cache/"}) {
        EXPECT_FALSE(m_tree.exists(folder + "com.example.editor"));
        EXPECT_FALSE(m_tree.exists(folder + "com.example.editor.plist"));
        EXPECT_TRUE(m_tree.exists(folder + "com.example.editor2.plist"));
        EXPECT_TRUE(m_tree.exists(folder + "Com.example.editor"));
        EXPECT_TRUE(m_tree.exists(folder + "other/com.example.editor"));
    }
}

TEST_F(BundleRemoval, TakesTheBundleAloneWhereItHasNoId) {
    m_item.bundleID = QString();
    const auto before = m_tree.snapshot("home/.config");
    const Leftover other = shown("home/.config/other");
    EXPECT_TRUE(UninstallApp().uninstallApp({}, {other}, shown("home/Applications/Editor.app")));
    EXPECT_FALSE(m_tree.exists("home/Applications/Editor.app"));
    EXPECT_EQ(m_tree.snapshot("home/.config"), before);
}

TEST_F(BundleRemoval, LeavesTheBundleWhereALeftoverStays) {
    test::FaultPlatform faults;
    faults.setFault([](std::string_view call, const std::filesystem::path &path) {
        return call == "removeItem" && path.native().ends_with(".config/com.example.editor.plist")
                   ? std::make_error_code(std::errc::io_error)
                   : std::error_code();
    });
    UninstallApp removal;
    const std::vector<Leftover> leftovers = {shown("home/.cache/com.example.editor"),
                                             shown("home/.cache/com.example.editor.plist"),
                                             shown("home/.config/com.example.editor.plist"),
                                             shown("home/.local/share/com.example.editor")};
    std::filesystem::remove(leftovers[1].path);
    EXPECT_FALSE(
        removal.uninstallApp(m_item.bundleID, leftovers, shown("home/Applications/Editor.app")));
    EXPECT_EQ(removal.stayed(), leftovers[2].path);
    EXPECT_EQ(removal.outcome().error, std::errc::io_error);
    EXPECT_FALSE(m_tree.exists("home/.cache/com.example.editor"));
    EXPECT_TRUE(m_tree.exists("home/.local/share/com.example.editor"));
    EXPECT_TRUE(m_tree.exists("home/Applications/Editor.app"));
}

} // namespace
} // namespace brightsweep
