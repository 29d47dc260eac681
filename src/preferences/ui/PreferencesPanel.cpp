#include "preferences/ui/PreferencesPanel.h"

#include "core/RowWords.h"
#include "core/SizeLimit.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "preferences/ui/AlarmControl.h"
#include "preferences/ui/LimitEdit.h"
#include "ui/ElidedLabel.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>

#include <chrono>
#include <functional>

namespace brightsweep {

namespace {

constexpr QSize trayImage(32, 32);
constexpr QSize memoryBar(120, 6);
constexpr std::chrono::seconds renewal{2};

struct LimitControl {
    const char *field;
    const char *unit;
};
// In the order of PreferenceViewController::limitFields.
constexpr LimitControl limitControls[] = {{"infoSizeTextFiled", "sizeInfo"},
                                          {"diskUsageLimit", "diskUsageUnit"}};

// The controls of the categories, in their order.
constexpr const char *categoryControls[] = {"SystemCashSege", "userCachSege",  "systenLogSege",
                                            "userLogSege",    "userTrashSege", "userDownSege"};

// Turning the wheel over a control moves the page, and never a setting.
class WheelGuard : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() != QEvent::Wheel)
            return false;
        event->ignore();
        return true;
    }
};

void keepFromWheel(QWidget *control) {
    control->setFocusPolicy(Qt::StrongFocus);
    control->installEventFilter(new WheelGuard(control));
}

QLabel *makeNote(const char *name, QWidget *parent, const QString &words = {}) {
    auto *const label = makePlainLabel(name, parent);
    label->setText(words);
    label->setWordWrap(true);
    label->setProperty("secondary", true);
    theme::keepFont(label, 11);
    return label;
}

// A tag that no row has selects nothing.
void selectTag(QComboBox &box, const QVariant &tag) {
    const QSignalBlocker quiet(box);
    box.setCurrentIndex(box.findData(tag));
}

void tick(QCheckBox &box, bool isOn) {
    const QSignalBlocker quiet(box);
    box.setChecked(isOn);
}

} // namespace

PreferencesPanel::PreferencesPanel(PreferenceViewController &controller, QWidget *parent)
    : QWidget(parent), m_controller(controller), m_content(new QWidget(this)) {
    auto *const content = m_content;
    auto *const columns = new QHBoxLayout(content);
    columns->setContentsMargins(6 * theme::grid, 5 * theme::grid, 6 * theme::grid, 5 * theme::grid);
    columns->setSpacing(4 * theme::grid);
    auto *const left = new QVBoxLayout;
    auto *const right = new QVBoxLayout;
    for (QVBoxLayout *const column : {left, right}) {
        column->setSpacing(4 * theme::grid);
        columns->addLayout(column, 1);
    }
    makeAlarms(*addBox(*left, "box1", QT_TRID_NOOP("PREF_ALARMS")));
    makeSearches(*addBox(*left, "box2", QT_TRID_NOOP("PREF_SEARCHES")));
    makeUpdates(*addBox(*left, "box5", QT_TRID_NOOP("PREF_UPDATES")));
    makeCategories(*addBox(*right, "box3", QT_TRID_NOOP("PREF_CLEANING")));
    makeLaunch(*addBox(*right, "box4", QT_TRID_NOOP("PREF_LAUNCH")));
    makeOwn(*addBox(*right, "box6", QT_TRID_NOOP("PREF_PROGRAM")));
    left->addStretch(1);
    right->addStretch(1);

    auto *const scroll = makeScroll(content, this);
    scroll->setFocusPolicy(Qt::NoFocus);
    auto *const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    m_settingsProblem = makeNote("preferences.settingsProblem", this);
    m_settingsProblem->setProperty("danger", true);
    m_settingsProblem->setContentsMargins(6 * theme::grid, 3 * theme::grid, 6 * theme::grid, 0);
    whole->addWidget(m_settingsProblem);
    whole->addWidget(scroll);
    m_again.setInterval(renewal);
    connect(&m_again, &QTimer::timeout, this, [this] {
        followLog();
        followProblem();
    });
    setFocusProxy(alarmSlider->slider());

    connect(&controller, &Controller::settingsChanged, this, &PreferencesPanel::follow);
    follow();
}

QVBoxLayout *PreferencesPanel::addBox(QVBoxLayout &column, const char *name, const char *titleKey) {
    auto *const box = new QFrame(this);
    box->setObjectName(QLatin1String(name));
    box->setProperty("card", true);
    box->setAccessibleName(localizedText(titleKey));
    auto *const title = new QLabel(localizedText(titleKey), box);
    theme::keepFont(title, 14, true);
    auto *const layout = new QVBoxLayout(box);
    layout->setContentsMargins(4 * theme::grid, 3 * theme::grid, 4 * theme::grid, 4 * theme::grid);
    layout->setSpacing(2 * theme::grid);
    layout->addWidget(title);
    column.addWidget(box);
    return layout;
}

QCheckBox *PreferencesPanel::addCheckBox(const char *name, const char *titleKey, QWidget *parent,
                                         void (Controller::*act)(int)) {
    auto *const box = new QCheckBox(localizedText(titleKey), parent);
    box->setObjectName(QLatin1String(name));
    // Assistive programs toggle one without a click.
    connect(box, &QCheckBox::toggled, &m_controller,
            [this, act](bool isOn) { std::invoke(act, m_controller, isOn ? 1 : 0); });
    return box;
}

void PreferencesPanel::makeAlarms(QVBoxLayout &box) {
    alarmSlider = new AlarmControl(
        "alarmSlider", localizedText("PREF_SPACE_ALARM"), trayImage,
        [this](float alarm) { return m_controller.spacePreview(alarm); }, box.parentWidget());
    memorySlider = new AlarmControl(
        "memorySlider", localizedText("PREF_MEMORY_ALARM"), memoryBar,
        [this](float alarm) { return m_controller.memoryPreview(alarm); }, box.parentWidget());
    connect(alarmSlider, &AlarmControl::valueChosen, &m_controller,
            &Controller::changeArlarmSliderValue);
    connect(memorySlider, &AlarmControl::valueChosen, &m_controller,
            &Controller::changeMemorySliderVaule);
    box.addWidget(alarmSlider);
    box.addSpacing(theme::grid);
    box.addWidget(memorySlider);
    for (AlarmControl *const control : {alarmSlider, memorySlider})
        keepFromWheel(control->slider());
}

void PreferencesPanel::addLimit(QVBoxLayout &box, const char *titleKey, std::size_t index,
                                void (Controller::*changeUnit)(int)) {
    QWidget *const parent = box.parentWidget();
    auto *const field =
        new LimitEdit(limitControls[index].field, Controller::limitFields[index], parent);
    auto *const unit = new QComboBox(parent);
    unit->setObjectName(QLatin1String(limitControls[index].unit));
    keepFromWheel(unit);
    for (const SizeUnit &each : sizeUnits)
        unit->addItem(each.tag == 0 ? localizedText("UNIT_BYTES") : QLatin1String(each.name),
                      each.tag);
    // The factor of the last unit is no true one.
    unit->setItemData(unit->count() - 1, localizedText("UNIT_TB_TIP"), Qt::ToolTipRole);
    const QString title = localizedText(titleKey);
    field->setAccessibleName(title);
    // On X11 and Wayland the name of a list is what is chosen in it.
    unit->setAccessibleDescription(localizedText("PREF_UNIT_OF").arg(title));
    auto *const label = new QLabel(title, parent);
    label->setBuddy(field);
    label->setWordWrap(true);
    auto *const row = new QHBoxLayout;
    row->setSpacing(2 * theme::grid);
    row->addWidget(label, 1);
    row->addWidget(field);
    row->addWidget(unit);
    box.addLayout(row);
    m_limits[index] = field;
    m_units[index] = unit;
    connect(unit, &QComboBox::currentIndexChanged, &m_controller, [this, unit, changeUnit](int at) {
        if (at >= 0)
            std::invoke(changeUnit, m_controller, unit->currentData().toInt());
    });
}

void PreferencesPanel::makeSearches(QVBoxLayout &box) {
    addLimit(box, QT_TRID_NOOP("PREF_DUPLICATE_LIMIT"), 0, &Controller::changeLimitUnit);
    hideCheckBox = addCheckBox("hideCheckBox", QT_TRID_NOOP("PREF_HIDDEN_FILES"),
                               box.parentWidget(), &Controller::changeHiddenDuplicates);
    sysCheckBox = addCheckBox("sysCheckBox", QT_TRID_NOOP("PREF_SYSTEM_FILES"), box.parentWidget(),
                              &Controller::changeSysDuplicates);
    box.addWidget(hideCheckBox);
    box.addWidget(sysCheckBox);
    addLimit(box, QT_TRID_NOOP("PREF_USAGE_LIMIT"), 1, &Controller::changeDiskUsageUnit);
}

void PreferencesPanel::makeCategories(QVBoxLayout &box) {
    QWidget *const parent = box.parentWidget();
    auto *const grid = new QGridLayout;
    grid->setHorizontalSpacing(4 * theme::grid);
    grid->setVerticalSpacing(0);
    constexpr int rows = 3;
    for (int index = 0; index < int(m_categories.size()); ++index) {
        auto *const category =
            new QCheckBox(localizedText(cleanCategories[std::size_t(index)].name), parent);
        category->setObjectName(QLatin1String(categoryControls[index]));
        // What is stored decides what a click makes of it, and follow() shows that.
        connect(category, &QCheckBox::stateChanged, &m_controller, [this, index] {
            m_controller.changeCategory(index + 1);
            followCategories();
        });
        grid->addWidget(category, index % rows, index / rows);
        m_categories[std::size_t(index)] = category;
    }
    box.addLayout(grid);
    m_categoryWords = makeNote("preferences.categoryWords", parent);
    box.addWidget(m_categoryWords);
    m_mayAsk = addCheckBox("preferences.mayAsk", QT_TRID_NOOP("PREF_MAY_ASK"), parent,
                           &Controller::changeCleanMayAskForRights);
    box.addWidget(m_mayAsk);
    box.addWidget(makeNote("preferences.alwaysAsks", parent, localizedText("PREF_ALWAYS_ASKS")));
}

void PreferencesPanel::makeLaunch(QVBoxLayout &box) {
    checkBoxBtn = addCheckBox("checkBoxBtn", QT_TRID_NOOP("Launch at login"), box.parentWidget(),
                              &Controller::loginButtonAction);
    showStatusBtn = new QCheckBox(localizedText("PREF_HIDE_ITEM"), box.parentWidget());
    showStatusBtn->setObjectName(QStringLiteral("showStatusBtn"));
    connect(showStatusBtn, &QCheckBox::toggled, &m_controller,
            &Controller::changeShowStatusBtnClick);
    m_launchProblem = makeNote("preferences.launchProblem", box.parentWidget());
    m_launchProblem->setProperty("danger", true);
    box.addWidget(checkBoxBtn);
    box.addWidget(m_launchProblem);
    box.addWidget(showStatusBtn);
}

void PreferencesPanel::makeUpdates(QVBoxLayout &box) {
    QWidget *const parent = box.parentWidget();
    autoCheckUpdates = addCheckBox("autoCheckUpdates", QT_TRID_NOOP("PREF_CHECK_UPDATES"), parent,
                                   &Controller::changeAutoUpdate);
    updateTime = new QComboBox(parent);
    updateTime->setObjectName(QStringLiteral("updateTime"));
    updateTime->setAccessibleDescription(localizedText("PREF_CHECK_INTERVAL"));
    keepFromWheel(updateTime);
    for (const CheckInterval &interval : checkIntervals)
        updateTime->addItem(localizedText(interval.title), interval.tag);
    connect(updateTime, &QComboBox::currentIndexChanged, &m_controller, [this](int at) {
        if (at >= 0)
            m_controller.changeCheckInterval(updateTime->currentData().toInt());
    });
    const bool isOffered = !m_controller.updateService().isEmpty();
    autoCheckUpdates->setEnabled(isOffered);
    updateTime->setEnabled(isOffered);
    auto *const row = new QHBoxLayout;
    row->addWidget(autoCheckUpdates, 1);
    row->addWidget(updateTime);
    box.addLayout(row);
    box.addWidget(
        makeNote("preferences.updateWords", parent,
                 isOffered ? m_controller.updateService() : localizedText("PREF_NO_UPDATES")));
}

void PreferencesPanel::makeOwn(QVBoxLayout &box) {
    QWidget *const parent = box.parentWidget();
    m_language = new QComboBox(parent);
    m_language->setObjectName(QStringLiteral("preferences.language"));
    keepFromWheel(m_language);
    for (const WindowLanguage &language : windowLanguages)
        m_language->addItem(language.name ? QString::fromUtf8(language.name)
                                          : localizedText("PREF_DESKTOP_LANGUAGE"),
                            QString::fromLatin1(language.locale));
    connect(m_language, &QComboBox::currentIndexChanged, &m_controller, [this](int at) {
        if (at >= 0)
            m_controller.changeLanguage(m_language->currentData().toString());
    });
    m_restart = new QPushButton(localizedText("RESTART"), parent);
    m_restart->setObjectName(QStringLiteral("preferences.restart"));
    m_restart->setToolTip(plainToolTip({localizedText("PREF_RESTART_TIP")}));
    connect(m_restart, &QPushButton::clicked, &m_controller, &Controller::restart);
    auto *const language = new QHBoxLayout;
    language->setSpacing(2 * theme::grid);
    auto *const label = new QLabel(localizedText("PREF_LANGUAGE"), parent);
    label->setBuddy(m_language);
    language->addWidget(label, 1);
    language->addWidget(m_restart);
    language->addWidget(m_language);
    box.addLayout(language);

    m_logPath = new ElidedLabel(Qt::ElideMiddle, parent);
    m_logPath->setObjectName(QStringLiteral("preferences.logPath"));
    m_logPath->setLayoutDirection(Qt::LeftToRight); // a path begins at its left
    m_logPath->setProperty("secondary", true);
    m_logSize = makePlainLabel("preferences.logSize", parent);
    m_logSize->setProperty("number", true);
    m_openLog = new QPushButton(localizedText("Open"), parent);
    m_openLog->setObjectName(QStringLiteral("preferences.openLog"));
    m_openLog->setAccessibleName(localizedText("PREF_OPEN_LOG"));
    connect(m_openLog, &QPushButton::clicked, this, [this] {
        m_controller.openLog();
        followLog();
    });
    auto *const log = new QHBoxLayout;
    log->setSpacing(2 * theme::grid);
    log->addWidget(new QLabel(localizedText("PREF_LOG"), parent));
    log->addWidget(m_logPath, 1);
    log->addWidget(m_logSize);
    log->addWidget(m_openLog);
    box.addLayout(log);
}

QSize PreferencesPanel::sizeHint() const {
    // Words of some languages are wider.
    const int width =
        m_content->minimumSizeHint().width() + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return theme::leastPanel().expandedTo({width, 0});
}

void PreferencesPanel::showEvent(QShowEvent *) {
    m_controller.lookAgainAtProblem();
    follow();
    followLog();
    m_again.start();
}

void PreferencesPanel::hideEvent(QHideEvent *) {
    m_again.stop();
}

void PreferencesPanel::followProblem() {
    m_settingsProblem->setText(m_controller.settingsProblem());
    m_settingsProblem->setVisible(!m_settingsProblem->text().isEmpty());
}

void PreferencesPanel::follow() {
    alarmSlider->setValue(m_controller.alarmSlider());
    memorySlider->setValue(m_controller.memorySlider());
    for (std::size_t index = 0; index < m_limits.size(); ++index) {
        const LimitField &field = Controller::limitFields[index];
        m_limits[index]->setLimit(m_controller.limit(field));
        selectTag(*m_units[index], m_controller.unitTag(field));
    }
    tick(*sysCheckBox, m_controller.sysCheckBox());
    tick(*hideCheckBox, m_controller.hideCheckBox());
    tick(*autoCheckUpdates, m_controller.autoCheckUpdates());
    selectTag(*updateTime, m_controller.updateTime());
    tick(*showStatusBtn, m_controller.showStatusBtn());
    tick(*checkBoxBtn, m_controller.checkBoxBtn());
    m_launchProblem->setText(m_controller.launchProblem());
    m_launchProblem->setVisible(!m_launchProblem->text().isEmpty());
    tick(*m_mayAsk, m_controller.cleanMayAskForRights());
    selectTag(*m_language, m_controller.language());
    m_restart->setVisible(m_controller.needsRestart());
    followCategories();
    followProblem();
}

void PreferencesPanel::followCategories() {
    const bool areFree = m_controller.categoriesAreFree();
    for (std::size_t index = 0; index < m_categories.size(); ++index) {
        const QSignalBlocker quiet(m_categories[index]);
        const Qt::CheckState state = m_controller.category(int(index) + 1);
        m_categories[index]->setTristate(state == Qt::PartiallyChecked);
        m_categories[index]->setCheckState(state);
        m_categories[index]->setEnabled(areFree);
    }
    m_categoryWords->setText(areFree ? localizedText("PREF_CATEGORY_WORDS")
                                     : localizedText("PREF_CATEGORIES_IN_USE"));
}

void PreferencesPanel::followLog() {
    const auto file = m_controller.logFile();
    m_logPath->setText(paths::displayFromHome(file));
    m_logPath->setToolTip(plainToolTip({paths::display(file)}));
    const auto size = m_controller.logSize();
    m_logSize->setText(sizeWords(size));
    // The first run of the program has none.
    m_openLog->setEnabled(size > 0);
}

} // namespace brightsweep
