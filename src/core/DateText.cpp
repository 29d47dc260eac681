#include "core/DateText.h"

#include <QRegularExpression>

#include <cstdlib>

namespace brightsweep {

namespace {

const QString dateAndTime = QStringLiteral("yyyy-MM-dd HH:mm:ss");

} // namespace

QString dateText(const QDateTime &date) {
    if (!date.isValid())
        return {};
    const int minutes = date.offsetFromUtc() / 60;
    return date.toString(dateAndTime) + QString::asprintf(" %c%02d%02d", minutes < 0 ? '-' : '+',
                                                          std::abs(minutes) / 60,
                                                          std::abs(minutes) % 60);
}

QDateTime dateFromText(const QString &text) {
    static const QRegularExpression form(
        QStringLiteral("\\A([0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}) "
                       "([+-])([0-9]{2})([0-9]{2})\\z"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return {};
    QDateTime date = QDateTime::fromString(match.captured(1), dateAndTime);
    if (!date.isValid())
        return {};
    const int seconds = (match.captured(3).toInt() * 60 + match.captured(4).toInt()) * 60;
    return QDateTime(date.date(), date.time(), Qt::OffsetFromUTC,
                     match.captured(2) == QLatin1String("-") ? -seconds : seconds);
}

} // namespace brightsweep
