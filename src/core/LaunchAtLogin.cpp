#include "core/LaunchAtLogin.h"

#include "core/Operation.h"
#include "core/OperationQueue.h"
#include "core/SettingKeys.h"
#include "core/UKLoginItemRegistry.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/UserDefaults.h"
#include "platform/Platform.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <limits>
#include <memory>

namespace brightsweep {

namespace {

class EntryRenewal final : public Operation {
public:
    EntryRenewal(bool wanted, std::filesystem::path program)
        : m_wanted(wanted), m_program(std::move(program)) {}

    void main() override {
        UKLoginItemRegistry::removeLoginItemWithPath(m_program);
        // One that was made before the program moved.
        if (!m_wanted)
            Platform::current().loginItems->remove(std::string(bundleIdentifier) + ".desktop");
        if (!m_wanted || UKLoginItemRegistry::addLoginItemWithPath(m_program, false))
            return;
        NSLog("Registry login item failed!!!");
        const std::string reason = Platform::current().loginItems->unavailableReason();
        if (!reason.empty())
            NSLog("Login items are not available: %@", reason);
    }

private:
    const bool m_wanted;
    const std::filesystem::path m_program;
};

OperationQueue &renewals() {
    // Never destroyed: the process ends without destructors.
    static auto *const queue = new OperationQueue;
    return *queue;
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

void LaunchAtLogin::launchAppWhenLogin(int state, const std::filesystem::path &program) {
    writeFileOfLaunchAppWhenLogin(QString::number(state));
    renewals().addOperation(
        std::make_shared<EntryRenewal>(state == 1, program.empty() ? ownProgram() : program));
}

bool LaunchAtLogin::isIdle() {
    return renewals().isIdle();
}

std::filesystem::path LaunchAtLogin::ownProgram() {
    const QByteArray bytes = QFile::encodeName(QCoreApplication::applicationFilePath());
    return bytes.toStdString();
}

} // namespace brightsweep
