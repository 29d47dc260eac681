#pragma once

#include "app/AppDelegate.h"
#include "app/AppPrefsWindowController.h"
#include "core/UtilityObject.h"
#include "foundation/NotificationCenter.h"
#include "platform/Platform.h"
#include "support/FakeDesktop.h"
#include "support/FakeLoginItems.h"
#include "support/ManualClock.h"
#include "support/WaitUntil.h"
#include "volumes/FakeVolumeSource.h"

#include <gtest/gtest.h>

namespace brightsweep::test {

/// The resident program over a desktop of fakes: nothing of the machine is asked. Made, but not
/// launched; the main loop ticks when the test says so, unless it is given an interval.
class Resident : public testing::Test {
protected:
    Resident() {
        Platform &platform = Platform::current();
        volumes = use(platform.volumes, new FakeVolumeSource);
        item = use(platform.statusItem, new FakeStatusItem);
        notifier = use(platform.notifier, new FakeNotifier);
        instance = use(platform.instance, new FakeInstance);
        memory = use(platform.memory, new FakeMemory);
        workspace = use(platform.workspace, new FakeWorkspace);
        parts.clock = &clock;
        parts.refreshInterval = std::chrono::hours(1);
        parts.program = "/opt/brightsweep";
        parts.exit = [this](int status) { exits.push_back(status); };
        parts.renderStatusImage = [](const QString &name) {
            return std::vector{StatusImage{1, 1, name.toStdString()}};
        };
        volumes->add("/").name = "root";
    }
    ~Resident() override {
        delegate.reset();
        AppPrefsWindowController::resetSharedPrefsWindowController();
        UtilityObject::getMyObject().totalBubbleCount = 0;
        UtilityObject::getMyObject().liveBubbleCount = 0;
    }

    /// The delegate that the test goes on with.
    AppDelegate &make() {
        delegate = std::make_unique<AppDelegate>(parts);
        QObject::connect(&delegate->bubbles(), &BubbleController::bubbleShown,
                         [this](int, const Bubble &bubble, int) { bubbles += bubble.text(); });
        QObject::connect(&delegate->menu(), &StatusMenu::rebuilt, [this] { ++rebuilds; });
        QObject::connect(&delegate->menu(), &StatusMenu::closeRequested, [this] { ++closings; });
        QObject::connect(&delegate->menu(), &StatusMenu::rowChanged, [this] { ++rowChanges; });
        return *delegate;
    }
    AppDelegate &launch() {
        make();
        delegate->applicationWillFinishLaunching();
        delegate->applicationDidFinishLaunching();
        return *delegate;
    }
    AppPrefsWindowController &window() {
        return AppPrefsWindowController::sharedPrefsWindowController();
    }
    /// What the menu reads, top to bottom.
    QStringList lines() const {
        QStringList lines;
        for (const MenuEntry &entry : delegate->menu().entries()) {
            switch (entry.kind) {
            case MenuEntry::Kind::Header:
                lines += QLatin1String("= ") + QLatin1String(entry.sectionKey);
                break;
            case MenuEntry::Kind::Row:
                lines += delegate->menu().rows()[entry.row].volumeSize;
                break;
            case MenuEntry::Kind::Separator:
                lines += QStringLiteral("-");
                break;
            case MenuEntry::Kind::Action:
                lines += entry.text + (entry.enabled ? QString() : QStringLiteral(" (grey)"));
                break;
            }
        }
        return lines;
    }
    const MenuItem &row(std::int16_t volRefNumber) const {
        return *delegate->menu().itemWithVolume(volRefNumber);
    }
    std::size_t rowIndex(std::int16_t volRefNumber) const {
        return std::size_t(&row(volRefNumber) - delegate->menu().rows().data());
    }

    FakeVolumeSource *volumes = nullptr;
    FakeStatusItem *item = nullptr;
    FakeNotifier *notifier = nullptr;
    FakeInstance *instance = nullptr;
    FakeMemory *memory = nullptr;
    FakeWorkspace *workspace = nullptr;
    FakeLoginItems &loginItems = FakeLoginItems::install();
    ManualClock clock;
    AppDelegateParts parts;
    std::unique_ptr<AppDelegate> delegate;
    std::vector<int> exits;
    QStringList bubbles;
    int rebuilds = 0;
    int closings = 0;
    int rowChanges = 0;

private:
    template <typename Interface, typename Fake>
    static Fake *use(std::unique_ptr<Interface> &place, Fake *fake) {
        place.reset(fake);
        return fake;
    }
};

} // namespace brightsweep::test
