#pragma once

#include "ui/LeftCell.h"
#include "ui/LeftList.h"

namespace brightsweep {

class UninstallAppsController;

/// A row of the list on the left of the uninstall page; it reports a click by the notification
/// "changeSelectCell". Main thread.
class UninstallLeftCell : public LeftCell {
public:
    using LeftCell::LeftCell;

    static void reportClick(int row);
};

/// The list of these rows. The page outlives it.
class UninstallLeftList : public LeftList {
    Q_OBJECT

public:
    explicit UninstallLeftList(UninstallAppsController &page, QWidget *parent = nullptr);

protected:
    void chosen(int row) override;

private:
    UninstallAppsController &m_page;
};

} // namespace brightsweep
