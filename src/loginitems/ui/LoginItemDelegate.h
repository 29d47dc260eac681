#pragma once

#include "uninstall/ui/ApplicationIcons.h"

#include <QElapsedTimer>
#include <QStyledItemDelegate>

namespace brightsweep {

/// Paints a row of the login items: check box, icon, name with the mark of what does not start,
/// below it what it starts, and buttons. Everything is plain text. Main thread.
class LoginItemDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// What a cell of the column of entries takes for this text, also where the row stands out.
    static int widthOf(const QString &text);

Q_SIGNALS:
    /// A button of that row and column.
    void clicked(const QModelIndex &index);

protected:
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

private:
    void paintName(QPainter &painter, const QStyleOptionViewItem &option,
                   const QModelIndex &index) const;

    mutable ApplicationIcons m_icons;
    QElapsedTimer m_lastClick;
    QPoint m_lastPlace; // of it, in the viewport
};

} // namespace brightsweep
