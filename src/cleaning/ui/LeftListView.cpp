#include "cleaning/ui/LeftListView.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/CustomTableView.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/V3MainListView.h"
#include "core/CheckImage.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "ui/FocusFrame.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"

#include <QIdentityProxyModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int rowHeight = 48;
constexpr int iconSide = 28;
constexpr int markSide = 18;
constexpr int leastWidth = 200;
constexpr int frameOfRow = 4; // that of the list, and its scroll bar's

QRect checkBoxOf(const QRect &row) {
    const int side = theme::height(markSide);
    return {row.right() - 3 * theme::grid - side, row.center().y() - side / 2 + 1, side, side};
}

// What the delegate paints of a row in words, for screen readers.
class SpokenRows : public QIdentityProxyModel {
public:
    explicit SpokenRows(LeftListView *list) : QIdentityProxyModel(list), m_list(*list) {}

    QVariant data(const QModelIndex &index, int role) const override {
        if (role == Qt::CheckStateRole)
            return tick(index);
        const QVariant data = QIdentityProxyModel::data(index, role);
        if (role != Qt::AccessibleTextRole)
            return data;
        QString words =
            data.toString() + QStringLiteral(", ") + readersSize(m_list.foundText(index.row()));
        // Qt tells screen readers of Qt::Checked in an item view, but not of Qt::PartiallyChecked.
        if (tick(index) == Qt::PartiallyChecked)
            words += QStringLiteral(", ") + localizedText("PARTLY_TICKED");
        return words;
    }

    Qt::ItemFlags flags(const QModelIndex &index) const override {
        const Qt::ItemFlags flags = QIdentityProxyModel::flags(index);
        return tick(index).isValid() ? flags | Qt::ItemIsUserCheckable : flags;
    }

private:
    QVariant tick(const QModelIndex &index) const {
        const QString image = m_list.checkImage(index.row());
        for (const auto state : {Qt::Unchecked, Qt::PartiallyChecked, Qt::Checked}) {
            if (image == QLatin1String(brightsweep::checkImage(state)))
                return state;
        }
        return {};
    }

    LeftListView &m_list;
};

class LeftRowDelegate : public QStyledItemDelegate {
public:
    explicit LeftRowDelegate(LeftListView *list) : QStyledItemDelegate(list), m_list(*list) {}

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override {
        return {0, theme::height(rowHeight)};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
        const QRect row = option.rect.adjusted(0, 2, 0, -2);
        painter->setPen(FocusFrame::isShown(m_list) && isCurrent
                            ? QPen(theme::accent(), theme::focusWidth)
                            : QPen(Qt::NoPen));
        painter->setBrush(isCurrent ? theme::selection()
                          : option.state.testFlag(QStyle::State_MouseOver)
                              ? theme::hover()
                              : QColor(Qt::transparent));
        painter->drawRoundedRect(row.adjusted(1, 1, -1, -1), theme::radius, theme::radius);
        const int side = theme::height(iconSide);
        const QRect icon(row.left() + 3 * theme::grid, row.center().y() - side / 2 + 1, side, side);
        paintImage(*painter, index.data(CustomTableView::IconImageRole).toString(),
                   mirrored(row, icon));
        const QString check = m_list.checkImage(index.row());
        const QRect box = checkBoxOf(row);
        if (!check.isEmpty())
            paintImage(*painter, check, mirrored(row, box));
        const QRect words(icon.right() + 3 * theme::grid, row.top() + theme::grid,
                          box.left() - icon.right() - 5 * theme::grid,
                          row.height() - 2 * theme::grid);
        const QRect upper(words.left(), words.top(), words.width(), words.height() * 13 / 25);
        const QRect lower(words.left(), upper.bottom() + 1, words.width(),
                          words.height() - upper.height());
        painter->setPen(theme::text());
        painter->setFont(theme::font(12, isCurrent));
        painter->drawText(mirrored(row, upper), Qt::AlignLeft | Qt::AlignVCenter,
                          painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight,
                                                            upper.width()));
        painter->setPen(isCurrent ? theme::text() : theme::secondary());
        painter->setFont(theme::font(11));
        painter->drawText(mirrored(row, lower), Qt::AlignLeft | Qt::AlignVCenter,
                          readersSize(m_list.foundText(index.row())));
        painter->restore();
    }

private:
    LeftListView &m_list;
};

} // namespace

LeftListView::LeftListView(NewMainViewController &controller, QWidget *parent)
    : QListView(parent), m_controller(controller) {
    setObjectName(QStringLiteral("leftList"));
    setAccessibleName(localizedText("CATEGORIES"));
    auto *const rows = new SpokenRows(this);
    rows->setSourceModel(&controller.customTableView());
    setModel(rows);
    setItemDelegate(new LeftRowDelegate(this));
    setUniformItemSizes(true);
    setMouseTracking(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setFrameShape(NoFrame);
    // The row shows the focus.
    setStyleSheet(QStringLiteral("QListView { border-color: transparent !important; }"));
    for (unsigned category = 0; category < categoryCount; ++category)
        connect(&controller.row(category), &V3MainListView::changed, viewport(),
                qOverload<>(&QWidget::update));
    theme::keep(this, [this] {
        QStringList names;
        for (int row = 0; row < model()->rowCount(); ++row)
            names += model()->index(row, 0).data().toString();
        const int words = std::max(theme::textWidth(names, 12, true),
                                   theme::textWidth({theme::widestSize()}, 11));
        setFixedWidth(std::max(theme::height(leastWidth), words + theme::height(iconSide) +
                                                              theme::height(markSide) +
                                                              11 * theme::grid + 2 * frameOfRow));
        scheduleDelayedItemsLayout();
    });
    connect(&controller, &NewMainViewController::partsChanged, this, &LeftListView::showRow);
    showRow();
}

QString LeftListView::foundText(int row) const {
    if (row > 0)
        return m_controller.row(unsigned(row - 1)).sizeLabel();
    std::uint64_t bytes = 0;
    for (unsigned category = 0; category < categoryCount; ++category)
        bytes += UtilityFunction::getVolSpaceFromString(m_controller.row(category).sizeLabel());
    return UtilityFunction::convertVolSpace(bytes);
}

QString LeftListView::checkImage(int row) const {
    if (row == 0 || m_controller.row(unsigned(row - 1)).isCheckBoxHidden())
        return {};
    return model()->index(row, 0).data(CustomTableView::CheckImageRole).toString();
}

bool LeftListView::tick(int row) {
    if (checkImage(row).isEmpty())
        return false;
    m_controller.customTableView().checkBoxClicked(row);
    return true;
}

// The controller may have refused the row, or another one has been chosen from a menu.
void LeftListView::showRow() {
    m_following = true;
    const QModelIndex index = model()->index(m_controller.selectRowNum(), 0);
    if (index.isValid())
        setCurrentIndex(index);
    else
        clearSelection();
    m_following = false;
}

void LeftListView::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QListView::currentChanged(current, previous);
    if (m_following || !current.isValid())
        return;
    m_controller.customTableView().shouldSelectRow(current.row());
    showRow();
}

void LeftListView::mousePressEvent(QMouseEvent *event) {
    const QPoint place = event->position().toPoint();
    const QModelIndex index = indexAt(place);
    const QRect row = visualRect(index);
    const QRect box = mirrored(row, checkBoxOf(row)).adjusted(-6, -6, 6, 6);
    if (event->button() == Qt::LeftButton && index.isValid() && box.contains(place) &&
        tick(index.row()))
        return;
    QListView::mousePressEvent(event);
    // QListView selects the clicked row after its signals, also where the click was refused.
    showRow();
}

void LeftListView::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Space && currentIndex().isValid())
        tick(currentIndex().row());
    else
        QListView::keyPressEvent(event);
}

} // namespace brightsweep
