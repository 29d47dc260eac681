#include "core/Texts.h"

#include <gtest/gtest.h>

namespace brightsweep {
namespace {

class Texts : public testing::Test {
protected:
    ~Texts() override { setReader(QLocale::c()); }
};

TEST_F(Texts, AreTheReadersElseEnglishElseTheKey) {
    const struct {
        QLocale reader;
        const char *text;
    } rows[] = {{QLocale::c(), "Cancel"},
                {QLocale(QStringLiteral("en_GB")), "Cancel"},
                {QLocale(QStringLiteral("de_AT")), "Abbrechen"},
                {QLocale(QStringLiteral("zh_CN")), "取消"},
                {QLocale(QStringLiteral("fr_FR")), "Cancel"},
                {QLocale(QStringLiteral("ar_EG")), "\u2066Cancel\u2069"},
                {QLocale::c(), "Cancel"}};
    for (const auto &row : rows) {
        setReader(row.reader);
        EXPECT_EQ(localizedText("CANCEL"), QString::fromUtf8(row.text)) << row.text;
        EXPECT_EQ(localizedText("NO_SUCH_KEY"), QStringLiteral("NO_SUCH_KEY"));
    }
}

TEST_F(Texts, NumbersHaveTheReadersForm) {
    EXPECT_EQ(readersSize(QStringLiteral("1000.00 KB")), QStringLiteral("1000.00 KB"));
    EXPECT_EQ(readersNumber(12345), QStringLiteral("12345"));
    setReader(QLocale(QStringLiteral("de_DE")));
    EXPECT_EQ(readersSize(QStringLiteral("1000.00 KB")), QStringLiteral("1000,00 KB"));
    EXPECT_EQ(readersSize(QStringLiteral("0.00KB")), QStringLiteral("0,00KB"));
    EXPECT_EQ(readersSize(QStringLiteral("6.1")), QStringLiteral("6.1"));
    EXPECT_EQ(readersSize(QStringLiteral("12 GB")), QStringLiteral("12 GB"));
    EXPECT_EQ(readersSize(QStringLiteral("Ejecting…")), QStringLiteral("Ejecting…"));
    EXPECT_EQ(readersNumber(12345), QStringLiteral("12.345"));
}

} // namespace
} // namespace brightsweep
