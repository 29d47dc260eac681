#include "foundation/UserDefaults.h"
#include "preferences/PreferenceViewController.h"
#include "preferences/ui/PreferencesPanel.h"
#include "support/WaitUntil.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace brightsweep::test {
namespace {

class PreferencesView : public testing::Test {
protected:
    PreferencesView() { panel.show(); }
    template <typename Widget>
    Widget &child(const char *name) {
        return *panel.findChild<Widget *>(QLatin1String(name));
    }
    static QString stored(QLatin1String key) {
        return UserDefaults::standardUserDefaults().stringForKey(key);
    }
    static void store(QLatin1String key, const QVariant &value) {
        UserDefaults::standardUserDefaults().setObject(key, value);
    }

    PreferenceViewController page{{{}, [](int state) { store(DSLoginCheckKey, state); }, {}}};
    PreferencesPanel panel{page};
};

TEST_F(PreferencesView, ControlsShowAndStoreTheTrueValue) {
    store(DSUserTrashKey, 2);
    EXPECT_EQ(child<QCheckBox>("userTrashSege").checkState(), Qt::PartiallyChecked);
    QTest::keyClick(&child<QCheckBox>("userTrashSege"), Qt::Key_Space);
    EXPECT_EQ(stored(DSUserTrashKey), QStringLiteral("0"));
    QComboBox &unit = child<QComboBox>("sizeInfo");
    EXPECT_EQ(unit.currentData(), 2);
    QTest::keyClick(&unit, Qt::Key_Down);
    EXPECT_EQ(stored(DSDuplicatesUnit), QStringLiteral("3"));
    store(DSDuplicatesUnit, 9);
    EXPECT_EQ(unit.currentIndex(), -1) << "a tag that no row has";
    QComboBox &language = child<QComboBox>("preferences.language");
    EXPECT_TRUE(child<QPushButton>("preferences.restart").isHidden());
    language.setCurrentIndex(language.findText(QStringLiteral("Deutsch")));
    EXPECT_EQ(stored(languageKey), QStringLiteral("de"));
    EXPECT_FALSE(child<QPushButton>("preferences.restart").isHidden());
    EXPECT_FALSE(child<QCheckBox>("autoCheckUpdates").isEnabled());
}

TEST_F(PreferencesView, ALimitFieldSaysWhyItRefuses) {
    QLineEdit &field = child<QLineEdit>("infoSizeTextFiled");
    QTest::keyClicks(&field, QStringLiteral("x23a456"));
    EXPECT_EQ(field.text(), QStringLiteral("1234"));
    QTest::keyClick(&field, '-');
    EXPECT_EQ(field.toolTip(), QStringLiteral("This is not a number."));
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    EXPECT_EQ(field.text(), QString()) << "what means 0 stays as it is typed";
    EXPECT_EQ(stored(DSDuplicationLimit), QStringLiteral("0"));
    store(DSDuplicationLimit, 123456);
    field.selectAll();
    store(DSUserTrashKey, 0);
    EXPECT_EQ(field.selectedText(), field.text()) << "another setting has changed";
    EXPECT_EQ(field.text(), QStringLiteral("123456"));
}

TEST_F(PreferencesView, SaysThatChangesAreNotKeptAndFollowsTheLog) {
    const auto &file = UserDefaults::standardUserDefaults().file();
    QLabel &problem = child<QLabel>("preferences.settingsProblem");
    store(DSUserTrashKey, 1);
    EXPECT_TRUE(problem.isHidden());
    std::ofstream(file) << "no value\n";
    QTest::keyClick(&child<QCheckBox>("userTrashSege"), Qt::Key_Space);
    EXPECT_FALSE(problem.isHidden());
    EXPECT_TRUE(problem.text().contains(QString::fromStdString(file.filename().native())) &&
                problem.text().contains(QLatin1String("Line 1")));
    EXPECT_TRUE(child<QCheckBox>("userTrashSege").isChecked()) << "it goes back";
    for (const char *box : {"showStatusBtn", "checkBoxBtn"}) {
        QTest::keyClick(&child<QCheckBox>(box), Qt::Key_Space);
        EXPECT_FALSE(child<QCheckBox>(box).isChecked()) << box;
    }
    QTest::keyClick(&child<QSlider>("alarmSlider"), Qt::Key_Right);
    EXPECT_EQ(child<QSlider>("alarmSlider").value(), 10);
    QPushButton &open = child<QPushButton>("preferences.openLog");
    EXPECT_FALSE(open.isEnabled());
    std::filesystem::remove(file);
    UserDefaults::standardUserDefaults().synchronize();
    std::filesystem::create_directories(page.logFile().parent_path());
    std::ofstream(page.logFile()) << "a line";
    waitUntil([&] { return open.isEnabled() && problem.isHidden(); });
}

TEST_F(PreferencesView, ASliderStoresByKeyAndWhenItIsLetGo) {
    QSlider &slider = child<QSlider>("alarmSlider");
    EXPECT_EQ(slider.value(), 10);
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_FLOAT_EQ(UserDefaults::standardUserDefaults().floatForKey(DSSpaceAlarmKey), 0.11F);
    slider.setSliderDown(true);
    slider.setSliderPosition(40);
    EXPECT_FLOAT_EQ(page.alarmSlider(), 0.11F);
    slider.setSliderDown(false);
    EXPECT_FLOAT_EQ(page.alarmSlider(), 0.4F);
    store(DSSpaceAlarmKey, 0.125F);
    EXPECT_TRUE(slider.accessibleName().endsWith(QStringLiteral("12.5%")));
    QWheelEvent wheel({5, 5}, slider.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&slider, &wheel);
    EXPECT_FLOAT_EQ(page.alarmSlider(), 0.125F) << "the wheel moves the page";
}

} // namespace
} // namespace brightsweep::test
