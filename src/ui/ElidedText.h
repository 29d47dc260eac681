#pragma once

#include <Qt>

class QFontMetrics;
class QString;

namespace brightsweep {

/// The text cut to `room` pixels. QFontMetrics::elidedText() counts glyphs one by one and takes up
/// to a few pixels more where letters beside the ellipsis are set apart; this one never does, but
/// for the ellipsis alone, which may be wider than the room.
QString elidedText(const QFontMetrics &metrics, const QString &text, Qt::TextElideMode mode,
                   int room);
/// The same for a path or a name that begins with a sign: it keeps that sign in front, whatever
/// the direction of the row.
QString elidedPath(const QFontMetrics &metrics, const QString &path, Qt::TextElideMode mode,
                   int room);

} // namespace brightsweep
