#include "ui/ImageNames.h"
#include "ui/ImageProvider.h"

#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

#include <set>

namespace brightsweep {
namespace {

QImage drawn(const QString &name, qreal ratio = 1.0) {
    return pixmapNamed(name, imageSize(name), ratio)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

bool isBlank(const QImage &image) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) != 0)
                return false;
    return true;
}

TEST(Images, EveryNameHasADrawing) {
    std::set<std::string> seen;
    for (const char *name : imageNames) {
        const QString text = QString::fromLatin1(name);
        EXPECT_TRUE(seen.insert(name).second) << name << " is listed twice";
        EXPECT_TRUE(imageExists(text)) << name;
        EXPECT_FALSE(imageNamed(text).isNull()) << name;
        EXPECT_FALSE(isBlank(drawn(text))) << name;
    }
}

TEST(Images, EveryDrawingHasAName) {
    imageExists(QStringLiteral("Lock.png"));
    QStringList named;
    for (const char *name : imageNames)
        named.append(QString::fromLatin1(name).section(QLatin1Char('.'), 0, 0));
    const QStringList files = QDir(QStringLiteral(":/images")).entryList();
    EXPECT_GT(files.size(), 100);
    for (const QString &file : files)
        EXPECT_TRUE(named.contains(file.section(QLatin1Char('.'), 0, 0))) << file.toStdString();
}

TEST(Images, NamesWithoutADrawingAreNull) {
    for (const char *name : {"", ".png", "nothing.png", "../images/Lock.png", "101.png", "-1.png",
                             "1-2.png", "clean_0.png", "clean_19.png", "loading_13.png", "+5.png",
                             "101%.png", "x%.png", "_progress_bar.png", "99999999999.png"}) {
        const QString text = QString::fromLatin1(name);
        EXPECT_FALSE(imageExists(text)) << name;
        EXPECT_TRUE(imageNamed(text).isNull()) << name;
        EXPECT_TRUE(pixmapNamed(text, QSize(20, 20), 1).isNull()) << name;
    }
    EXPECT_TRUE(pixmapNamed(QStringLiteral("Lock.png"), QSize(0, 20), 1).isNull());
}

TEST(Images, FamiliesHaveEveryNumberAndTwoForms) {
    const struct {
        const char *usual;
        const char *other; // looks different
        int first;
        int last;
    } families[] = {{"%1%.png", "%1%-1.png", 0, 100},
                    {"%1.png", "%1-1.png", 1, 100},
                    {"%1_progress_bar.png", "clean_18.png", 0, 100},
                    {"clean_%1.png", "1.png", 1, 18},
                    {"loading_%1.png", "1.png", 1, 12}};
    for (const auto &family : families) {
        std::vector<QImage> images;
        for (int number = family.first; number <= family.last; ++number) {
            const QString name = QString::fromLatin1(family.usual).arg(number);
            images.push_back(drawn(name, 2));
            ASSERT_FALSE(isBlank(images.back())) << name.toStdString();
            EXPECT_NE(images.back(), drawn(QString::fromLatin1(family.other).arg(number), 2));
        }
        EXPECT_NE(images.front(), images.back()) << family.usual;
    }
}

} // namespace
} // namespace brightsweep
