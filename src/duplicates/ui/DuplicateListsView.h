#pragma once

#include "ui/LeftList.h"

namespace brightsweep {

class DuplicateOutlineModel;
class SameFileDeleteViewController;

/// The left list of the duplicates page: all files and the six classes, each with the size of its
/// files. Page and model outlive it. Main thread.
class DuplicateListsView : public LeftList {
    Q_OBJECT

public:
    DuplicateListsView(SameFileDeleteViewController &page, DuplicateOutlineModel &outline,
                       QWidget *parent = nullptr);

protected:
    void chosen(int row) override;

private:
    DuplicateOutlineModel &m_outline;
};

} // namespace brightsweep
