#pragma once

#include "cleaning/ui/ResultView.h"

namespace brightsweep {

class ImageTextCell;
class UninstallAppsController;
class UninstallListModel;

/// The table of applications. Enter shows the details of the current one; Delete asks to uninstall
/// what is ticked. A row that is there in the next list as well stays current, and the list stays
/// where it was scrolled to. The page and the model outlive it.
class UninstallTable : public ResultView {
    Q_OBJECT

public:
    UninstallTable(UninstallAppsController &page, UninstallListModel &model, QWidget *parent);

    /// The icon of a row, as it is drawn.
    QPixmap iconOf(int row) const;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool hasNoMatch() const override;
    void tickSelection() override;
    void act(const QModelIndex &index) override;
    void addActions(QMenu &menu, const QModelIndex &index) override;

private:
    void keepPlace();
    void followTicks();

    UninstallAppsController &m_page;
    UninstallListModel &m_list;
    ImageTextCell *m_cells;
};

} // namespace brightsweep
