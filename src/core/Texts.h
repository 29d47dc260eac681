#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace brightsweep {

/// The text behind a key of resources/texts/, in the first of the user's languages that has it,
/// else in English; the key itself where no table knows it. Any thread.
QString localizedText(const char *key);

/// A name as it stands amid other words: one that runs from right to left is set apart, and marks
/// of direction are left out, so that it turns nothing but itself. Any thread.
QString nameInSentence(const QString &name);

/// One table of texts: lines of "KEY = text", in which "\n" stands for a line break; empty lines
/// and those that begin with "#" hold nothing. Where a key comes twice the first line holds.
class TextTable {
public:
    /// Reads the table of a language ("en"); empty where the program has none.
    static TextTable ofLanguage(const QString &language);
    static TextTable fromBytes(const QByteArray &bytes);

    /// Null where the key is missing.
    QString text(QLatin1String key) const;
    QStringList keys() const;

private:
    struct Line {
        QString key;
        QString text;
    };
    std::vector<Line> m_lines; // by key
};

} // namespace brightsweep
