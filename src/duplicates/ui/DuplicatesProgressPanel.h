#pragma once

#include "cleaning/ui/FileIcons.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace brightsweep {

class Animation;
class ImageView;
class SameFileDeleteViewController;

/// The progress panel of the duplicates page: the file under search, how far it has come, and the
/// stop. The controller outlives it. Main thread.
class DuplicatesProgressPanel : public QWidget {
    Q_OBJECT

public:
    explicit DuplicatesProgressPanel(SameFileDeleteViewController &controller,
                                     QWidget *parent = nullptr);

    QSize sizeHint() const override;

private:
    void follow();

    SameFileDeleteViewController &m_controller;
    QLabel *m_folder;
    QLabel *nameTextStr;
    ImageView *imageView;
    FileIcons m_icons;
    Animation *m_progress;
    QPushButton *stopScanBtn;
    QLabel *stopScanText;
};

} // namespace brightsweep
