#pragma once

#include "cleaning/ui/ResultRowDelegate.h"
#include "uninstall/ui/ApplicationIcons.h"

namespace brightsweep {

class UninstallListModel;

/// A row of the applications: icon, name with its badges, and below it the version or why the
/// application stayed. What it draws is what its data delegate gives, which outlives it. Main
/// thread.
class ImageTextCell : public ResultRowDelegate {
    Q_OBJECT

public:
    ImageTextCell(const ResultRowForm &form, const UninstallListModel &dataDelegate,
                  QObject *parent);

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// The icon as the row draws it.
    QPixmap icon(const QModelIndex &index, qreal devicePixelRatio) const;

protected:
    void paintName(QPainter &painter, const QRect &area, bool isSelected,
                   const QModelIndex &index) const override;

private:
    void paintBadges(QPainter &painter, const QRect &area, QRect room, bool isSelected,
                     const QModelIndex &index) const;

    const UninstallListModel &m_dataDelegate;
    mutable ApplicationIcons m_appIcons;
};

} // namespace brightsweep
