#include "diskusage/ui/UsagePathControl.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "ui/ElidedText.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QResizeEvent>
#include <QToolButton>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int mostCellWidth = 180;
constexpr int cellFrame = 28; // what a cell takes beside its name, with the arrow behind it

QString shown(const PathCell &cell) {
    return paths::display(cell.name);
}

} // namespace

UsagePathControl::UsagePathControl(V4DiskUsageViewController &page, QWidget *parent)
    : QWidget(parent), m_page(page), m_row(new QHBoxLayout(this)) {
    setObjectName(QStringLiteral("navigationCotrol"));
    setAccessibleName(localizedText("USAGE_PATH"));
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(0);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    connect(&page, &V4DiskUsageViewController::listChanged, this, &UsagePathControl::fill);
    fill();
}

void UsagePathControl::resizeEvent(QResizeEvent *event) {
    if (event->size().width() != event->oldSize().width())
        fill();
}

void UsagePathControl::fill() {
    while (QLayoutItem *const item = m_row->takeAt(0)) {
        // A cell may be what was just clicked.
        if (item->widget()) {
            item->widget()->hide();
            item->widget()->deleteLater();
        }
        delete item;
    }
    const auto cells = m_page.pathCells();
    const auto widthOf = [this](const PathCell &cell) {
        return std::min(fontMetrics().horizontalAdvance(shown(cell)),
                        theme::height(mostCellWidth)) +
               theme::height(cellFrame);
    };
    // From the end, as many as there is room for; the first always.
    int room = width() - widthOf(cells.front()) - theme::height(cellFrame);
    std::size_t from = cells.size();
    while (from > 1 && room >= widthOf(cells[from - 1]))
        room -= widthOf(cells[--from]);
    from = std::min(from, cells.size() - 1);
    addCell(cells.front(), cells.size() == 1, theme::height(mostCellWidth));
    if (from > 1)
        addHidden({cells.begin() + 1, cells.begin() + std::ptrdiff_t(from)});
    for (std::size_t i = std::max<std::size_t>(from, 1); i < cells.size(); ++i)
        addCell(cells[i], i + 1 == cells.size(), theme::height(mostCellWidth));
    m_row->addStretch(1);
}

void UsagePathControl::addCell(const PathCell &cell, bool isLast, int room) {
    auto *const button = new QToolButton(this);
    button->setObjectName(QStringLiteral("usage.cell"));
    button->setProperty("flat", true);
    button->setText(elidedText(fontMetrics(), shown(cell), Qt::ElideMiddle, room)
                        .replace(u'&', QStringLiteral("&&")));
    button->setAccessibleName(shown(cell));
    button->setToolTip(plainToolTip({paths::display(cell.path)}));
    if (isLast)
        theme::keepFont(button, 12, true);
    connect(button, &QToolButton::clicked, &m_page,
            [this, path = cell.path] { m_page.onChangePath(path); });
    m_row->addWidget(button);
    if (isLast)
        return;
    auto *const arrow =
        new QLabel(isRightToLeft() ? QStringLiteral("‹") : QStringLiteral("›"), this);
    arrow->setProperty("secondary", true);
    m_row->addWidget(arrow);
}

void UsagePathControl::addHidden(const std::vector<PathCell> &cells) {
    auto *const button = new QToolButton(this);
    button->setText(QStringLiteral("…"));
    button->setProperty("flat", true);
    button->setAccessibleName(localizedText("USAGE_FURTHER_FOLDERS"));
    button->setPopupMode(QToolButton::InstantPopup);
    auto *const menu = new QMenu(button);
    for (const PathCell &cell : cells) {
        menu->addAction(shown(cell).replace(u'&', QStringLiteral("&&")), &m_page,
                        [this, path = cell.path] { m_page.onChangePath(path); });
    }
    button->setMenu(menu);
    m_row->addWidget(button);
    m_row->addWidget(new QLabel(QStringLiteral("›"), this));
}

} // namespace brightsweep
