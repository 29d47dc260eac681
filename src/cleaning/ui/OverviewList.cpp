#include "cleaning/ui/OverviewList.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/ui/OverviewRow.h"

#include <QVBoxLayout>

namespace brightsweep {

OverviewList::OverviewList(NewMainViewController &controller, QWidget *parent)
    : QScrollArea(parent) {
    auto *const rows = new QWidget;
    auto *const layout = new QVBoxLayout(rows);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (unsigned category = 0; category < categoryCount; ++category)
        layout->addWidget(new OverviewRow(controller.row(category), rows));
    layout->addStretch(1);
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(rows);
    rows->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

QSize OverviewList::sizeHint() const {
    return widget()->sizeHint();
}

// Half of the rows are to be seen in any case.
QSize OverviewList::minimumSizeHint() const {
    return {0, widget()->sizeHint().height() / 2};
}

} // namespace brightsweep
