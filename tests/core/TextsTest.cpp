#include "core/Texts.h"

#include <gtest/gtest.h>

namespace brightsweep {
namespace {

TEST(Texts, EveryKeyOfTheProgramHasAnEnglishText) {
    const TextTable english = TextTable::ofLanguage(QStringLiteral("en"));
    for (const char *key : {"LOCAL_STORAGE",
                            "EXTERNAL_STORAGE",
                            "SUPER_DRIVER",
                            "NETWOR_STORAGE",
                            "DISK_IMAGE",
                            "FREE_MEMORY",
                            "CANNOT_OPEN_FINDER",
                            "NO_HAVE_REMOVABLE",
                            "ROW_WARNS",
                            "VOLUME_UNMOUNTED",
                            "DRIVE_STAYS",
                            "NO_FOLDER_CONTENT",
                            "CLEAN_FILES_COUNT",
                            "CLEAN_FILES_SIZE",
                            "TITLE_CLEAN_SYS_MYMAC",
                            "TITLE_CLEAN_SYS_CACHES",
                            "DESC_CLEAN_SYS_CACHES",
                            "TITLE_CLEAN_USR_CACHES",
                            "DESC_CLEAN_USR_CACHES",
                            "TITLE_CLEAN_SYS_LOGS",
                            "DESC_CLEAN_SYS_LOGS",
                            "TITLE_CLEAN_USR_LOGS",
                            "DESC_CLEAN_USR_LOGS",
                            "TITLE_CLEAN_TRASH",
                            "DESC_CLEAN_TRASH",
                            "TITLE_CLEAN_DOWNLOADS",
                            "DESC_CLEAN_DOWNLOADS",
                            "TITLE_UNINSTALL",
                            "DESC_UNINSTALL",
                            "TITLE_FREESPACE_MONITOR",
                            "DESC_FREESPACE_MONITOR"}) {
        EXPECT_FALSE(english.text(QLatin1String(key)).isEmpty()) << key;
        EXPECT_FALSE(localizedText(key).isEmpty()) << key;
    }
    QStringList keys = english.keys();
    EXPECT_EQ(keys.removeDuplicates(), 0);
}

TEST(Texts, AnUnknownKeyStandsForItself) {
    EXPECT_EQ(localizedText("NO_SUCH_KEY"), QStringLiteral("NO_SUCH_KEY"));
    EXPECT_TRUE(TextTable::ofLanguage(QStringLiteral("xx")).keys().isEmpty());
    EXPECT_TRUE(TextTable::ofLanguage(QStringLiteral("../images/Lock.svg")).keys().isEmpty());
}

TEST(Texts, ReadsLinesAndPassesOverWhatIsNone) {
    const TextTable table = TextTable::fromBytes(
        "# A = comment\n\nA = one\\ntwo = 2\n  B=b  \r\n= nothing\nC\nA = later\nD =\n");
    EXPECT_EQ(table.text(QLatin1String("A")), QStringLiteral("one\ntwo = 2"));
    EXPECT_EQ(table.text(QLatin1String("B")), QStringLiteral("b"));
    EXPECT_TRUE(table.text(QLatin1String("C")).isNull());
    EXPECT_TRUE(table.text(QLatin1String("D")).isEmpty());
    EXPECT_TRUE(table.text(QLatin1String("")).isNull());
}

} // namespace
} // namespace brightsweep
