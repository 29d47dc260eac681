#include "platform/DesktopHints.h"

#include "desktop/PrivateBus.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "platform/linux/LinuxDesktopHints.h"
#include "support/TestEnvironment.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QMap>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace brightsweep {
namespace {

using test::eventually;
using test::PlayedService;
using test::PrivateBus;
using Namespaces = QMap<QString, QVariantMap>;

constexpr char portalName[] = "org.freedesktop.portal.Desktop";
constexpr char settings[] = "org.freedesktop.portal.Settings";

class Portal : public PlayedService {
public:
    explicit Portal(const PrivateBus &bus) : PlayedService(bus, "/org/freedesktop/portal/desktop") {
        qDBusRegisterMetaType<Namespaces>();
        answer = [this](const QDBusMessage &call) {
            return call.createReply(QVariant::fromValue(values));
        };
    }
    bool come() { return takeName(portalName); }
    void change(const char *space, const char *key, const QVariant &value) {
        emitSignal(
            settings, "SettingChanged",
            {QLatin1String(space), QLatin1String(key), QVariant::fromValue(QDBusVariant(value))});
    }

    Namespaces values;
};

void writeDesktopFile(const char *text) {
    const auto folder = test::TestEnvironment::current().home() / ".config";
    std::ofstream(folder / "new") << text;
    std::filesystem::rename(folder / "new", folder / "kdeglobals");
}

TEST(DesktopHints, PortalIsFollowedLive) {
    const PrivateBus bus;
    Portal portal(bus);
    portal.values = {
        {QStringLiteral("org.freedesktop.appearance"), {{QStringLiteral("contrast"), 1u}}},
        {QStringLiteral("org.gnome.desktop.interface"),
         {{QStringLiteral("enable-animations"), false},
          {QStringLiteral("text-scaling-factor"), 1.5}}}};
    ASSERT_TRUE(portal.come());
    DesktopHints &hints = *Platform::current().hints;
    int changes = 0;
    EXPECT_EQ(hints.hints(), Hints());
    hints.setChangedHandler([&] { ++changes; });
    ASSERT_TRUE(eventually([&] { return changes > 0; }));
    EXPECT_EQ(hints.hints(), (Hints{true, true, 1.5}));

    const struct {
        const char *space;
        const char *key;
        QVariant value;
        Hints after;
    } cases[] = {
        {"org.freedesktop.appearance", "contrast", 0u, {false, true, 1.5}},
        {"org.gnome.desktop.a11y.interface", "high-contrast", true, {true, true, 1.5}},
        {"org.gnome.desktop.interface", "enable-animations", true, {true, false, 1.5}},
        {"org.gnome.desktop.interface", "text-scaling-factor", 1.25, {true, false, 1.25}},
        // A size that is a mistake is none.
        {"org.gnome.desktop.interface", "text-scaling-factor", 90.0, {true, false, 1}},
        {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", QStringLiteral("0"), {true, true, 1}},
        {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", 0.5, {true, false, 1}},
        {"org.freedesktop.appearance", "reduced-motion", 1u, {true, true, 1}},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.key);
        const int before = changes;
        portal.change(one.space, one.key, one.value);
        EXPECT_TRUE(eventually([&] { return changes > before; }));
        EXPECT_EQ(hints.hints(), one.after);
    }
    const int before = changes;
    portal.change("org.freedesktop.appearance", "accent-color", 7);
    portal.change("org.freedesktop.appearance", "reduced-motion", 0u);
    EXPECT_TRUE(eventually([&] { return changes > before; }));
    EXPECT_EQ(changes, before + 1);
    Platform::setCurrent(makeNullPlatform("at the end"));
}

TEST(DesktopHints, PortalComesLate) {
    const PrivateBus bus;
    DesktopHints &hints = *Platform::current().hints;
    hints.setChangedHandler([] {});
    Portal portal(bus);
    portal.values = {
        {QStringLiteral("org.freedesktop.appearance"), {{QStringLiteral("contrast"), 1u}}}};
    ASSERT_TRUE(portal.come());
    EXPECT_TRUE(eventually([&] { return hints.hints().highContrast; }));
    Platform::setCurrent(makeNullPlatform("at the end"));
}

TEST(DesktopHints, SettingsFileIsFollowedWithoutABus) {
    DesktopHints &hints = *Platform::current().hints;
    int changes = 0;
    hints.setChangedHandler([&] { ++changes; });
    EXPECT_FALSE(hints.hints().reducedMotion);
    const struct {
        const char *text;
        bool reduced;
    } cases[] = {{"[KDE]\nAnimationDurationFactor=0\n", true},
                 {"[Other]\nAnimationDurationFactor=0\n", false},
                 {"[Other]\nx=1\n[KDE]\n AnimationDurationFactor = 0.0 \r\n[End]\n", true},
                 {"[KDE]\nAnimationDurationFactor=0.7071\n", false}};
    for (const auto &one : cases) {
        SCOPED_TRACE(one.text);
        writeDesktopFile(one.text);
        EXPECT_TRUE(eventually([&] { return hints.hints().reducedMotion == one.reduced; }));
    }
    EXPECT_EQ(changes, 4);
    // Written in place.
    std::ofstream(test::TestEnvironment::current().home() / ".config/kdeglobals")
        << "[KDE]\nAnimationDurationFactor=0\n";
    EXPECT_TRUE(eventually([&] { return hints.hints().reducedMotion; }));
    std::filesystem::remove(test::TestEnvironment::current().home() / ".config/kdeglobals");
    EXPECT_TRUE(eventually([&] { return !hints.hints().reducedMotion; }));
}

} // namespace
} // namespace brightsweep
