#include "cleaning/ui/OverviewList.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/V3MainListView.h"
#include "cleaning/ui/OverviewRow.h"
#include "core/UtilityFunction.h"

#include <QVBoxLayout>

namespace brightsweep {

namespace {

double bytesOf(const V3MainListView &row) {
    return double(UtilityFunction::getVolSpaceFromString(row.sizeLabel()));
}

} // namespace

OverviewList::OverviewList(NewMainViewController &controller, QWidget *parent)
    : QScrollArea(parent) {
    auto *const rows = new QWidget;
    auto *const layout = new QVBoxLayout(rows);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (unsigned category = 0; category < categoryCount; ++category) {
        const V3MainListView &row = controller.row(category);
        const auto share = [&controller, &row] {
            double all = 0;
            for (unsigned other = 0; other < categoryCount; ++other)
                all += bytesOf(controller.row(other));
            return all > 0 ? bytesOf(row) / all : 0;
        };
        layout->addWidget(new OverviewRow(controller.row(category), share, rows));
        // What is found in one changes the shares of all.
        connect(&row, &V3MainListView::changed, rows, qOverload<>(&QWidget::update));
    }
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
