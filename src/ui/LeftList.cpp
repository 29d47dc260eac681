#include "ui/LeftList.h"

#include "core/Texts.h"
#include "ui/LeftCell.h"
#include "ui/Theme.h"

#include <algorithm>

namespace brightsweep {

LeftList::LeftList(const char *name, QWidget *parent) : QListView(parent) {
    setObjectName(QLatin1String(name));
    setAccessibleName(localizedText("CATEGORIES"));
    setUniformItemSizes(true);
    setMouseTracking(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setFrameShape(NoFrame);
    // The row shows the focus.
    setStyleSheet(QStringLiteral("QListView { border-color: transparent !important; }"));
}

void LeftList::setRows(QAbstractItemModel *rows, LeftCell *cell, Width width) {
    setModel(rows);
    setItemDelegate(cell);
    theme::keep(this, [this, width] {
        QStringList titles;
        for (int row = 0; row < model()->rowCount(); ++row)
            titles += model()->index(row, 0).data().toString();
        setFixedWidth(
            std::max(theme::height(width.least), LeftCell::widthOf(titles, width.hasCheckBoxes)));
        scheduleDelayedItemsLayout();
    });
}

void LeftList::showRow(int row) {
    m_following = true;
    const QModelIndex index = model()->index(row, 0);
    if (index.isValid())
        setCurrentIndex(index);
    else
        clearSelection();
    m_following = false;
}

void LeftList::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QListView::currentChanged(current, previous);
    if (!m_following && current.isValid())
        chosen(current.row());
}

} // namespace brightsweep
