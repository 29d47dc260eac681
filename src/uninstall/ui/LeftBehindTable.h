#pragma once

#include "cleaning/ui/ResultView.h"

namespace brightsweep {

class LeftBehindController;
class LeftBehindModel;

/// The list of what applications that are gone have left, each with the reason. The page and the
/// model outlive it.
class LeftBehindTable : public ResultView {
    Q_OBJECT

public:
    LeftBehindTable(LeftBehindController &page, LeftBehindModel &model, QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void tickSelection() override;
    void act(const QModelIndex &index) override;

private:
    void followTicks();

    LeftBehindController &m_page;
    LeftBehindModel &m_list;
};

} // namespace brightsweep
