#include "app/ui/ApplicationStart.h"

#include "app/AppController.h"
#include "app/AppDelegate.h"
#include "app/AppPrefsWindowController.h"
#include "app/Guide.h"
#include "app/QuitSignals.h"
#include "app/ui/ApplicationViews.h"
#include "app/ui/MainWindow.h"
#include "cleaning/ui/QuickCleanWindow.h"
#include "core/MacLog.h"
#include "core/SettingKeys.h"
#include "core/Texts.h"
#include "diskusage/ui/ChartCanvasChoice.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "platform/Platform.h"
#include "platform/SingleInstance.h"
#include "platform/StatusItem.h"
#include "removal/RemovalRun.h"
#include "ui/ImageProvider.h"
#include "ui/Theme.h"
#include "volumes/ui/CustomStatusItemView.h"
#include "volumes/ui/TrayStatusItem.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace brightsweep {

namespace {

using Steady = std::chrono::steady_clock;

constexpr int failureStatus = 1;

// For messages to whoever started the program; the handlers of Qt and exit() take no context.
int starterTerminal = -1;

void tellStarter(const std::string &words) {
    const std::string line = "brightsweep: " + words + "\n";
    [[maybe_unused]] const auto written = ::write(starterTerminal, line.data(), line.size());
}

bool isSet(const char *variable) {
    const char *const value = std::getenv(variable);
    return value && *value;
}

// Whether Qt has connected to the display, and the platform plugins that it has missed so far.
bool displayReached = false;
QStringList missingPlugins;

// In place of Qt's own words, which tell people to reinstall the program.
std::string displayTrouble() {
    QStringList displays;
    for (const char *const variable : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) {
        if (isSet(variable))
            displays += QLatin1String(variable) + QLatin1Char('=') + qEnvironmentVariable(variable);
    }
    QString words =
        QStringLiteral("cannot reach the display (%1)").arg(displays.join(QStringLiteral(", ")));
    if (!missingPlugins.isEmpty())
        words += QStringLiteral("; Qt's plugin for %1 is not installed")
                     .arg(missingPlugins.join(QStringLiteral(", ")));
    if (missingPlugins.contains(QStringLiteral("wayland")))
        words += QStringLiteral(" (package qt6-wayland)");
    return words.toStdString();
}

void logMessage(QtMsgType type, const QMessageLogContext &context, const QString &text) {
    const bool fatal = type == QtFatalMsg;
    const std::string words = fatal && !displayReached ? displayTrouble() : text.toStdString();
    NSLog("%@: %@", context.category ? context.category : "", words);
    if (!displayReached && text.startsWith(QStringLiteral("Could not find the Qt platform plugin")))
        missingPlugins += text.section(QLatin1Char('"'), 1, 1);
    if (!fatal)
        return;
    tellStarter(words);
    ObjectLog::flushAll();
    std::_Exit(failureStatus);
}

// Only Qt calls exit(), when the display has gone. No destructor may run beside a worker then.
void endWithoutDisplay() {
    NSLog("The display has gone; the program ends.");
    ObjectLog::flushAll();
    std::_Exit(failureStatus);
}

std::string activationToken() {
    for (const char *const variable : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        if (isSet(variable))
            return std::getenv(variable);
    }
    return {};
}

// What the command line asks for beyond running, with a folder where one follows.
constexpr struct {
    std::string_view word;
    RequestedPage page;
    RequestedPage alone; ///< without a folder
} requestWords[] = {{"--activate", RequestedPage::Duplicates, RequestedPage::None},
                    {"--duplicates", RequestedPage::Duplicates, RequestedPage::Duplicates},
                    {"--usage", RequestedPage::Usage, RequestedPage::Usage}};

std::optional<InstanceRequest> requestOf(int argc, char **argv) {
    const std::vector<std::string_view> words(argv + std::min(argc, 1), argv + argc);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto *const row =
            std::find_if(std::begin(requestWords), std::end(requestWords),
                         [&](const auto &each) { return each.word == words[i]; });
        if (row == std::end(requestWords))
            continue;
        if (i + 1 == words.size() || words[i + 1].empty() || words[i + 1].starts_with('-'))
            return InstanceRequest{activationToken(), row->alone};
        std::filesystem::path folder = words[i + 1];
        // The one that runs has another working directory.
        std::error_code error;
        if (folder.is_relative())
            folder = std::filesystem::weakly_canonical(folder, error);
        return InstanceRequest{activationToken(), row->page, folder};
    }
    return std::nullopt;
}

// Told here, where the user wrote it, and not in the program that runs, over what it shows.
bool leadsToFolders(const InstanceRequest &request) {
    std::error_code error;
    if (request.folder.empty() || std::filesystem::is_directory(request.folder, error))
        return true;
    tellStarter("there is no folder " + paths::display(request.folder).toStdString());
    return false;
}

QIcon windowIcon() {
    QIcon icon;
    for (const int side : {16, 32, 48, 128})
        icon.addPixmap(pixmapNamed(QStringLiteral("logo-128x128.icns"), QSize(side, side), 1));
    return icon;
}

// The one that was chosen, else the desktop's.
QLocale readersLocale() {
    const QLocale desktop = QLocale::system();
    const QString chosen = UserDefaults::standardUserDefaults().stringForKey(languageKey);
    if (chosen.isEmpty())
        return desktop;
    const QLocale locale(chosen);
    const QLocale spoken(desktop.uiLanguages().value(0));
    // The desktop's own one knows the region as well.
    const bool isSpoken =
        locale.language() == spoken.language() && locale.script() == spoken.script();
    return isSpoken ? desktop : locale;
}

// Qt's own words, those of an input's menu, come from its own files where they are installed.
void speakToUser(QApplication &application) {
    const QLocale user = readersLocale();
    setReader(user);
    auto *const toolkit = new QTranslator(&application);
    if (toolkit->load(user, QStringLiteral("qtbase"), QStringLiteral("_"),
                      QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(toolkit);
    // As the other programs of a desktop do it, whether they speak the language or not.
    QApplication::setLayoutDirection(user.textDirection());
}

void firstFrameShown(Steady::duration took) {
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(took).count();
    NSLog("The first frame was painted after %d ms.", milliseconds);
    // Not needed for the first frame.
    QApplication::setWindowIcon(windowIcon());
}

} // namespace

bool hasDisplay() {
    return isSet("WAYLAND_DISPLAY") || isSet("DISPLAY") || isSet("QT_QPA_PLATFORM");
}

int runApplication(int argc, char **argv, int terminal) {
    const auto start = Steady::now();
    starterTerminal = terminal;
    qInstallMessageHandler(logMessage);
    if (argc > 1 && std::string_view(argv[1]) == probeChartCanvasArgument) {
        const QGuiApplication application(argc, argv);
        return ChartCanvasChoice::probe();
    }
    const auto request = requestOf(argc, argv);
    if (request && !leadsToFolders(*request))
        return failureStatus;
    MacLog::createSupportFolder();

    QApplication::setDesktopFileName(QLatin1String(bundleIdentifier));
    QApplication::setApplicationDisplayName(QStringLiteral("Brightsweep"));
    static int argumentCount = argc;
    auto *const application = new QApplication(argumentCount, argv);
    displayReached = true;
    speakToUser(*application);
    QApplication::setQuitOnLastWindowClosed(false);

    switch (Platform::current().instance->claim(
        true, request.value_or(InstanceRequest{activationToken()}))) {
    case InstanceOutcome::PassedOn:
        return 0;
    case InstanceOutcome::Hanging:
        tellStarter("another one is running and does not answer");
        return failureStatus;
    case InstanceOutcome::First:
    case InstanceOutcome::Failed:
        break;
    }

    RemovalRun::putBackLeftModes();
    theme::follow(*application);
    auto *const statusItem =
        new CustomStatusItemView(*Platform::current().statusItem, *new TrayStatusItem);
    AppDelegateParts parts;
    parts.guide = guidePath();
    parts.statusItem = statusItem;
    parts.renderStatusImage = CustomStatusItemView::drawnImages;
    parts.makeCleanWindow = makeQuickCleanWindow;
    auto *const delegate = new AppDelegate(std::move(parts));
    QObject::connect(new QuitSignals, &QuitSignals::quitRequested, delegate, &AppDelegate::quit);
    auto *const views = new ApplicationViews(*delegate, *statusItem);
    QObject::connect(&views->mainWindow(), &MainWindow::firstFramePainted, application,
                     [start] { firstFrameShown(Steady::now() - start); });
    delegate->applicationWillFinishLaunching();
    delegate->applicationDidFinishLaunching();
    if (request && (request->page != RequestedPage::None ||
                    !AppPrefsWindowController::sharedPrefsWindowController().isVisible()))
        delegate->handleReopenAppEvent(*request);
    std::atexit(endWithoutDisplay);
    const int status = QApplication::exec();
    UserDefaults::standardUserDefaults().synchronize();
    return status;
}

} // namespace brightsweep
