#include "loginitems/ui/LoginItemDelegate.h"

#include "core/CheckImage.h"
#include "foundation/Identity.h"
#include "loginitems/LoginItemModel.h"
#include "ui/ElidedText.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCursor>
#include <QIcon>
#include <QMimeDatabase>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int rowHeight = 34;
constexpr int selectedRowHeight = 36;
constexpr int iconSide = 28;
constexpr int markSide = 18;
constexpr double nameSize = 13;
constexpr double noteSize = 11;
constexpr double selectedSize = 13.5;
constexpr int cellLeft = 2 * theme::grid;
constexpr int cellRight = 4 * theme::grid;
constexpr qreal hiddenOpacity = 0.5;

bool isButton(const QModelIndex &index) {
    return loginItemColumns[std::size_t(index.column())].image != nullptr;
}

QRect middle(const QRect &area, int stated) {
    const int side = theme::height(stated);
    return {area.center().x() - side / 2 + 1, area.center().y() - side / 2 + 1, side, side};
}

// Selection and hover are the row's; a button has a surface of its own under the pointer.
void paintGround(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isUnderMouse = option.state.testFlag(QStyle::State_MouseOver);
    if (isSelected)
        painter.fillRect(option.rect, theme::selection());
    else if (isUnderMouse)
        painter.fillRect(option.rect, theme::hover());
    painter.setRenderHint(QPainter::Antialiasing);
    const auto *const view = qobject_cast<const QAbstractItemView *>(option.widget);
    if (!view || !isUnderMouse || !isButton(index) ||
        !option.rect.contains(view->viewport()->mapFromGlobal(QCursor::pos())))
        return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(isSelected ? theme::hover() : theme::hairline());
    painter.drawRoundedRect(middle(option.rect, markSide + 4 * theme::grid), theme::radius,
                            theme::radius);
}

bool hasIcon(const QString &name) {
    return !name.isEmpty() && (name.startsWith(u'/') || QIcon::hasThemeIcon(name));
}

// A name that the icon theme has: that of the entry, else that of the type of what it starts; empty
// where it has neither.
QString iconNameOf(const QModelIndex &index) {
    static const QMimeDatabase types;
    // By the name alone: a home that does not answer would hold the window up.
    const QMimeType type = types.mimeTypeForFile(
        index.data(LoginItemModel::SecondaryTextRole).toString(), QMimeDatabase::MatchExtension);
    const QString usual = QStringLiteral("application-x-executable");
    for (const QString &name : {index.data(LoginItemModel::IconNameRole).toString(),
                                type.isDefault() ? usual : type.iconName(), usual}) {
        if (hasIcon(name))
            return name;
        if (name == QLatin1String(bundleIdentifier))
            break;
    }
    return {};
}

// What stands for an entry without an icon.
QString signOf(const QModelIndex &index) {
    const bool isOwn =
        index.data(LoginItemModel::IconNameRole).toString() == QLatin1String(bundleIdentifier);
    return isOwn ? QStringLiteral("logo-128x128.png") : QStringLiteral("login_items");
}

// A mark stands in a frame, so that it is told from the name without its colour.
int paintMark(QPainter &painter, const QRect &row, const QRect &room, const QString &mark,
              bool isSelected) {
    if (mark.isEmpty())
        return 0;
    const QFontMetrics metrics(theme::font(noteSize));
    const int width = metrics.horizontalAdvance(mark) + 3 * theme::grid;
    if (width > room.width() / 2)
        return 0;
    const int height = std::min(metrics.height() + 2, room.height());
    const QRect frame =
        mirrored(row, QRect(room.right() - width, room.center().y() - height / 2, width, height));
    const QColor color = isSelected ? theme::text() : theme::accent();
    painter.setPen(QPen(color, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), theme::grid, theme::grid);
    painter.setFont(theme::font(noteSize));
    painter.drawText(frame, Qt::AlignCenter | Qt::TextSingleLine, mark);
    return width + 2 * theme::grid;
}

} // namespace

QSize LoginItemDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const {
    const bool isSelected = index.data(LoginItemModel::FontSizeRole).toDouble() == selectedSize;
    return {0, theme::height(isSelected ? selectedRowHeight : rowHeight)};
}

int LoginItemDelegate::widthOf(const QString &text) {
    return theme::textWidth({text}, selectedSize) + cellLeft + cellRight;
}

void LoginItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const {
    painter->save();
    paintGround(*painter, option, index);
    if (index.column() == LoginItemModel::checkBox) {
        const auto state = index.data(Qt::CheckStateRole).value<Qt::CheckState>();
        paintImage(*painter, QLatin1String(checkImage(state)), middle(option.rect, markSide));
    } else if (index.column() == LoginItemModel::Name) {
        paintName(*painter, option, index);
    } else if (isButton(index)) {
        paintImage(*painter, index.data(LoginItemModel::ImageRole).toString(),
                   middle(option.rect, markSide));
    } else {
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        const QRect room = option.rect.adjusted(cellLeft, 0, -cellRight, 0);
        painter->setPen(isSelected ? theme::text() : theme::secondary());
        painter->setFont(theme::font(index.data(LoginItemModel::FontSizeRole).toDouble()));
        painter->drawText(mirrored(option.rect, room),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          elidedText(painter->fontMetrics(), index.data().toString(),
                                     Qt::ElideMiddle, room.width()));
    }
    painter->restore();
}

void LoginItemDelegate::paintName(QPainter &painter, const QStyleOptionViewItem &option,
                                  const QModelIndex &index) const {
    const QRect area = option.rect;
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isHidden =
        index.siblingAtColumn(LoginItemModel::checkBox).data(Qt::CheckStateRole).toInt() ==
        Qt::Checked;
    const int side = theme::height(iconSide);
    const QRect place(area.left() + 2 * theme::grid, area.center().y() - side / 2 + 1, side, side);
    painter.setOpacity(isHidden ? hiddenOpacity : 1.0);
    const QString icon = iconNameOf(index);
    if (icon.isEmpty())
        paintImage(painter, signOf(index),
                   mirrored(area, middle(place, iconSide - 2 * theme::grid)));
    else
        painter.drawPixmap(mirrored(area, place),
                           m_icons.pixmap(icon, index.data().toString(), side,
                                          painter.device()->devicePixelRatioF()));
    painter.setOpacity(1.0);
    QRect upper = area.adjusted(side + 5 * theme::grid, 0, -2 * theme::grid, 0);
    QRect lower = upper;
    const int nameHeight = QFontMetrics(theme::font(nameSize, true)).height();
    const int noteHeight = QFontMetrics(theme::font(noteSize)).height();
    upper.setTop(area.top() + (area.height() - nameHeight - noteHeight) / 2);
    upper.setHeight(nameHeight);
    lower.setTop(upper.bottom() + 1);
    lower.setHeight(noteHeight);
    const auto draw = [&](const QRect &room, const QString &text, const QFont &font,
                          const QColor &color, Qt::TextElideMode mode) {
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(mirrored(area, room),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         elidedPath(QFontMetrics(font), text, mode, room.width()));
    };
    const QString mark = index.data(LoginItemModel::MarkRole).toString();
    const QRect whole(upper.left(), area.top(), upper.width(), area.height());
    upper.setRight(upper.right() - paintMark(painter, area, whole, mark, isSelected));
    lower.setRight(upper.right());
    draw(upper, index.data(LoginItemModel::PrimaryTextRole).toString(), theme::font(nameSize, true),
         isHidden && !isSelected ? theme::secondary() : theme::text(), Qt::ElideRight);
    draw(lower, index.data(LoginItemModel::SecondaryTextRole).toString(), theme::font(noteSize),
         isSelected ? theme::text() : theme::secondary(), Qt::ElideMiddle);
}

bool LoginItemDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                    const QStyleOptionViewItem &option, const QModelIndex &index) {
    const bool isLeft = event->type() == QEvent::MouseButtonRelease &&
                        static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton;
    // The first click may have moved another row below the pointer.
    const bool isSecond = isLeft && m_lastClick.isValid() && option.rect.contains(m_lastPlace) &&
                          m_lastClick.elapsed() < QApplication::doubleClickInterval();
    const bool isClick = isLeft && !isSecond;
    if (isLeft) {
        m_lastClick.start();
        m_lastPlace = static_cast<QMouseEvent *>(event)->position().toPoint();
    }
    if (isClick && index.column() == LoginItemModel::checkBox)
        return model->setData(index, {}, Qt::CheckStateRole);
    if (isClick && isButton(index)) {
        Q_EMIT clicked(index);
        return true;
    }
    // The keyboard is the view's own.
    return event->type() == QEvent::KeyPress ||
           (event->type() != QEvent::MouseButtonDblClick &&
            QStyledItemDelegate::editorEvent(event, model, option, index));
}

} // namespace brightsweep
