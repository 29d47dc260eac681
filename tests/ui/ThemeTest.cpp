#include "ui/Theme.h"
#include "platform/Platform.h"
#include "ui/ImageProvider.h"
#include "ui/StyleSheet.h"

#include <QApplication>
#include <QPushButton>
#include <QRegularExpression>
#include <QStyle>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <memory>

namespace brightsweep {
namespace {

/// Puts the usual look back.
class ThemeTest : public testing::Test {
protected:
    void apply(const Hints &hints) { theme::apply(*qApp, hints); }
    void TearDown() override { theme::apply(*qApp, {}); }
};

TEST_F(ThemeTest, StatesEveryColorAndMeasureOfTheSheet) {
    for (const bool contrast : {false, true}) {
        apply({contrast, false, 1.0});
        const QString sheet = theme::styleSheet();
        EXPECT_FALSE(sheet.contains(QLatin1Char('@'))) << sheet.toStdString();
        EXPECT_FALSE(sheet.contains(QLatin1String(": ;"))) << "a name without a value";
        EXPECT_FALSE(sheet.contains(QLatin1String("solid ;"))) << "a name without a value";
    }
}

TEST_F(ThemeTest, EveryImageOfTheSheetExists) {
    const QRegularExpression place(QStringLiteral("url\\(:/images/(\\w+)\\.svg\\)"));
    auto matches = place.globalMatch(theme::styleSheet());
    int count = 0;
    for (; matches.hasNext(); ++count) {
        const QString name = matches.next().captured(1);
        EXPECT_TRUE(imageExists(name)) << name.toStdString();
    }
    EXPECT_GT(count, 10);
    EXPECT_EQ(count, theme::styleSheet().count(QLatin1String("url(")));
}

TEST_F(ThemeTest, HighContrastHasNoTransparencyAndStandsOut) {
    apply({true, false, 1.0});
    for (int role = 0; role < theme::roleCount; ++role)
        EXPECT_EQ(theme::color(static_cast<theme::Role>(role)).alpha(), 255) << role;
    EXPECT_EQ(theme::window(), QColor(Qt::black));
    EXPECT_EQ(theme::text(), QColor(Qt::white));
    EXPECT_NE(theme::accent(), theme::hairline()) << "the focus ring is like every edge";
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), QColor(Qt::black));
    apply({});
    EXPECT_EQ(theme::window(), QColor(39, 41, 51));
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), QColor(39, 41, 51));
}

TEST_F(ThemeTest, FontsAreShareOfTheDesktopsAndGrowWithItsText) {
    const double plain = theme::font(12).pointSizeF();
    EXPECT_NEAR(theme::font(18).pointSizeF(), plain * 1.5, 0.01);
    EXPECT_TRUE(theme::font(18, true).bold());
    const int row = theme::height(theme::rowHeight);
    EXPECT_GE(row, theme::rowHeight);
    apply({false, false, 2.0});
    EXPECT_NEAR(theme::font(12).pointSizeF(), plain * 2, 0.01);
    EXPECT_GT(theme::height(theme::rowHeight), row);
    // Scaled from the desktop's font, not from what was set last.
    apply({false, false, 2.0});
    EXPECT_NEAR(theme::font(12).pointSizeF(), plain * 2, 0.01);
    apply({false, false, 900.0});
    EXPECT_NEAR(theme::font(12).pointSizeF(), plain * 3, 0.01);
}

/// A desktop whose user changes his mind.
class ChangingHints : public DesktopHints {
public:
    Hints hints() const override { return now; }
    void setChangedHandler(std::function<void()> handler) override { changed = std::move(handler); }

    Hints now;
    std::function<void()> changed;
};

TEST_F(ThemeTest, FollowsTheDesktopsHints) {
    auto made = std::make_unique<ChangingHints>();
    ChangingHints &desktop = *made;
    Platform::current().hints = std::move(made);
    desktop.now.reducedMotion = true;
    theme::follow(*qApp);
    EXPECT_TRUE(theme::appearance().reducedMotion);
    desktop.now.highContrast = true;
    desktop.changed();
    EXPECT_EQ(theme::window(), QColor(Qt::black));
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), QColor(Qt::black));
}

TEST_F(ThemeTest, RowsKeepTheirHeightAndFocusMovesNothing) {
    QTreeWidget tree;
    tree.setRootIsDecorated(false);
    tree.addTopLevelItem(new QTreeWidgetItem({QStringLiteral("one")}));
    tree.resize(300, 200);
    tree.show();
    EXPECT_GE(tree.visualItemRect(tree.topLevelItem(0)).height(), theme::rowHeight);
    const QRect before = tree.viewport()->geometry();
    tree.setFocus();
    QApplication::processEvents();
    EXPECT_EQ(tree.viewport()->geometry(), before);

    QPushButton button(QStringLiteral("Clean"));
    const QSize size = button.sizeHint();
    button.setProperty("primary", true);
    button.style()->unpolish(&button);
    button.style()->polish(&button);
    EXPECT_EQ(button.sizeHint().height(), size.height());
}

} // namespace
} // namespace brightsweep
