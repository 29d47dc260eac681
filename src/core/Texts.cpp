#include "core/Texts.h"

#include <QFile>
#include <QLocale>

#include <algorithm>
#include <string>
#include <vector>

// The macro declares a function and stands outside every namespace for that.
static void initTexts() {
    Q_INIT_RESOURCE(texts);
}

namespace brightsweep {
namespace {

/// "de-DE" asks for "de-DE", then for "de".
std::vector<TextTable> tablesOfUser() {
    QStringList languages;
    for (const QString &wanted : QLocale::system().uiLanguages()) {
        languages.append(wanted);
        languages.append(wanted.section(QLatin1Char('-'), 0, 0));
    }
    languages.append(QStringLiteral("en"));
    languages.removeDuplicates();
    std::vector<TextTable> tables;
    for (const QString &language : languages) {
        TextTable table = TextTable::ofLanguage(language);
        if (!table.keys().isEmpty())
            tables.push_back(std::move(table));
        if (language == QLatin1String("en"))
            break;
    }
    return tables;
}

} // namespace

QString nameInSentence(const QString &name) {
    constexpr char32_t isolateBegin = 0x2068;
    constexpr char32_t isolateEnd = 0x2069;
    bool runsFromTheRight = false;
    std::u32string shown;
    for (const char32_t character : name.toStdU32String()) {
        switch (QChar::direction(character)) {
        case QChar::DirLRE:
        case QChar::DirLRO:
        case QChar::DirRLE:
        case QChar::DirRLO:
        case QChar::DirPDF:
        case QChar::DirLRI:
        case QChar::DirRLI:
        case QChar::DirFSI:
        case QChar::DirPDI:
            continue;
        case QChar::DirR:
        case QChar::DirAL:
            runsFromTheRight = true;
            break;
        default:
            break;
        }
        shown += character;
    }
    if (runsFromTheRight)
        shown = isolateBegin + shown + isolateEnd;
    return QString::fromStdU32String(shown);
}

TextTable TextTable::ofLanguage(const QString &language) {
    initTexts();
    QFile file(QStringLiteral(":/texts/") + language);
    return file.open(QIODevice::ReadOnly) ? fromBytes(file.readAll()) : TextTable();
}

TextTable TextTable::fromBytes(const QByteArray &bytes) {
    TextTable table;
    for (const QByteArray &raw : bytes.split('\n')) {
        const QString line = QString::fromUtf8(raw).trimmed();
        const auto middle = line.indexOf(QLatin1Char('='));
        if (line.startsWith(QLatin1Char('#')) || middle < 1)
            continue;
        QString text = line.mid(middle + 1).trimmed();
        text.replace(QLatin1String("\\n"), QLatin1String("\n"));
        table.m_lines.push_back({line.left(middle).trimmed(), text});
    }
    std::stable_sort(table.m_lines.begin(), table.m_lines.end(),
                     [](const Line &one, const Line &other) { return one.key < other.key; });
    return table;
}

QString TextTable::text(QLatin1String key) const {
    const auto found =
        std::lower_bound(m_lines.begin(), m_lines.end(), key,
                         [](const Line &line, QLatin1String wanted) { return line.key < wanted; });
    return found != m_lines.end() && found->key == key ? found->text : QString();
}

QStringList TextTable::keys() const {
    QStringList keys;
    for (const Line &line : m_lines)
        keys.append(line.key);
    return keys;
}

QString localizedText(const char *key) {
    static const std::vector<TextTable> tables = tablesOfUser();
    for (const TextTable &table : tables) {
        const QString text = table.text(QLatin1String(key));
        if (!text.isNull())
            return text;
    }
    return QString::fromLatin1(key);
}

} // namespace brightsweep
