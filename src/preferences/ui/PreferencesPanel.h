#pragma once

#include "preferences/PreferenceViewController.h"

#include <QTimer>
#include <QWidget>

#include <array>

class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace brightsweep {

class AlarmControl;
class ElidedLabel;
class LimitEdit;

/// The preferences page: every control shows what is stored, and stores what it is set to at once.
/// The controller outlives it. Main thread.
class PreferencesPanel : public QWidget {
    Q_OBJECT

public:
    explicit PreferencesPanel(PreferenceViewController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    using Controller = PreferenceViewController;

    QVBoxLayout *addBox(QVBoxLayout &column, const char *name, const char *titleKey);
    QCheckBox *addCheckBox(const char *name, const char *titleKey, QWidget *parent,
                           void (Controller::*act)(int));
    void addLimit(QVBoxLayout &box, const char *titleKey, std::size_t index,
                  void (Controller::*changeUnit)(int));
    void makeAlarms(QVBoxLayout &box);
    void makeSearches(QVBoxLayout &box);
    void makeCategories(QVBoxLayout &box);
    void makeLaunch(QVBoxLayout &box);
    void makeUpdates(QVBoxLayout &box);
    void makeOwn(QVBoxLayout &box);
    void follow();
    void followCategories();
    void followLog();
    void followProblem();

    Controller &m_controller;
    QWidget *const m_content;
    AlarmControl *alarmSlider = nullptr;
    AlarmControl *memorySlider = nullptr;
    /// In the order of PreferenceViewController::limitFields.
    std::array<LimitEdit *, 2> m_limits{};
    std::array<QComboBox *, 2> m_units{};
    QCheckBox *sysCheckBox = nullptr;
    QCheckBox *hideCheckBox = nullptr;
    QCheckBox *autoCheckUpdates = nullptr;
    QComboBox *updateTime = nullptr;
    QCheckBox *showStatusBtn = nullptr;
    QCheckBox *checkBoxBtn = nullptr;
    QLabel *m_launchProblem = nullptr;
    std::array<QCheckBox *, 6> m_categories{};
    QLabel *m_categoryWords = nullptr;
    QCheckBox *m_mayAsk = nullptr;
    QComboBox *m_language = nullptr;
    QPushButton *m_restart = nullptr;
    ElidedLabel *m_logPath = nullptr;
    QLabel *m_logSize = nullptr;
    QPushButton *m_openLog = nullptr;
    QLabel *m_settingsProblem = nullptr;
    QTimer m_again; // for what tells of no change, while the page is shown
};

} // namespace brightsweep
