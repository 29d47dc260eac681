#pragma once

#include <QObject>

class QWidget;

namespace brightsweep {

class SameFileDeleteViewController;

/// Lets a folder reach the duplicates page from one of its panels: dropped anywhere on it, or
/// chosen where the page asks for one while the panel is on show. Main thread; the page outlives
/// it, and the panel owns it.
class FolderChoice : public QObject {
    Q_OBJECT

public:
    FolderChoice(SameFileDeleteViewController &page, QWidget *panel);

Q_SIGNALS:
    /// A folder is held over the panel, or not any more.
    void hovered(bool isOver);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ask();

    SameFileDeleteViewController &m_page;
    QWidget *m_panel;
};

} // namespace brightsweep
