#include "ui/ElidedText.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QString>

namespace brightsweep {

QString elidedText(const QFontMetrics &metrics, const QString &text, Qt::TextElideMode mode,
                   int room) {
    for (int least = room;;) {
        QString cut = metrics.elidedText(text, mode, least);
        const int over = metrics.horizontalAdvance(cut) - room;
        if (over <= 0 || least <= 0)
            return cut;
        least -= over;
    }
}

QString elidedPath(const QFontMetrics &metrics, const QString &path, Qt::TextElideMode mode,
                   int room) {
    QString cut = elidedText(metrics, path, mode, room);
    if (!QGuiApplication::isLeftToRight())
        cut = QChar(0x2068) + cut + QChar(0x2069);
    return cut;
}

} // namespace brightsweep
