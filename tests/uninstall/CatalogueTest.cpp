#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "support/FakeApplicationSource.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "uninstall/PropertyList.h"
#include "uninstall/UninstallAppDelegate.h"
#include "uninstall/UninstallAppInfo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <plist/plist.h>

#include <cstdlib>

namespace brightsweep {
namespace {

using test::TestEnvironment;
using test::TestTree;

std::string xml(std::string_view body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" +
           std::string(body) + "</dict></plist>";
}

std::string binary() {
    plist_t dict = ::plist_new_dict();
    ::plist_dict_set_item(dict, "CFBundleIdentifier", ::plist_new_string("com.apple.Tëxt"));
    ::plist_dict_set_item(dict, "Other", ::plist_new_uint(3));
    char *bytes = nullptr;
    std::uint32_t size = 0;
    ::plist_to_bin(dict, &bytes, &size);
    const std::string text(bytes, size);
    std::free(bytes);
    ::plist_free(dict);
    return text;
}

TEST(Catalogue, ReadsEveryFormOfAPropertyList) {
    const std::string whole = binary();
    const std::string entry = "<key>CFBundleIdentifier</key>";
    const struct {
        std::string bytes;
        const char *id; // null where there is none
    } cases[] = {
        {xml(entry + "<string>a&amp;b</string><key>N</key><array><string>x</string></array>"),
         "a&b"},
        {"\n " + xml(entry + "<string></string>"), ""},
        {xml(entry + "<integer>3</integer>"), nullptr},
        {whole, "com.apple.Tëxt"},
        {whole.substr(0, whole.size() / 2), nullptr},
        {"bplist00", nullptr},
        {R"( {"CFBundleIdentifier": "json.id", "n": 1})", "json.id"},
        {R"({"CFBundleIdentifier": )", nullptr},
        {"<plist><array/></plist>", nullptr},
        {std::string("\0\xff<", 3), nullptr},
        {"", nullptr},
    };
    for (const auto &[bytes, id] : cases) {
        const auto texts = readPropertyList(bytes);
        const auto found = texts.find("CFBundleIdentifier");
        EXPECT_EQ(found != texts.end(), id != nullptr) << bytes;
        if (id && found != texts.end()) {
            EXPECT_EQ(found->second.toStdString(), id);
        }
    }
}

class CatalogueOfMachine : public testing::Test {
protected:
    void SetUp() override { Platform::setCurrent(makeLinuxPlatform()); }
    void TearDown() override { Platform::setCurrent(makeNullPlatform("at the end")); }

    static std::vector<std::string> pathsOf(const std::vector<AppItems::Pointer> &items) {
        std::vector<std::string> paths;
        for (const auto &item : items)
            paths.push_back(item->path.lexically_relative(TestEnvironment::current().root()));
        return paths;
    }

    TestTree m_tree{TestEnvironment::current().root()};
};

TEST_F(CatalogueOfMachine, ListsBundlesWhereverTheyLieInTheFourFolders) {
    const std::string plist = "/Contents/Info.plist";
    m_tree.file("system/Applications/Tools/Deep/A.app" + plist,
                xml("<key>CFBundleIdentifier</key><string>com.apple.a</string>"
                    "<key>CFBundleShortVersionString</key><string>1.2</string>"));
    m_tree.file("system/Applications/Tools/Deep/A.app/Contents/Inner.app" + plist);
    m_tree.file("system/Network/Applications/Upper.APP/B.app" + plist,
                xml("<key>CFBundleIdentifier</key><string>com.applet</string>"));
    m_tree.file("system/Developer/Applications/plain.app"); // no directory
    m_tree.fifo("home/Applications/C.app/Contents/Info.plist");
    m_tree.link("home/Applications/again.app", m_tree.path("system/Applications/Tools/Deep/A.app"));
    m_tree.link("home/Applications/loop", m_tree.path("home/Applications"));
    m_tree.link("home/Applications/up", m_tree.path(""));
    m_tree.deepChain("home/Applications/deep", 600);

    Platform::current().applications.clear();
    const UninstallAppInfo info;
    EXPECT_THAT(pathsOf(info.allAppsInfo()),
                testing::UnorderedElementsAre("system/Applications/Tools/Deep/A.app",
                                              "system/Network/Applications/Upper.APP/B.app",
                                              "home/Applications/C.app",
                                              "home/Applications/again.app"));
    EXPECT_TRUE(info.failures().empty());
    const auto &first = *info.allAppsInfo().front();
    EXPECT_EQ(first.bundleID.toStdString(), "com.apple.a");
    EXPECT_EQ(first.bundleVersion.toStdString(), "1.2");
    EXPECT_TRUE(first.isSystemApp);
    EXPECT_FALSE(info.allAppsInfo()[1]->isSystemApp) << "the prefix ends in a point";
    info.allAppsInfo().front()->bIsSelected = true;
    const auto copy = first.copyWithZone();
    EXPECT_FALSE(copy->isSystemApp || copy->bIsSelected);
    EXPECT_EQ(copy->isSystemAppStr.toStdString(), "YES");
}

TEST_F(CatalogueOfMachine, GoesOnWithTheSourcesAndNamesTheOneThatFails) {
    auto failing = std::make_unique<test::FakeApplicationSource>(ApplicationKind::Snap);
    failing->failure = std::make_error_code(std::errc::connection_refused);
    auto absent = std::make_unique<test::FakeApplicationSource>(ApplicationKind::Flatpak);
    absent->reason = "not there";
    absent->failure = failing->failure;
    auto packages = std::make_unique<test::FakeApplicationSource>(ApplicationKind::Package);
    InstalledApplication gimp;
    gimp.key = "gimp";
    gimp.ids = {"org.gimp.GIMP"};
    gimp.name = "GI\nMP";
    gimp.partOfSystem = true;
    packages->installed = {gimp};
    packages->running = {"gimp"};
    auto &sources = Platform::current().applications;
    sources.clear();
    sources.push_back(std::move(failing));
    sources.push_back(std::move(absent));
    sources.push_back(std::move(packages));
    const UninstallAppInfo info;
    ASSERT_EQ(info.allAppsInfo().size(), 1u);
    const auto &item = *info.allAppsInfo().front();
    EXPECT_EQ(item.name.toStdString(), "GI\\nMP");
    EXPECT_EQ(item.bundleID.toStdString(), "org.gimp.GIMP");
    EXPECT_TRUE(item.isSystemApp && item.isRunning);
    ASSERT_EQ(info.failures().size(), 1u);
    EXPECT_EQ(info.failures().front().kind, ApplicationKind::Snap);
}

} // namespace
} // namespace brightsweep
