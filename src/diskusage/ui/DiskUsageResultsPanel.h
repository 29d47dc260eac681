#pragma once

#include "diskusage/ChartView.h"
#include "diskusage/UsageTicks.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace brightsweep {

class BigSizeFilesListView;
class CustomOpenGLView;
class DiskUsageAppController;
class FileBrowserView;
class NoticeRow;
class PadlockButton;
class StyledLabel;
class UsagePathControl;
class V4DiskUsageViewController;
struct UnreadFolders;

/// The results panel of the disk usage page: the left list and the ring chart below the path, or
/// the column browser; and below what is selected and the button that removes it. The controller
/// outlives it. Main thread.
class DiskUsageResultsPanel : public QWidget {
    Q_OBJECT

public:
    explicit DiskUsageResultsPanel(DiskUsageAppController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *) override;

private:
    QWidget *makeChartPage();
    QWidget *makeBottom();
    void bindChart();
    void bindRemoval();
    UsageTicks &ticks() const;
    const UnreadFolders &unreadFolders() const;

    void followState();
    void followFolder();
    void followSelection();
    void followNotice();
    void ask();
    void answer(std::optional<UsageTicks::Act> act);
    void tellRefusal(const std::filesystem::path &path, std::error_code reason);
    void tellOutcome();
    void alertSomeStayed();
    void showWords(const QString &words);
    void showMenu(const std::filesystem::path &path, bool isFolder, const QPoint &place);
    void showUnread();
    void savePicture();
    void showViewMenu();
    void setChartView(const ChartView &view);

    DiskUsageAppController &m_controller;
    V4DiskUsageViewController &m_page;
    UsagePathControl *m_path;
    QStackedWidget *m_box;
    BigSizeFilesListView *m_list;
    QLabel *m_rest;
    CustomOpenGLView *m_chart;
    FileBrowserView *m_browser;
    NoticeRow *m_notice;
    QString m_outcome; ///< of the last removal or refusal, in words
    QPushButton *m_back;
    QToolButton *m_save;
    QToolButton *m_view;
    QLabel *m_legend;
    QPushButton *m_showLeftOut;
    QPushButton *m_showUnread;
    QPushButton *m_stopReading;
    QToolButton *m_settings;
    PadlockButton *lockButton;
    QLabel *m_sum;
    StyledLabel *trashLabel;
    QPushButton *removeButton;
};

} // namespace brightsweep
