#pragma once

#include "cleaning/ui/ResultView.h"
#include "duplicates/DuplicateOutlineModel.h"

namespace brightsweep {

/// The groups of the duplicates page with their files. Space ticks, the arrows fold and unfold,
/// Enter shows, Delete asks to remove. Page and model outlive it. Main thread.
class DuplicatesView : public GroupedResultView {
    Q_OBJECT

public:
    DuplicatesView(SameFileDeleteViewController &page, DuplicateOutlineModel &model,
                   QWidget *parent = nullptr);

    void expandFirst();
    /// Unfolds the groups with files that stayed at the last removal, and shows the first of them.
    void showFailures();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool hasNoMatch() const override;
    void tickSelection() override;
    void open(const QModelIndex &index) override;
    void reveal(const QModelIndex &index) override;
    QString pathText() const override;
    void addActions(QMenu &menu, const QModelIndex &index) override;

private:
    void follow();
    void sortClicked(int column);
    bool select(const QModelIndex &index);

    SameFileDeleteViewController &m_page;
    DuplicateOutlineModel &m_model;
};

} // namespace brightsweep
