#include "core/LaunchAtLogin.h"

#include "core/FunctionOperation.h"
#include "core/OperationQueue.h"
#include "core/SettingKeys.h"
#include "core/Texts.h"
#include "core/UKLoginItemRegistry.h"
#include "foundation/CallQueue.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "platform/Platform.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <atomic>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

namespace brightsweep {

namespace {

// What is known of the entry, by the main thread.
struct Known {
    std::filesystem::path program;            // the watched one
    std::optional<bool> starts;               // as last read
    std::error_code problem;                  // of the last change
    int changes = 0;                          // under way
    bool wanted = false;                      // by the last change
    std::atomic<bool> isReadingWanted{false}; // one waits, that has not begun
    CallQueue calls;
    OperationQueue queue; // the last one: it waits for work that uses what stands above
};

std::unique_ptr<Known> &known() {
    // Never destroyed: the process ends without destructors.
    static auto *const it = new std::unique_ptr<Known>(std::make_unique<Known>());
    return *it;
}

std::optional<bool> isStarted(const std::filesystem::path &program) {
    const auto items = UKLoginItemRegistry::allLoginItems();
    if (!items)
        return {};
    return std::any_of(items->begin(), items->end(), [&](const LoginItem &item) {
        return (item.entry.path == program || item.entry.file == LaunchAtLogin::ownFile()) &&
               !item.hidden && !item.entry.missing &&
               item.entry.obstacle == LoginItemObstacle::None;
    });
}

// Changes the entry where that is wanted, and reads it.
void ask(const std::filesystem::path &program, std::optional<bool> wanted = {},
         std::function<void(const QString &problem)> ended = {}) {
    Known &now = *known();
    // What was asked for and has not begun sees all that has happened until now.
    if (!wanted && now.isReadingWanted.exchange(true))
        return;
    now.changes += wanted ? 1 : 0;
    now.wanted = wanted.value_or(now.wanted);
    now.queue.addOperation(std::make_shared<FunctionOperation>(
        [&now, program, wanted, ended = std::move(ended)]() mutable {
            std::error_code problem;
            if (wanted)
                problem = LaunchAtLogin::renewEntry(*wanted, program);
            else
                now.isReadingWanted = false;
            const auto starts = isStarted(program);
            now.calls.post([wanted, problem, starts, ended = std::move(ended)] {
                Known &then = *known();
                then.starts = starts;
                if (wanted) {
                    --then.changes;
                    then.problem = problem;
                }
                NotificationCenter::defaultCenter().post(LaunchAtLoginDidChangeNotification);
                if (ended)
                    ended(LaunchAtLogin::problem());
            });
        }));
}

} // namespace

void LaunchAtLogin::writeFileOfLaunchAppWhenLogin(const QString &state) {
    using Limits = std::numeric_limits<int>;
    const auto number =
        std::clamp<std::int64_t>(integerFromText(state), Limits::min(), Limits::max());
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.setObject(DSLoginCheckKey, int(number));
    defaults.synchronize();
}

QString LaunchAtLogin::readeFileOfLaunchAppWhenLogin() {
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    const auto number = int(defaults.integerForKey(DSLoginCheckKey));
    // A word such as "YES" is true and no number.
    return QString::number(number == 0 && defaults.boolForKey(DSLoginCheckKey) ? 1 : number);
}

void LaunchAtLogin::launchAppWhenLogin(int state,
                                       std::function<void(const QString &problem)> ended) {
    const auto &watched = known()->program;
    ask(watched.empty() ? ownProgram() : watched, state == 1, std::move(ended));
    writeFileOfLaunchAppWhenLogin(QString::number(state));
}

std::error_code LaunchAtLogin::renewEntry(bool wanted, const std::filesystem::path &program) {
    const auto items = UKLoginItemRegistry::allLoginItems();
    std::error_code error = items.error();
    for (const LoginItem &item : items.value_or(std::vector<LoginItem>())) {
        // Or one that was made before the program moved.
        if (item.entry.path != program && item.entry.file != ownFile())
            continue;
        const std::error_code failure =
            UKLoginItemRegistry::removeLoginItemWithFile(item.entry.file);
        error = error ? error : failure;
    }
    if (wanted)
        error = UKLoginItemRegistry::addLoginItem(program, false).error();
    if (!error)
        return {};
    NSLog("Registry login item failed!!!");
    const std::string reason = Platform::current().loginItems->unavailableReason();
    if (!reason.empty())
        NSLog("Login items are not available: %@", reason);
    return error;
}

LaunchAtLogin::Watch::Watch(std::filesystem::path program) {
    known()->program = program.empty() ? ownProgram() : std::move(program);
    m_source = Platform::current().loginItems->watch(
        [&calls = known()->calls] { calls.post([] { ask(known()->program); }); });
    ask(known()->program);
}

LaunchAtLogin::Watch::~Watch() {
    m_source.reset();
    // Waits for the old one's work.
    known() = nullptr;
    known() = std::make_unique<Known>();
}

bool LaunchAtLogin::isOn() {
    const Known &now = *known();
    if (now.changes > 0)
        return now.wanted;
    // A list that cannot be read says nothing, but a change that failed does.
    return now.starts.value_or(!now.problem && readeFileOfLaunchAppWhenLogin().toInt() != 0);
}

QString LaunchAtLogin::problem() {
    const std::error_code problem = known()->problem;
    return problem ? localizedText("LAUNCH_FAILED")
                         .arg(localizedText(QString::fromStdString(problem.message())))
                   : QString();
}

std::filesystem::path LaunchAtLogin::ownProgram() {
    const QByteArray folder = QFile::encodeName(QCoreApplication::applicationDirPath());
    return paths::join(folder.toStdString(), "brightsweep");
}

std::string LaunchAtLogin::ownFile() {
    return std::string(bundleIdentifier) + ".desktop";
}

} // namespace brightsweep
