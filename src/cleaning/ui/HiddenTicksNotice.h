#pragma once

#include "ui/NoticeRow.h"

namespace brightsweep {

class CleanOutlineController;

/// Says how many ticked items the filter hides, since a clean takes all that is ticked. It is shown
/// only while there are any. The controller outlives it. Main thread.
class HiddenTicksNotice : public NoticeRow {
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
};

} // namespace brightsweep
