#pragma once

#include <QScrollArea>

namespace brightsweep {

class NewMainViewController;

/// The six rows of the overview, scrolled where large text leaves them too little room. The
/// controller outlives it. Main thread.
class OverviewList : public QScrollArea {
    Q_OBJECT

public:
    explicit OverviewList(NewMainViewController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

} // namespace brightsweep
