#pragma once

#include "uninstall/LeftBehindModel.h"
#include "uninstall/UninstallListModel.h"

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;

namespace brightsweep {

class FilterField;
class LeftBehindTable;
class ImageView;
class NoticeRow;
class PadlockButton;
class StyledLabel;
class UninstallLeftList;
class UninstallTable;

/// The uninstall page: the rows at the left, the table of applications, and at the bottom what is
/// ticked and the button that asks to uninstall it. The controller outlives it.
class UninstallPanel : public QWidget {
    Q_OBJECT

public:
    explicit UninstallPanel(UninstallAppsController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *) override;
    void hideEvent(QHideEvent *) override;

private:
    QWidget *makeHeading();
    QWidget *makeWaiting();
    QWidget *makeEmpty();
    QWidget *makeBottom();
    void followState();
    void followList();
    void followMessage();
    void followNotice();
    QString waitingWords() const;
    bool isLeftBehind() const;
    void ask(const QString &text);
    void askAboutLeftBehind();
    void showWords(const QString &words);
    void flyToButton(int row);

    UninstallAppsController &m_controller;
    UninstallListModel m_model;
    UninstallLeftList *m_lists;
    QLabel *m_count;
    FilterField *m_filter;
    NoticeRow *m_notice;
    QPushButton *m_showAll;
    QStackedWidget *m_box;
    UninstallTable *m_table;
    LeftBehindModel m_leftBehindModel;
    LeftBehindTable *m_leftBehind;
    QWidget *m_waiting;
    QLabel *m_waitingWords;
    QProgressBar *searchAppsIndicator;
    QWidget *m_empty;
    QLabel *m_emptyWords;
    PadlockButton *lockButton;
    StyledLabel *uninstallTextField;
    ImageView *m_uninstallImage;
    QPushButton *uninstallButton;
};

} // namespace brightsweep
