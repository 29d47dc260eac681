#include "cleaning/CleanPageTexts.h"

#include "cleaning/CleanCategories.h"
#include "core/DateText.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "foundation/Log.h"

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int loudSize = 14;
constexpr int loudestSize = 18;

int length(const QString &text) {
    return int(text.size());
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
    const QString selectedWords = QString::number(selected);
    const QString totalWords = QString::number(total);
    const QString sizeWords = UtilityFunction::convertVolSpace(bytes);
    const QString between = QStringLiteral(" of ");
    const QString behind = QStringLiteral(" selected, ");
    const int totalStart = length(selectedWords) + length(between);
    const int sizeStart = totalStart + length(totalWords) + length(behind);
    return {selectedWords + between + totalWords + behind + sizeWords +
                QStringLiteral(" will free up."),
            12,
            {{0, length(selectedWords), loudSize, true},
             {totalStart, length(totalWords), 0, false},
             {sizeStart, length(sizeWords), 0, false}}};
}

CleanStyledText cleanPageTexts::cleanedLine(std::uint64_t bytes) {
    const QString words = UtilityFunction::convertVolSpace(bytes);
    return {words + QStringLiteral(" is cleaned"), 12, {{0, length(words), 0, false}}};
}

QString cleanPageTexts::freeSpaceLine(const QString &before, const QString &after) {
    return before.isEmpty() || after.isEmpty()
               ? QString()
               : QStringLiteral("Free space: %1 before, %2 now.").arg(before, after);
}

CleanStyledText cleanPageTexts::recoveredLine(std::uint64_t bytes, const QDateTime &date,
                                              const QString &freeString,
                                              const QString &totleString) {
    if (bytes == 0)
        return {QStringLiteral("The capacity of startup disk is %1, and %2 is available.")
                    .arg(freeString, totleString),
                12,
                {}};
    const QString words = UtilityFunction::convertVolSpace(bytes);
    const QString dateWords =
        date.isValid() ? UtilityFunction::parseDateTime(dateText(date)) : QString();
    return {QStringLiteral("%1 space has been recovered since last clean %2. The capacity of "
                           "startup disk is %3, and %4 is available.")
                .arg(words, dateWords, freeString, totleString),
            12,
            {{0, length(words), loudestSize, true}}};
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
