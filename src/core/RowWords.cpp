#include "core/RowWords.h"

#include "core/Texts.h"
#include "core/UtilityFunction.h"

#include <QDateTime>

namespace brightsweep {

namespace {

QString join(QStringList parts, const QString &between) {
    parts.removeAll({});
    return parts.join(between);
}

} // namespace

QString sizeWords(std::uint64_t bytes) {
    return readersSize(UtilityFunction::convertVolSpace(bytes));
}

QString countWords(const char *key, std::size_t count, std::uint64_t bytes) {
    return localizedText(key, count).arg(sizeWords(bytes));
}

QString dateWords(FileTime time) {
    using std::chrono::duration_cast;
    const auto milliseconds = duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
    return reader().toString(QDateTime::fromMSecsSinceEpoch(milliseconds.count()),
                             QLocale::ShortFormat);
}

QString plainToolTip(const QStringList &lines) {
    QStringList escaped;
    for (const QString &line : lines)
        escaped += line.toHtmlEscaped();
    return QStringLiteral("<qt>%1</qt>").arg(join(escaped, QStringLiteral("<br>")));
}

QString spokenWords(const QStringList &parts) {
    return join(parts, QStringLiteral(", "));
}

} // namespace brightsweep
