#include "uninstall/UninstallTexts.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Identity.h"
#include "foundation/Paths.h"
#include "uninstall/RemovalPlanner.h"

#include <array>
#include <set>

namespace brightsweep::UninstallTexts {

namespace {

// In the order of the enumerations.
constexpr std::array kinds = {
    QT_TRID_NOOP("KIND_BUNDLE"), QT_TRID_NOOP("KIND_PACKAGE"),  QT_TRID_NOOP("KIND_FLATPAK"),
    QT_TRID_NOOP("KIND_SNAP"),   QT_TRID_NOOP("KIND_APPIMAGE"), QT_TRID_NOOP("KIND_FOLDER"),
};
constexpr std::array leftovers = {
    QT_TRID_NOOP("LEFT_CONFIG"), QT_TRID_NOOP("LEFT_CACHE"), QT_TRID_NOOP("LEFT_STATE"),
    QT_TRID_NOOP("LEFT_DATA"),   QT_TRID_NOOP("LEFT_ENTRY"), QT_TRID_NOOP("LEFT_SYSTEM"),
};
constexpr std::array obstacles = {
    "",
    QT_TRID_NOOP("STAYS_ESSENTIAL"),
    QT_TRID_NOOP("STAYS_TOO_MANY"),
    QT_TRID_NOOP("STAYS_IMAGE"),
    QT_TRID_NOOP("STAYS_NEEDED_BY_US"),
    QT_TRID_NOOP("STAYS_BUSY"),
    QT_TRID_NOOP("STAYS_INTERRUPTED"),
    QT_TRID_NOOP("STAYS_GONE"),
    QT_TRID_NOOP("STAYS_UNSUPPORTED"),
};
constexpr std::array outcomes = {
    "",
    QT_TRID_NOOP("STAYS_NEEDS_RIGHTS"),
    QT_TRID_NOOP("STAYS_DISMISSED"),
    QT_TRID_NOOP("STAYS_CHANGED"),
    QT_TRID_NOOP("STAYS_BUSY"),
    QT_TRID_NOOP("STAYS_FAILED"),
    QT_TRID_NOOP("STAYS_BROKEN"),
};
// What sources and searches say; "%1" stands for a name.
constexpr std::array reasons = {
    QT_TRID_NOOP("starts the system"),
    QT_TRID_NOOP("installs and removes programs"),
    QT_TRID_NOOP("asks for the administrator's password"),
    QT_TRID_NOOP("is part of the desktop that is running"),
    QT_TRID_NOOP("is the kernel that is running"),
    QT_TRID_NOOP("part of the collection %1"),
    QT_TRID_NOOP("part of every standard installation"),
    QT_TRID_NOOP("the system cannot do without it"),
    QT_TRID_NOOP(
        "The package manager was interrupted. Run \"dpkg --configure -a\" as administrator "
        "first."),
    QT_TRID_NOOP("The package manager was interrupted. Run \"apt-get -f install\" as administrator "
                 "first."),
    QT_TRID_NOOP("Work on %1 was interrupted. Run \"dpkg --configure -a\" as administrator first."),
    QT_TRID_NOOP("Work on %1 was interrupted. Run \"apt-get -f install\" as administrator first."),
    QT_TRID_NOOP("Work on %1 was interrupted. Run \"dpkg --configure -a\" as administrator first; "
                 "where that fails, remove it with \"dpkg --remove\" and its name."),
    QT_TRID_NOOP("Work on %1 was interrupted. Install it again as administrator first, with "
                 "\"apt-get install --reinstall\" and its name; where no archive of it is found, "
                 "remove it with \"dpkg --remove --force-remove-reinstreq\" and its name."),
    QT_TRID_NOOP("Another program is using it. Wait until that has ended, and try again."),
    QT_TRID_NOOP("needed by %1"),
    QT_TRID_NOOP("used by %1"),
    QT_TRID_NOOP("its program lies in what is kept"),
    QT_TRID_NOOP("there is nothing in it but what is kept"),
    QT_TRID_NOOP("the Flatpak is not installed"),
    QT_TRID_NOOP("the snap is not installed"),
    QT_TRID_NOOP("what an application wrote that was removed"),
    QT_TRID_NOOP("starts a Flatpak that is not installed"),
    QT_TRID_NOOP("starts \"%1\", which is not there"),
    QT_TRID_NOOP("has the name of \"%1\", which was removed"),
};
static_assert(kinds.size() == std::size_t(ApplicationKind::Folder) + 1);
static_assert(leftovers.size() == std::size_t(LeftoverKind::System) + 1);
static_assert(obstacles.size() == std::size_t(Blocker::Unsupported) + 1);
static_assert(outcomes.size() == std::size_t(UninstallOutcome::Broken) + 1);

template <typename Names>
QString listed(const Names &names) {
    QStringList words;
    for (const auto &name : names)
        words += nameInSentence(paths::display(name));
    return words.join(QStringLiteral(", "));
}

QString withDetail(const QString &words, const std::string &detail) {
    return detail.empty() ? words : QStringLiteral("%1 (%2)").arg(words, translated(detail));
}

} // namespace

QString kind(ApplicationKind kind) {
    return localizedText(kinds.at(std::size_t(kind)));
}

QString leftover(LeftoverKind kind) {
    return localizedText(leftovers.at(std::size_t(kind)));
}

QString translated(const std::string &reason) {
    const QString words = paths::display(reason);
    for (const char *const key : reasons) {
        const QString form = QLatin1String(key);
        const auto place = form.indexOf(QLatin1String("%1"));
        if (place < 0) {
            if (words == form)
                return localizedText(key);
            continue;
        }
        const auto rest = form.size() - place - 2;
        if (words.startsWith(form.left(place)) && words.endsWith(form.right(rest)) &&
            words.size() >= form.size() - 2)
            return localizedText(key).arg(words.mid(place, words.size() - place - rest));
    }
    return words;
}

QString systemReason(const InstalledApplication &application) {
    return translated(application.systemReason);
}

QString obstacle(const RemovalPlan &plan) {
    if (plan.blocker == Blocker::NeededByUs && plan.application.desktopId() == bundleIdentifier)
        return localizedText("STAYS_OWN");
    return plan.blocker == Blocker::None ? QString()
                                         : localizedText(obstacles.at(std::size_t(plan.blocker)));
}

QString obstacle(const Leftover &leftover) {
    if (leftover.refusal)
        return localizedText(QString::fromStdString(leftover.refusal.message()));
    return leftover.needsRights ? localizedText("STAYS_NEEDS_RIGHTS") : QString();
}

QString leftoverNote(const Leftover &leftover, const QString &reason) {
    QStringList parts = {UninstallTexts::leftover(leftover.kind), reason, obstacle(leftover)};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(" · "));
}

QString reason(const Uninstallation::Record &record, bool hadRights) {
    if (const QString why = obstacle(record.plan); !why.isEmpty())
        return withDetail(why, record.message);
    if (record.outcome == UninstallOutcome::NeedsRights)
        return hadRights ? withDetail(localizedText("STAYS_FAILED"), record.message)
                         : localizedText("STAYS_NEEDS_RIGHTS");
    if (record.outcome != UninstallOutcome::Removed) {
        const QString words =
            withDetail(localizedText(outcomes.at(std::size_t(record.outcome))), record.message);
        return record.wayOut.empty()
                   ? words
                   : QStringLiteral("%1. %2").arg(words, translated(record.wayOut));
    }
    QStringList stayed;
    for (const auto &item : record.items) {
        if (item.removed)
            continue;
        const QString why = item.neededRights && !hadRights
                                ? localizedText("STAYS_NEEDS_RIGHTS")
                                : localizedText(paths::display(item.error));
        stayed +=
            QStringLiteral("%1 (%2)").arg(nameInSentence(paths::displayFromHome(item.path)), why);
    }
    return localizedText("STAYS_LEFTOVERS").arg(stayed.join(QStringLiteral(", ")));
}

QStringList sentences(const RemovalPlan &plan) {
    QStringList sentences;
    if (!plan.also.empty())
        sentences += localizedText("UNINSTALL_ALONG", plan.also.size()).arg(listed(plan.also));
    if (const auto &entries = plan.application.otherEntries; !entries.empty())
        sentences += localizedText("UNINSTALL_ENTRIES").arg(listed(entries));
    if (needsRights(plan))
        sentences += localizedText("UNINSTALL_NEEDS_RIGHTS");
    if (!plan.running.empty())
        sentences +=
            localizedText("UNINSTALL_RUNNING")
                .arg(listed(std::set<std::string>(plan.running.begin(), plan.running.end())));
    return sentences;
}

QString systemSettings(const RemovalPlan &plan) {
    if (!plan.systemSettings.empty())
        return localizedText("UNINSTALL_PURGE").arg(listed(plan.systemSettings));
    return plan.application.kind == ApplicationKind::Snap ? localizedText("UNINSTALL_SNAP_COPY")
                                                          : QString();
}

Sum sum(const std::vector<RemovalPlan> &plans, const std::vector<std::uint64_t> &sizes) {
    Sum sum;
    std::set<std::string> along;
    std::set<std::string> own;
    for (std::size_t i = 0; i < plans.size(); ++i) {
        const RemovalPlan &plan = plans[i];
        if (!obstacle(plan).isEmpty())
            continue;
        ++sum.applications;
        sum.bytes += i < sizes.size() ? sizes[i] : 0;
        own.insert(plan.application.key);
        along.insert(plan.also.begin(), plan.also.end());
        for (const Leftover &leftover : plan.leftovers) {
            (leftover.ticked ? sum.leftovers : sum.staying) += 1;
            (leftover.ticked ? sum.bytes : sum.stayingBytes) += leftover.bytes;
        }
    }
    // What is ticked by itself is no company of another one.
    std::erase_if(along, [&](const std::string &name) { return own.contains(name); });
    sum.along = along.size();
    return sum;
}

QStringList sentences(const Sum &sum) {
    QStringList parts = {localizedText("UNINSTALL_SUM_APPS", sum.applications)};
    if (sum.along > 0)
        parts += localizedText("UNINSTALL_SUM_ALONG", sum.along);
    if (sum.leftovers > 0)
        parts += localizedText("UNINSTALL_SUM_LEFT", sum.leftovers);
    QStringList sentences = {
        localizedText("UNINSTALL_SUM").arg(sizeWords(sum.bytes), parts.join(QStringLiteral(", ")))};
    if (sum.staying > 0)
        sentences +=
            localizedText("UNINSTALL_SUM_STAYS", sum.staying).arg(sizeWords(sum.stayingBytes));
    return sentences;
}

} // namespace brightsweep::UninstallTexts
