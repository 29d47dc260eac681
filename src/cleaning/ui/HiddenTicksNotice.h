#pragma once

#include <QFrame>

class QLabel;

namespace brightsweep {

class CleanOutlineController;

/// Says how many ticked items the filter hides, since a clean takes all that is ticked. It is shown
/// only while there are any. The controller outlives it. Main thread.
class HiddenTicksNotice : public QFrame {
    Q_OBJECT

public:
    explicit HiddenTicksNotice(const CleanOutlineController &outline, QWidget *parent = nullptr);

    /// After a change of ticks, rows or filter.
    void follow(bool isOutlineShown);

Q_SIGNALS:
    /// The filter is to be taken away.
    void showAll();

private:
    const CleanOutlineController &m_outline;
    QLabel *m_words;
};

} // namespace brightsweep
