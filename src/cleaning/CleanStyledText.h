#pragma once

#include <QString>

#include <vector>

namespace brightsweep {

/// A line of a page with the parts that stand out in it. Sizes are those of the pages, to be scaled
/// to the desktop's font; the rest of the line is white and plain.
struct CleanStyledText {
    struct Span {
        int start = 0;
        int length = 0;
        int size = 0; ///< 0: that of the line
        bool bold = false;
        bool operator==(const Span &) const = default;
    };

    QString text;
    int size = 12;
    std::vector<Span> accented;
    bool isOutcome = false; ///< what was reached: large, in the colour of success
    bool operator==(const CleanStyledText &) const = default;
};

} // namespace brightsweep
