#include "app/AppPrefsWindowController.h"

#include "app/LicenceGate.h"
#include "app/PageTable.h"
#include "cleaning/NewMainViewController.h"
#include "core/LaunchAtLogin.h"
#include "diskusage/DiskUsageAppController.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "loginitems/LoginItemController.h"
#include "memory/CleanMemoryController.h"
#include "preferences/PreferenceViewController.h"
#include "uninstall/UninstallAppsController.h"

#include <algorithm>
#include <memory>

namespace brightsweep {

namespace {

std::unique_ptr<AppPrefsWindowController> &shared() {
    // Never destroyed: the process ends without destructors.
    static auto *instance = new std::unique_ptr<AppPrefsWindowController>;
    return *instance;
}

} // namespace

AppPrefsWindowController &AppPrefsWindowController::sharedPrefsWindowController() {
    if (!shared())
        shared() = std::make_unique<AppPrefsWindowController>();
    return *shared();
}

void AppPrefsWindowController::resetSharedPrefsWindowController() {
    shared().reset();
}

AppPrefsWindowController::AppPrefsWindowController(QObject *parent)
    : DBPrefsWindowController(parent) {}

AppPrefsWindowController::~AppPrefsWindowController() = default;

void AppPrefsWindowController::readAnimationSettings() {
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    setCrossFade(defaults.boolForKey(QStringLiteral("fade")));
    setShiftSlowsAnimation(defaults.boolForKey(QStringLiteral("shiftSlowsAnimation")));
}

void AppPrefsWindowController::makeCleanPage() {
    NewMainViewController::Surroundings surroundings;
    surroundings.selectedItem = [this] { return selectedItem(); };
    m_v4MainView = std::make_unique<NewMainViewController>(std::move(surroundings));
    const auto *const page = m_v4MainView.get();
    connect(page, &NewMainViewController::restartRequested, this,
            &AppPrefsWindowController::restartRequested);
    connect(page, &NewMainViewController::stateChanged, this,
            [this] { setView4FastClean(m_v4MainView->view4FastClean()); });
    connect(page, &NewMainViewController::displayPanel, this,
            [this](const QString &identifier, bool animate) {
                setView4FastClean(m_v4MainView->view4FastClean());
                displayViewForIdentifier(identifier, animate);
            });
}

void AppPrefsWindowController::makeDuplicatesPage() {
    SameFileDeleteViewController::Surroundings surroundings;
    surroundings.selectedItem = [this] { return selectedItem(); };
    surroundings.licenceGate = [] { return LicenceGate::isOpen(); };
    m_sameFileDeleteView = std::make_unique<SameFileDeleteViewController>(std::move(surroundings));
    const auto *const page = m_sameFileDeleteView.get();
    const auto showPart = [this] { setView4Duplicates(m_sameFileDeleteView->view4Duplicates()); };
    connect(page, &SameFileDeleteViewController::stateChanged, this, showPart);
    connect(page, &SameFileDeleteViewController::displayPanel, this,
            [this, showPart](const QString &identifier, bool animate) {
                showPart();
                if (identifier == QLatin1String("preferences"))
                    setSelectedItem(identifier);
                displayViewForIdentifier(identifier, animate);
            });
}

void AppPrefsWindowController::makeDiskUsagePage() {
    m_diskUsageView = std::make_unique<DiskUsageAppController>(
        DiskUsageAppController::Surroundings{[] { return LicenceGate::isOpen(); }, nullptr});
    const auto *const page = m_diskUsageView.get();
    const auto showPart = [this] { setView4DiskUsage(m_diskUsageView->view4DiskUsage()); };
    connect(page, &DiskUsageAppController::stateChanged, this, showPart);
    connect(page, &DiskUsageAppController::displayPanel, this,
            [this, showPart](const QString &identifier, bool animate) {
                showPart();
                // A page that goes on in the background takes no other's place.
                const Page *const of = pageOfPanel(identifier);
                if (of && QLatin1String(of->identifier) == QLatin1String("disk_usage") &&
                    selectedItem() != QLatin1String("disk_usage"))
                    return;
                displayViewForIdentifier(identifier, animate);
            });
}

void AppPrefsWindowController::makePreferencesPage() {
    PreferenceViewController::Surroundings surroundings;
    surroundings.categoriesAreFree = [this] { return categoriesAreFree(); };
    surroundings.launchAtLogin = [](int state) { LaunchAtLogin::launchAppWhenLogin(state); };
    m_prefView = std::make_unique<PreferenceViewController>(std::move(surroundings));
    connect(m_prefView.get(), &PreferenceViewController::restartRequested, this,
            &AppPrefsWindowController::restartRequested);
    connect(m_v4MainView.get(), &NewMainViewController::stateChanged, m_prefView.get(),
            &PreferenceViewController::settingsChanged);
}

bool AppPrefsWindowController::categoriesAreFree() const {
    using State = NewMainViewController::State;
    return m_v4MainView->state() == State::Idle || m_v4MainView->state() == State::Results;
}

void AppPrefsWindowController::showCategorySetting(const QString &key) {
    if (!m_v4MainView || !categoriesAreFree())
        return;
    const auto *const row =
        std::find_if(cleanCategories.begin(), cleanCategories.end(),
                     [&](const CleanCategory &each) { return key == QLatin1String(each.key); });
    if (row == cleanCategories.end())
        return;
    const int tag = 1 + int(row - cleanCategories.begin());
    const auto state = UserDefaults::standardUserDefaults().integerForKey(key);
    // Which part is meant nobody can tell.
    constexpr int part = 2;
    if (state != part)
        NotificationCenter::defaultCenter().post(
            changeCheckBoxNotification, nullptr,
            {{QStringLiteral("tag"), tag}, {QStringLiteral("flag"), state == 0}});
}

void AppPrefsWindowController::addPage(const Page &page) {
    const QLatin1String identifier(page.identifier);
    const QLatin1String title(page.title);
    if (page.hasPanel)
        addView(identifier, page.atTheEnd ? QString() : title, title);
    else
        addItem(identifier, title);
}

void AppPrefsWindowController::setupToolbar() {
    makeCleanPage();
    makeDuplicatesPage();
    makeDiskUsagePage();
    m_memoryView = std::make_unique<CleanMemoryController>(
        CleanMemoryController::Surroundings{[] { return LicenceGate::isOpen(); }, nullptr});
    m_loginItemView = std::make_unique<LoginItemController>(
        LoginItemController::Surroundings{[] { return LicenceGate::isOpen(); }});
    m_uninstallView = std::make_unique<UninstallAppsController>(
        UninstallAppsController::Surroundings{[] { return LicenceGate::isOpen(); }, nullptr});
    connect(this, &AppPrefsWindowController::beginSearchApps, m_uninstallView.get(),
            &UninstallAppsController::beginSearchApps);
    makePreferencesPage();
    for (const Page &page : pageTable) {
        if (!page.atTheEnd)
            addPage(page);
    }
    for (const Page &page : pageTable) {
        if (page.state) {
            addView(QLatin1String(page.panels[1]), {}, {});
            addView(QLatin1String(page.panels[2]), {}, {});
        }
    }
    addSpaces();
    for (const Page &page : pageTable) {
        if (page.atTheEnd)
            addPage(page);
    }
    readAnimationSettings();
}

void AppPrefsWindowController::beginToSanUninstallListWhenSelect(int selection) {
    if (selection == uninstallSelection)
        Q_EMIT beginSearchApps();
}

} // namespace brightsweep
