#include "foundation/UserDefaults.h"
#include "preferences/PreferenceViewController.h"
#include "preferences/ui/PreferencesPanel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

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
    const struct {
        const char *box;
        QLatin1String key;
    } boxes[] = {
        {"sysCheckBox", DSSystemDuplication},
        {"hideCheckBox", DSHidenDuplication},
        {"showStatusBtn", DSShowStatusItem},
        {"checkBoxBtn", DSLoginCheckKey},
        {"SystemCashSege", DSSystemCachesKey},
        {"userDownSege", DSUserDownloadsKey},
        {"preferences.mayAsk", cleanMayAskForRightsKey},
    };
    for (const auto &row : boxes) {
        QCheckBox &box = child<QCheckBox>(row.box);
        for (int i = 0; i < 2; ++i) {
            const bool before = box.isChecked();
            QTest::keyClick(&box, Qt::Key_Space);
            EXPECT_EQ(stored(row.key), before ? QStringLiteral("0") : QStringLiteral("1"))
                << row.box;
            store(row.key, before ? 0 : 1);
            EXPECT_EQ(box.isChecked(), !before) << row.box;
        }
    }
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

TEST_F(PreferencesView, ALimitFieldStoresAtEachKeyAndSaysWhyItRefuses) {
    QLineEdit &field = child<QLineEdit>("infoSizeTextFiled");
    EXPECT_EQ(field.text(), QStringLiteral("1"));
    field.selectAll();
    for (const auto &[key, text, limit] : {std::tuple('2', "2", "2"),
                                           {'0', "20", "20"},
                                           {'a', "20", "20"},
                                           {'-', "20", "20"},
                                           {'7', "207", "207"},
                                           {'5', "2075", "2075"},
                                           {'9', "2075", "2075"}}) {
        QTest::keyClick(&field, key);
        EXPECT_EQ(field.text(), QLatin1String(text)) << key;
        EXPECT_EQ(stored(DSDuplicationLimit), QLatin1String(limit)) << key;
    }
    QTest::keyClick(&field, 'x');
    EXPECT_EQ(field.toolTip(), QStringLiteral("This is not a number."));
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    EXPECT_EQ(field.text(), QString());
    EXPECT_EQ(stored(DSDuplicationLimit), QStringLiteral("0"));
    store(DSDuplicationLimit, 123456);
    EXPECT_EQ(field.text(), QStringLiteral("123456"));
    EXPECT_EQ(child<QLineEdit>("diskUsageLimit").text(), QStringLiteral("0"));
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
