#pragma once

#include "ui/Theme.h"

#include <QString>

namespace brightsweep::popup {

inline constexpr int statedWidth = 280;
inline constexpr int rowRadius = 6;

/// A measure of the popup, grown as the desktop's text is.
inline int scaled(int stated) {
    constexpr int fine = 1000;
    return (stated * theme::height(fine) + fine / 2) / fine;
}

inline int width() {
    return scaled(statedWidth);
}

/// A name as one line: what would break it stands as blanks.
inline QString oneLine(QString name) {
    for (QChar &character : name) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = u' ';
    }
    return name;
}

} // namespace brightsweep::popup
