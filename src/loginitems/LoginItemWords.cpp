#include "loginitems/LoginItemWords.h"

#include "core/Texts.h"
#include "foundation/Paths.h"

#include <array>

namespace brightsweep {

namespace {

struct ObstacleWords {
    LoginItemObstacle obstacle;
    const char *sentence; ///< with the detail as %1, or without
};

constexpr std::array sentences = {
    ObstacleWords{LoginItemObstacle::OtherDesktop, QT_TRID_NOOP("LOGIN_ONLY_IN")},
    ObstacleWords{LoginItemObstacle::NotThisDesktop, QT_TRID_NOOP("LOGIN_NOT_IN")},
    ObstacleWords{LoginItemObstacle::TryExecMissing, QT_TRID_NOOP("LOGIN_NEEDS")},
    ObstacleWords{LoginItemObstacle::NoCommand, QT_TRID_NOOP("LOGIN_NO_COMMAND")},
    ObstacleWords{LoginItemObstacle::NotApplication, QT_TRID_NOOP("LOGIN_NO_APPLICATION")},
    ObstacleWords{LoginItemObstacle::Unreadable, QT_TRID_NOOP("LOGIN_UNREADABLE")},
};

} // namespace

QString reasonOf(const LoginItemEntry &entry) {
    for (const ObstacleWords &row : sentences) {
        if (row.obstacle != entry.obstacle)
            continue;
        const QString sentence = localizedText(row.sentence);
        return sentence.contains(QLatin1String("%1"))
                   ? sentence.arg(nameInSentence(paths::display(entry.obstacleDetail)))
                   : sentence;
    }
    return entry.missing ? localizedText("LOGIN_MISSING") : QString();
}

QString markOf(const LoginItemEntry &entry) {
    if (entry.obstacle == LoginItemObstacle::Unreadable)
        return localizedText("LOGIN_UNREADABLE_MARK");
    if (entry.obstacle != LoginItemObstacle::None)
        return localizedText("LOGIN_ELSEWHERE_MARK");
    return entry.missing ? localizedText("LOGIN_MISSING_MARK") : QString();
}

QString startedBy(const LoginItemEntry &entry) {
    return entry.commandToldAsItStands && !entry.command.empty()
               ? paths::display(entry.command)
               : paths::displayFromHome(entry.path);
}

} // namespace brightsweep
