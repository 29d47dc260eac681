#pragma once

#include "cleaning/CleanStyledText.h"

#include <QDateTime>

#include <cstddef>
#include <cstdint>

namespace brightsweep {

/// The lines of the clean page, with what stands out in them.
namespace cleanPageTexts {

// Keys of texts.

inline constexpr char warningTitle[] = QT_TRID_NOOP("Are you sure you want to continue?");
inline constexpr char warningText[] = QT_TRID_NOOP(
    "Downloads folder is selected to clean. We recommend you to view this folder for anything "
    "useful before emptying it.");
inline constexpr char privilegesText[] = QT_TRID_NOOP(
    "You do not have privileges to clean these files. Please open the padlock at the bottom to "
    "have admin access.");
inline constexpr char restartText[] =
    QT_TRID_NOOP("The scan was stopped. Brightsweep has to be restarted before it can scan again.");

/// "%d of %d selected, %@ will free up."
CleanStyledText countLine(std::size_t selected, std::size_t total, std::uint64_t bytes);
/// "%@ is cleaned"
CleanStyledText cleanedLine(std::uint64_t bytes);
/// The free space of the startup volume before and after a clean, in words.
QString freeSpaceLine(const QString &before, const QString &after);
/// What the last clean recovered, and the startup volume, whose texts come from "FreeTotleArr".
/// Where nothing was recovered it is about the volume alone. An invalid date leaves its place
/// empty.
CleanStyledText recoveredLine(std::uint64_t bytes, const QDateTime &date, const QString &freeString,
                              const QString &totleString);

} // namespace cleanPageTexts

/// What heads the page for a row of the left list.
struct CleanHeading {
    QString title;
    CleanStyledText description;
    QString image;
};

/// The heading of a row but the overview's description, which is recoveredLine(). Nothing, and a
/// line in the log, for a row without one.
CleanHeading changeNoteText(int row);

} // namespace brightsweep
