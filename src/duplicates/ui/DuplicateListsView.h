#pragma once

#include <QListView>

namespace brightsweep {

class DuplicateOutlineModel;
class SameFileDeleteViewController;

/// The left list of the duplicates page: all files and the six classes, each with the size of its
/// files. Page and model outlive it. Main thread.
class DuplicateListsView : public QListView {
    Q_OBJECT

public:
    DuplicateListsView(SameFileDeleteViewController &page, DuplicateOutlineModel &outline,
                       QWidget *parent = nullptr);

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    void showRow();

    SameFileDeleteViewController &m_page;
    DuplicateOutlineModel &m_outline;
    bool m_following = false;
};

} // namespace brightsweep
