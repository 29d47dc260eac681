#include "core/LaunchAtLogin.h"
#include "core/SettingKeys.h"
#include "core/UKLoginItemRegistry.h"
#include "foundation/UserDefaults.h"
#include "support/FakeLoginItems.h"
#include "support/LogCapture.h"
#include "support/WaitUntil.h"

#include <gmock/gmock.h>

namespace brightsweep::test {
namespace {

using Registry = UKLoginItemRegistry;
using Calls = std::vector<std::string>;

class LoginItemRegistry : public testing::Test {
protected:
    LoginItemRegistry() {
        Registry::setPause([this] { ++pauses; });
        items.become({{.file = "1", .path = "/bin/a"},
                      {.file = "2", .path = "/home/b c%\n\xff"},
                      {.file = "3", .path = "/bin/a", .hidden = true}});
    }
    ~LoginItemRegistry() override { Registry::setPause(nullptr); }

    FakeLoginItems &items = FakeLoginItems::install();
    LogCapture log;
    int pauses = 0;
};

std::size_t count(const std::string &text, const std::string &words) {
    std::size_t found = 0;
    for (std::size_t at = text.find(words); at != std::string::npos; at = text.find(words, at + 1))
        ++found;
    return found;
}

TEST_F(LoginItemRegistry, GoesByUrlsAndPlaces) {
    const auto all = Registry::allLoginItems();
    ASSERT_TRUE(all);
    EXPECT_EQ((*all)[1].url, "file://localhost/home/b%20c%25%0A%FF");
    EXPECT_TRUE((*all)[2].hidden);
    EXPECT_EQ(Registry::pathOfURL((*all)[1].url), "/home/b c%\n\xff");
    EXPECT_EQ(Registry::pathOfURL("file://localhost/srv/localhost/x"), "/srv/localhost/x");
    EXPECT_EQ(Registry::indexForLoginItemWithPath("/home/b c%\n\xff"), 1);
    EXPECT_EQ(Registry::indexForLoginItemWithURL("file:///bin/a"), -1);
    EXPECT_FALSE(Registry::removeLoginItemWithPath("/bin/none"));
    EXPECT_FALSE(Registry::removeLoginItemAtIndex(3) || Registry::removeLoginItemAtIndex(-1));
    EXPECT_EQ(items.calls(), Calls());
    EXPECT_TRUE(Registry::removeLoginItemAtIndex(1) && Registry::removeLoginItemWithPath("/bin/a"));
    EXPECT_TRUE(Registry::addLoginItemWithURL("file://localhost/a%20b", true));
    EXPECT_EQ(items.calls(), (Calls{"remove 2", "remove 1", "add /a b hidden"}));
}

TEST_F(LoginItemRegistry, AsksASlowSourceSixtyOneTimes) {
    const struct {
        std::errc error;
        int times, pauses;
        bool listed;
        std::size_t givenUp;
    } cases[] = {
        {std::errc::timed_out, 60, 60, true, 0},
        {std::errc::device_or_resource_busy, 61, 60, false, 1},
        {std::errc::permission_denied, 1, 0, false, 0},
    };
    for (const auto &each : cases) {
        const LogCapture lines;
        pauses = 0;
        items.fail("items", each.error, each.times);
        EXPECT_EQ(bool(Registry::allLoginItems()), each.listed);
        EXPECT_EQ(pauses, each.pauses);
        EXPECT_EQ(count(lines.text(), "error -1712 and timeout."), each.givenUp);
        EXPECT_EQ(lines.has("Couldn't list login items error 13"), each.times == 1);
    }
}

TEST_F(LoginItemRegistry, FlagStaysWhereTheEntryCannotBeHad) {
    items.fail("add", std::errc::no_space_on_device);
    QStringList problems;
    LaunchAtLogin::launchAppWhenLogin(1, [&](const QString &problem) { problems += problem; });
    waitUntil([&] { return !problems.isEmpty(); });
    EXPECT_TRUE(problems.value(0).endsWith(QLatin1String("No space left on device")));
    EXPECT_TRUE(log.has("Couldn't add login item error 28") &&
                log.has("Registry login item failed!!!"));
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    EXPECT_EQ(defaults.integerForKey(DSLoginCheckKey), 1);
    LaunchAtLogin::writeFileOfLaunchAppWhenLogin(QStringLiteral("0 and words"));
    EXPECT_EQ(defaults.integerForKey(DSLoginCheckKey), 0);
}

} // namespace
} // namespace brightsweep::test
