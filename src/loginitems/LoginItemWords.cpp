#include "loginitems/LoginItemWords.h"

#include "core/Texts.h"
#include "foundation/Paths.h"

#include <algorithm>
#include <array>

namespace brightsweep {

namespace {

struct ObstacleWords {
    LoginItemObstacle obstacle;
    const char *mark;
    const char *sentence; ///< with the detail as %1, or without
};

using enum LoginItemObstacle;

constexpr std::array obstacles = {
    ObstacleWords{OtherDesktop, QT_TRID_NOOP("LOGIN_ELSEWHERE_MARK"),
                  QT_TRID_NOOP("LOGIN_ONLY_IN")},
    ObstacleWords{NotThisDesktop, QT_TRID_NOOP("LOGIN_ELSEWHERE_MARK"),
                  QT_TRID_NOOP("LOGIN_NOT_IN")},
    ObstacleWords{TryExecMissing, QT_TRID_NOOP("LOGIN_ELSEWHERE_MARK"),
                  QT_TRID_NOOP("LOGIN_NEEDS")},
    ObstacleWords{NoCommand, QT_TRID_NOOP("LOGIN_STAYS_MARK"), QT_TRID_NOOP("LOGIN_NO_COMMAND")},
    ObstacleWords{NotApplication, QT_TRID_NOOP("LOGIN_STAYS_MARK"),
                  QT_TRID_NOOP("LOGIN_NO_APPLICATION")},
    ObstacleWords{Unreadable, QT_TRID_NOOP("LOGIN_UNREADABLE_MARK"),
                  QT_TRID_NOOP("LOGIN_UNREADABLE")},
    ObstacleWords{NotExecutable, QT_TRID_NOOP("LOGIN_STAYS_MARK"),
                  QT_TRID_NOOP("LOGIN_NOT_EXECUTABLE")},
    ObstacleWords{NotUtf8, QT_TRID_NOOP("LOGIN_DAMAGED_MARK"), QT_TRID_NOOP("LOGIN_NOT_UTF8")},
    ObstacleWords{ByteOrderMark, QT_TRID_NOOP("LOGIN_DAMAGED_MARK"),
                  QT_TRID_NOOP("LOGIN_BYTE_ORDER_MARK")},
    ObstacleWords{BadLine, QT_TRID_NOOP("LOGIN_DAMAGED_MARK"), QT_TRID_NOOP("LOGIN_BAD_LINE")},
    ObstacleWords{TwoValues, QT_TRID_NOOP("LOGIN_DAMAGED_MARK"), QT_TRID_NOOP("LOGIN_TWO_VALUES")},
    ObstacleWords{LineEnds, QT_TRID_NOOP("LOGIN_DAMAGED_MARK"), QT_TRID_NOOP("LOGIN_LINE_ENDS")},
    ObstacleWords{NameTooLong, QT_TRID_NOOP("LOGIN_DAMAGED_MARK"),
                  QT_TRID_NOOP("LOGIN_NAME_TOO_LONG")},
    ObstacleWords{FolderMissing, QT_TRID_NOOP("LOGIN_MISSING_MARK"),
                  QT_TRID_NOOP("LOGIN_FOLDER_MISSING")},
};

const ObstacleWords *wordsOf(const LoginItemEntry &entry) {
    const auto *const found =
        std::find_if(obstacles.begin(), obstacles.end(),
                     [&](const ObstacleWords &row) { return row.obstacle == entry.obstacle; });
    return found == obstacles.end() ? nullptr : found;
}

} // namespace

QString reasonOf(const LoginItemEntry &entry) {
    const ObstacleWords *const words = wordsOf(entry);
    if (!words)
        return entry.missing ? localizedText("LOGIN_MISSING") : QString();
    const QString sentence = localizedText(words->sentence);
    return sentence.contains(QLatin1String("%1"))
               ? sentence.arg(nameInSentence(paths::display(entry.obstacleDetail)))
               : sentence;
}

QString markOf(const LoginItemEntry &entry) {
    if (const ObstacleWords *const words = wordsOf(entry))
        return localizedText(words->mark);
    return entry.missing ? localizedText("LOGIN_MISSING_MARK") : QString();
}

QString startedBy(const LoginItemEntry &entry) {
    return entry.commandToldAsItStands && !entry.command.empty()
               ? paths::display(entry.command)
               : paths::displayFromHome(entry.path);
}

} // namespace brightsweep
