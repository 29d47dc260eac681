#pragma once

#include <QLocale>
#include <QString>
#include <QtGlobal>

#include <cstddef>
#include <cstdint>

namespace brightsweep {

/// Whom the program speaks to. Until the window has called this, and always on the command line,
/// texts are English and numbers those of the C locale, so that what is stored, logged or printed
/// for another program is the same for everybody. Before any other thread starts.
void setReader(const QLocale &locale);
const QLocale &reader();

/// The text behind a key of resources/texts/ in the reader's language, else in English; the key
/// itself where no table knows it. A key that is no literal of such a call is marked by
/// QT_TRID_NOOP where it stands. Any thread.
QString localizedText(const char *key);
QString localizedText(const QString &key);
/// The same in the form of the language for a number, which stands in the place of "%n".
QString localizedText(const char *key, std::size_t count);

/// A whole number with the reader's digits and separators. Any thread.
QString readersNumber(std::uint64_t number);
/// A size in the program's words, "12.00 MB", with the reader's decimals; anything else as it is.
/// Only to be shown: sizes are read back from the program's words. Any thread.
QString readersSize(const QString &words);

/// A name as it stands amid other words: one that runs from right to left is set apart, and marks
/// of direction are left out, so that it turns nothing but itself. Any thread.
QString nameInSentence(const QString &name);

} // namespace brightsweep
