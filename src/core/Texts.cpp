#include "core/Texts.h"

#include <QTranslator>

#include <algorithm>

// The macro declares a function and stands outside every namespace for that.
static void initTexts() {
    Q_INIT_RESOURCE(texts);
}

namespace brightsweep {
namespace {

// Bidi isolates: what stands between two of them reorders nothing around it.
constexpr QChar isolateBegin(0x2066); // LRI, left to right
constexpr QChar anyIsolate(0x2068);   // FSI, as its first strong letter says
constexpr QChar isolateEnd(0x2069);

const QString textsFolder = QStringLiteral(":/texts");

struct Reader {
    Reader() {
        initTexts();
        [[maybe_unused]] const bool isThere =
            english.load(QStringLiteral("brightsweep_en"), textsFolder);
        Q_ASSERT(isThere);
    }

    QLocale locale = QLocale::c();
    QTranslator texts; ///< empty for English and for languages that the program does not speak
    QTranslator english;
};

Reader &current() {
    static Reader reader;
    return reader;
}

QString textBehind(const char *key, int count) {
    if (!*key)
        return {};
    const Reader &asked = current();
    QString text = asked.texts.translate(nullptr, key, nullptr, count);
    if (!text.isNull())
        return text;
    text = asked.english.translate(nullptr, key, nullptr, count);
    if (text.isNull())
        return QString::fromUtf8(key);
    // Isolated, or the bidi algorithm would put its full stop at its beginning.
    return asked.locale.textDirection() == Qt::RightToLeft ? isolateBegin + text + isolateEnd
                                                           : text;
}

} // namespace

QString nameInSentence(const QString &name) {
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
        return anyIsolate + QString::fromStdU32String(shown) + isolateEnd;
    return QString::fromStdU32String(shown);
}

void setReader(const QLocale &locale) {
    Reader &asked = current();
    asked.locale = locale;
    // Answers false where the program has no such language.
    static_cast<void>(
        asked.texts.load(locale, QStringLiteral("brightsweep"), QStringLiteral("_"), textsFolder));
}

const QLocale &reader() {
    return current().locale;
}

QString localizedText(const char *key) {
    return textBehind(key, -1);
}

QString localizedText(const QString &key) {
    return textBehind(key.toUtf8().constData(), -1);
}

QString localizedText(const char *key, std::size_t count) {
    // The forms of large numbers repeat; what is beyond int only has to keep its last digits.
    constexpr std::size_t repeats = 1'000'000;
    const auto form = int(count < repeats ? count : repeats + count % repeats);
    return textBehind(key, form).replace(QLatin1String("%n"), readersNumber(count));
}

QString readersNumber(std::uint64_t number) {
    return reader().toString(qulonglong(number));
}

QString readersSize(const QString &words) {
    constexpr auto unitLength = 2;
    const QString figure = words.chopped(std::min<qsizetype>(unitLength, words.size())).trimmed();
    bool isNumber = false;
    const double number = figure.toDouble(&isNumber);
    if (!isNumber || !words.endsWith(QLatin1Char('B')))
        return words;
    const auto point = figure.indexOf(QLatin1Char('.'));
    QLocale locale = reader();
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(number, 'f', point < 0 ? 0 : int(figure.size() - point - 1)) +
           words.mid(figure.size());
}

} // namespace brightsweep
