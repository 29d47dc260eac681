#pragma once

#include <QWidget>

class QButtonGroup;
class QLabel;
class QVBoxLayout;

namespace brightsweep {

class DiskUsageAppController;
class FolderChoice;

/// The start panel of the disk usage page: the home folder and the volumes with their fill, a place
/// to drop a folder on, a button to choose one, the folders scanned last, and the mode of the next
/// scan. The controller outlives it. Main thread.
class DiskUsageStartPanel : public QWidget {
    Q_OBJECT

public:
    explicit DiskUsageStartPanel(DiskUsageAppController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *) override;

private:
    QWidget *makeDropCard();
    QWidget *makeMode();
    void listPlaces();
    void listRecent();
    void follow();

    DiskUsageAppController &m_controller;
    FolderChoice *m_choice;
    QWidget *m_places;
    QVBoxLayout *m_placeRows;
    QLabel *m_word = nullptr;
    QWidget *m_recent = nullptr;
    QVBoxLayout *m_recentRows = nullptr;
    QButtonGroup *m_mode = nullptr;
};

} // namespace brightsweep
