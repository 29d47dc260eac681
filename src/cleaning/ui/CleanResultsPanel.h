#pragma once

#include "cleaning/NewMainViewController.h"
#include "ui/AlertSheet.h"

#include <QWidget>

#include <array>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace brightsweep {

class CategoryView;
class FilterField;
class ImageView;
class HiddenTicksNotice;
class LeftListView;
class NoticeRow;
class OutlineView;
class PadlockButton;
class StyledLabel;

/// The results panel of the clean page: the categories at the left, what was found at the right,
/// and below what is ticked and the button that removes it. The controller outlives it. Main
/// thread.
class CleanResultsPanel : public QWidget {
    Q_OBJECT

public:
    explicit CleanResultsPanel(NewMainViewController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The list of volumes is to be shown.
    void volumesRequested();

protected:
    void showEvent(QShowEvent *) override;

private:
    QWidget *makeHeading();
    QWidget *makeNotice();
    QWidget *makeLeft();
    QWidget *makeOverview();
    QWidget *makeOutcome();
    QWidget *makeBottom();
    QWidget *makeNote(const QString &act, void (CleanResultsPanel::*done)());
    void bind();
    void followState(NewMainViewController::State state);
    void followHeading();
    void followParts();
    void followControls();
    void followOutcome();
    void followNotice(const QWidget *page);
    void expandFirst();
    void flyToTrash(const QVariant &icon, const QModelIndex &from);
    AlertContent downloadsQuestion() const;
    void askDownloads();
    void askDownloadsAlone();
    void showAlertForPrivilegesToClean();
    void removalRefused(const QString &words);

    NewMainViewController &m_controller;
    LeftListView *m_left;
    ImageView *m_headingImage;
    QLabel *m_title;
    StyledLabel *m_description;
    FilterField *m_filter;
    NoticeRow *m_notice;
    QPushButton *m_noticeAct;
    HiddenTicksNotice *m_hiddenTicks;
    QStackedWidget *m_box;
    OutlineView *m_outline;
    std::array<CategoryView *, 6> m_lists{};
    QWidget *m_overview;
    QWidget *m_outcome;
    QLabel *m_outcomeTitle;
    StyledLabel *m_outcomeText;
    QPushButton *m_outcomeAct;
    QWidget *m_uninstallNote;
    QWidget *m_volumeNote;
    QPushButton *m_back;
    PadlockButton *lockButton;
    QLabel *m_sum;
    StyledLabel *stateTextField;
    QLabel *m_freeSpace;
    ImageView *m_trashImage;
    QLabel *trashFileNumTF;
    QPushButton *cleanButton;
    QPushButton *oneListCleanButton;
    bool m_isNew = true; // since the last scan nobody has seen the outline
};

} // namespace brightsweep
