#include "cleaning/CleanPageTexts.h"

#include "cleaning/CleanCategories.h"
#include "core/DateText.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "foundation/Log.h"

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int loudSize = 14;
constexpr int loudestSize = 18;

// What stands in the place of "%1" to "%9" of a sentence.
struct Part {
    QString words;
    int size = 0;
    bool bold = false;
    bool accented = true;
};

Part plain(const QString &words) {
    return {words, 0, false, false};
}

// Each language has its own order, so a part is found by its placeholder.
CleanStyledText styledText(const char *key, const std::vector<Part> &parts) {
    const QString sentence = localizedText(key);
    CleanStyledText styled;
    for (qsizetype place = 0; place < sentence.size(); ++place) {
        const auto part = std::size_t(sentence.mid(place + 1, 1).toUInt()) - 1;
        if (sentence[place] != QLatin1Char('%') || part >= parts.size()) {
            styled.text += sentence[place];
            continue;
        }
        const Part &shown = parts[part];
        if (shown.accented)
            styled.accented.push_back(
                {int(styled.text.size()), int(shown.words.size()), shown.size, shown.bold});
        styled.text += shown.words;
        ++place;
    }
    return styled;
}

// In the program's own form until the reader's is known.
QString dateWords(const QDateTime &date) {
    return reader() == QLocale::c() ? UtilityFunction::parseDateTime(dateText(date))
                                    : reader().toString(date, QLocale::ShortFormat);
}

struct RowTexts {
    int row = 0;
    const char *title = nullptr;
    const char *description = nullptr;
    const char *image = nullptr;
};

// The rows that are no category.
constexpr RowTexts rowTexts[] = {
    {0, QT_TRID_NOOP("TITLE_CLEAN_SYS_MYMAC"), nullptr, "my_mac_b.png"},
    {8, QT_TRID_NOOP("TITLE_UNINSTALL"), QT_TRID_NOOP("DESC_UNINSTALL"), "uninstall_b.png"},
    {9, QT_TRID_NOOP("TITLE_FREESPACE_MONITOR"), QT_TRID_NOOP("DESC_FREESPACE_MONITOR"),
     "disk_b.png"},
};

const RowTexts *textsOf(int row) {
    const auto *const found = std::find_if(std::begin(rowTexts), std::end(rowTexts),
                                           [&](const RowTexts &texts) { return texts.row == row; });
    return found == std::end(rowTexts) ? nullptr : found;
}

} // namespace

CleanStyledText cleanPageTexts::countLine(std::size_t selected, std::size_t total,
                                          std::uint64_t bytes) {
    return styledText(
        "%d of %d selected, %@ will free up.",
        {{readersNumber(selected), loudSize, true}, {readersNumber(total)}, {sizeWords(bytes)}});
}

CleanStyledText cleanPageTexts::cleanedLine(std::uint64_t bytes) {
    CleanStyledText line = styledText("%@ is cleaned", {{sizeWords(bytes)}});
    line.isOutcome = true;
    return line;
}

QString cleanPageTexts::freeSpaceLine(const QString &before, const QString &after) {
    return before.isEmpty() || after.isEmpty()
               ? QString()
               : localizedText("FREE_BEFORE_AFTER").arg(readersSize(before), readersSize(after));
}

CleanStyledText cleanPageTexts::recoveredLine(std::uint64_t bytes, const QDateTime &date,
                                              const QString &freeString,
                                              const QString &totleString) {
    if (bytes == 0)
        return styledText("CAPACITY",
                          {plain(readersSize(freeString)), plain(readersSize(totleString))});
    return styledText("%@ space has been recovered since last clean %@. The capacity of startup "
                      "disk is %@, and %@ is available.",
                      {{sizeWords(bytes), loudestSize, true},
                       plain(date.isValid() ? dateWords(date) : QString()),
                       plain(readersSize(freeString)),
                       plain(readersSize(totleString))});
}

CleanHeading changeNoteText(int row) {
    RowTexts texts;
    if (row >= rowOfCategory(0) && row < rowOfCategory(categoryCount)) {
        const CleanCategory &category = cleanCategories[std::size_t(row - rowOfCategory(0))];
        texts = {row, category.titleKey, category.descriptionKey, category.headingImage};
    } else if (const RowTexts *const found = textsOf(row)) {
        texts = *found;
    } else {
        NSLog("请核对名字（KEY）是否与LocalSizeStr对应");
        return {};
    }
    CleanHeading heading;
    heading.title = localizedText(texts.title);
    heading.image = QLatin1String(texts.image);
    if (texts.description)
        heading.description.text = localizedText(texts.description);
    return heading;
}

} // namespace brightsweep
