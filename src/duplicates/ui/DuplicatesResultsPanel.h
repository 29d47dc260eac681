#pragma once

#include "duplicates/DuplicateOutlineModel.h"

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace brightsweep {

struct AlertContent;
class AlertSheet;
class DuplicateListsView;
class DuplicatePane;
class DuplicatesView;
class FilterField;
class ImageView;
class NoticeRow;
class PadlockButton;
class StyledLabel;
class TickMenu;

/// The results panel of the duplicates page: the seven lists at the left, what could be freed and
/// the groups at the right, and below what is ticked and the button that removes it. The controller
/// outlives it. Main thread.
class DuplicatesResultsPanel : public QWidget {
    Q_OBJECT

public:
    explicit DuplicatesResultsPanel(SameFileDeleteViewController &controller,
                                    QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *) override;
    void resizeEvent(QResizeEvent *) override;

private:
    QWidget *makeHeading();
    QWidget *makeNotice();
    QWidget *makeEmpty();
    QWidget *makeRemoving();
    QWidget *makeBottom();
    void followState();
    void followPage();
    void followPane();
    void showInPane(const QModelIndex &row);
    bool canTick() const;
    void followHeading();
    void followSelection();
    void followControls();
    void followRemoval();
    void tellOutcome();

    AlertSheet *ask(AlertContent content);
    void askAboutLastFile();
    void askToRemove();
    void alertCanNotRemoveSome();
    void showWords(const QString &words);
    void offerSharing(QPushButton *button);
    void flyToTrash(const TreeNode::Pointer &node);
    QString whatGoes() const;

    SameFileDeleteViewController &m_controller;
    DuplicateOutlineModel m_model;
    DuplicateListsView *m_lists;
    QStackedWidget *m_box;
    DuplicatesView *m_outline;
    QWidget *m_empty;
    QLabel *m_emptyTitle;
    QPushButton *m_emptyLimit;
    QWidget *m_removing;
    QLabel *m_removingPath;
    QProgressBar *m_removingBar;
    QPushButton *stopRemoveBtn;
    QLabel *m_wasted;
    QLabel *m_wastedWords;
    QLabel *titleLabel;
    TickMenu *m_tickMenu;
    FilterField *m_filter;
    NoticeRow *m_notice;
    QPushButton *m_showAll;
    QString m_outcome; ///< of the last removal, in words; empty before one
    QPushButton *m_back;
    QPushButton *m_folder;
    PadlockButton *lockButton;
    QLabel *m_sum;
    ImageView *m_trashImage;
    StyledLabel *trashFileNumTF;
    DuplicatePane *m_pane;
    QToolButton *m_details;
    QPushButton *m_remove;
    std::size_t m_going = 0; ///< files of the removal that runs
    bool m_isNew = true;     ///< since the last search nobody has seen the groups
};

} // namespace brightsweep
