#pragma once

#include <QStyledItemDelegate>

namespace brightsweep {

/// A row of the list on the left of a page: the image that DecorationRole names, the title, below
/// it what SizeRole says, and at the end a check box where CheckStateRole is valid. The list is its
/// parent. Main thread.
class LeftCell : public QStyledItemDelegate {
public:
    static constexpr int SizeRole = Qt::UserRole + 100;

    explicit LeftCell(QWidget *list) : QStyledItemDelegate(list), m_list(*list) {}

    /// Where the check box is in a row of a list that runs from left to right.
    static QRect checkBoxOf(const QRect &row);
    /// The room that the widest of the titles and any size take.
    static int widthOf(const QStringList &titles, bool hasCheckBoxes);

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

private:
    QWidget &m_list;
};

} // namespace brightsweep
