#pragma once

#include "foundation/FileTime.h"

#include <QStringList>

#include <cstddef>
#include <cstdint>

namespace brightsweep {

/// What the rows of the lists say, in the reader's language. Any thread.

QString sizeWords(std::uint64_t bytes);
/// The text of `key` with its plural form for `count`, "%1" being the size.
QString countWords(const char *key, std::size_t count, std::uint64_t bytes);
/// Date and time in the locale's short form.
QString dateWords(FileTime time);
/// The lines of a tool tip; empty ones are left out. Qt takes a tool tip for rich text when it
/// looks like it; this one shows every character as it is.
QString plainToolTip(const QStringList &lines);
/// A name and what else there is to say of it, for a screen reader; empty ones are left out.
QString spokenWords(const QStringList &parts);

} // namespace brightsweep
