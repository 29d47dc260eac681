#include "duplicates/ui/DuplicateListsView.h"

#include "core/Texts.h"
#include "duplicates/DuplicateOutlineModel.h"
#include "ui/FocusFrame.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"

#include <QAbstractListModel>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <array>

namespace brightsweep {

namespace {

using Page = SameFileDeleteViewController;

constexpr int rowHeight = 48;
constexpr int iconSide = 28;
constexpr int leastWidth = 168;
constexpr int frameOfRow = 4; // that of the list, and its scroll bar's
constexpr int SizeRole = Qt::UserRole;

// In the order of the lists.
constexpr std::array images = {
    "class_all.png",      "class_documents.png", "class_videos.png", "class_music.png",
    "class_archives.png", "class_pictures.png",  "class_others.png",
};

class Lists : public QAbstractListModel {
public:
    Lists(Page &page, QObject *parent) : QAbstractListModel(parent), m_page(page) {
        connect(&page, &Page::sizesChanged, this,
                [this] { Q_EMIT dataChanged(index(0), index(rowCount({}) - 1)); });
    }

    int rowCount(const QModelIndex &parent) const override {
        return parent.isValid() ? 0 : int(duplicateLists.size());
    }

    QVariant data(const QModelIndex &index, int role) const override {
        if (!index.isValid())
            return {};
        const QString name = localizedText(duplicateLists[std::size_t(index.row())].title);
        const QString size = readersSize(m_page.sizeOfRow(index.row()));
        switch (role) {
        case Qt::DisplayRole:
            return name;
        case Qt::DecorationRole:
            return QLatin1String(images[std::size_t(index.row())]);
        case SizeRole:
            return size;
        case Qt::AccessibleTextRole:
            return QString(name + QStringLiteral(", ") + size);
        default:
            return {};
        }
    }

private:
    Page &m_page;
};

class DuplicationLeftCell : public QStyledItemDelegate {
public:
    explicit DuplicationLeftCell(QWidget *list) : QStyledItemDelegate(list), m_list(*list) {}

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
        paintImage(*painter, index.data(Qt::DecorationRole).toString(), mirrored(row, icon));
        const QRect words = row.adjusted(icon.right() + 3 * theme::grid - row.left(), theme::grid,
                                         -theme::grid, -theme::grid);
        const int middle = words.top() + words.height() * 13 / 25;
        const QRect upper(words.topLeft(), QPoint(words.right(), middle));
        const QRect lower(QPoint(words.left(), middle + 1), words.bottomRight());
        painter->setPen(theme::text());
        painter->setFont(theme::font(12, isCurrent));
        painter->drawText(mirrored(row, upper), Qt::AlignLeft | Qt::AlignVCenter,
                          painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight,
                                                            upper.width()));
        painter->setPen(isCurrent ? theme::text() : theme::secondary());
        painter->setFont(theme::font(11));
        painter->drawText(mirrored(row, lower), Qt::AlignLeft | Qt::AlignVCenter,
                          index.data(SizeRole).toString());
        painter->restore();
    }

private:
    QWidget &m_list;
};

} // namespace

DuplicateListsView::DuplicateListsView(Page &page, DuplicateOutlineModel &outline, QWidget *parent)
    : QListView(parent), m_page(page), m_outline(outline) {
    setObjectName(QStringLiteral("duplicates.lists"));
    setAccessibleName(localizedText("CATEGORIES"));
    setModel(new Lists(page, this));
    setItemDelegate(new DuplicationLeftCell(this));
    setUniformItemSizes(true);
    setMouseTracking(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setFrameShape(NoFrame);
    // The row shows the focus.
    setStyleSheet(QStringLiteral("QListView { border-color: transparent !important; }"));
    theme::keep(this, [this] {
        QStringList names;
        for (int row = 0; row < model()->rowCount(); ++row)
            names += model()->index(row, 0).data().toString();
        const int words = std::max(theme::textWidth(names, 12, true),
                                   theme::textWidth({theme::widestSize()}, 11));
        setFixedWidth(std::max(theme::height(leastWidth),
                               words + theme::height(iconSide) + 8 * theme::grid + 2 * frameOfRow));
        scheduleDelayedItemsLayout();
    });
    connect(&page, &Page::listChanged, this, &DuplicateListsView::showRow);
    showRow();
}

void DuplicateListsView::showRow() {
    m_following = true;
    setCurrentIndex(model()->index(m_page.remberWitchSelect(), 0));
    m_following = false;
}

void DuplicateListsView::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QListView::currentChanged(current, previous);
    if (!m_following && current.isValid())
        m_outline.refViewBgColor(current.row());
}

} // namespace brightsweep
