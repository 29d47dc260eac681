#include "volumes/ui/MenuItemView.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "ui/ElidedText.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"
#include "volumes/StatusMenu.h"
#include "volumes/ui/PopupMetrics.h"

#include <QPainter>

#include <algorithm>
#include <iterator>
#include <utility>

namespace brightsweep {

namespace {

constexpr int rowHeight = 50;
constexpr int iconSide = 24;
constexpr int iconLeft = 14;
constexpr int columnLeft = 48;
constexpr int buttonSide = 28;
constexpr int barHeight = 6;

// Own images by the row's storage, so that the rows are of one family.
constexpr const char *storageImages[] = {"volume_local.png",   "volume_external.png",
                                         "volume_optical.png", "volume_network.png",
                                         "volume_image.png",   "freememory.png"};

QString nameOf(const MenuItem &row) {
    return row.isMemory() ? localizedText(row.volumeSize) : row.volumeSize;
}

QString stateOf(const MenuItem &row) {
    return row.showsFigures() ? readersSize(row.stateText()) : localizedText(row.stateText());
}

// What stands before and behind the free space, which differs by language.
std::pair<QString, QString> aroundFree(const QString &total) {
    const QString sentence = localizedText("FREE_OF").arg(QStringLiteral("%1"), total);
    const auto place = sentence.indexOf(QLatin1String("%1"));
    return {sentence.left(place).trimmed(), sentence.mid(place + 2).trimmed()};
}

} // namespace

MenuItemView::MenuItemView(StatusMenu &menu, std::size_t row, QWidget *parent)
    : PopupButton(parent), m_menu(menu), m_row(row), backButton(new PopupImageButton(this)) {
    setObjectName(QStringLiteral("row.") + item().title);
    backButton->setObjectName(
        (item().isMemory() ? QStringLiteral("free.") : QStringLiteral("eject.")) + item().title);
    connect(this, &QAbstractButton::clicked, this, [this] { m_menu.clickRow(m_row); });
    connect(backButton, &QAbstractButton::clicked, this, [this] {
        if (item().isMemory())
            m_menu.cleanMemoryButtonClick();
        else
            m_menu.backDisk(m_row);
    });
    updateFromRow();
}

const MenuItem &MenuItemView::item() const {
    return m_menu.rows()[m_row];
}

QSize MenuItemView::sizeHint() const {
    const int right = popup::scaled(buttonSide) + popup::scaled(10) + theme::grid;
    const int wanted = popup::scaled(columnLeft) + figuresWidth() + right;
    return {std::max(popup::width(), wanted), theme::height(rowHeight)};
}

// Of the widest figures that the row may come to, so that no refresh needs another window.
int MenuItemView::figuresWidth() const {
    const QString size = theme::widestSize();
    const auto [before, behind] = aroundFree(size);
    return std::max(theme::textWidth({stateOf(item())}, 11, true),
                    theme::textWidth({before}, 11) + theme::textWidth({size}, 11, true) +
                        theme::textWidth({behind}, 11) + 2 * theme::grid);
}

void MenuItemView::updateFromRow() {
    const MenuItem &row = item();
    setAccessibleName(row.showsFigures()
                          ? localizedText("VOLUME_FREE_OF")
                                .arg(nameOf(row), stateOf(row), readersSize(row.u64TotalSpace))
                          : spokenWords({nameOf(row), stateOf(row)}));
    // A screen reader cannot tell the red of a warning, and must not read the tool tip's markup.
    setAccessibleDescription(
        spokenWords({row.warns() ? localizedText("ROW_WARNS") : QString(), row.toolTip}));
    setToolTip(row.toolTip.isEmpty() ? QString() : plainToolTip(row.toolTip.split(u'\n')));
    const bool pressable = row.isMemory() || row.bCanEject;
    backButton->setVisible(pressable);
    backButton->setEnabled(pressable && !row.isEjecting);
    backButton->setImageName(row.isMemory() ? QStringLiteral("clean_memory.png")
                                            : row.ejectImage());
    const QString does =
        row.isMemory() ? localizedText("Free Memory") : localizedText("EJECT").arg(row.volumeSize);
    backButton->setAccessibleName(does);
    update();
}

void MenuItemView::resizeEvent(QResizeEvent *) {
    const int side = popup::scaled(buttonSide);
    backButton->setGeometry(mirrored(
        rect(), QRect(width() - side - popup::scaled(10), (height() - side) / 2, side, side)));
}

void MenuItemView::enterEvent(QEnterEvent *event) {
    m_menu.mouseEntered(m_row);
    PopupButton::enterEvent(event);
}

void MenuItemView::leaveEvent(QEvent *event) {
    m_menu.mouseExited(m_row);
    PopupButton::leaveEvent(event);
}

void MenuItemView::paintFigures(QPainter &painter, const QRectF &place, bool lit) const {
    const MenuItem &row = item();
    QRectF rest = place;
    const auto draw = [&](const QString &words, bool isLoud, const QColor &color) {
        if (words.isEmpty())
            return;
        const QFont font = theme::font(11, isLoud);
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(mirrored(QRectF(rect()), rest), Qt::AlignLeft | Qt::AlignVCenter, words);
        rest.setLeft(rest.left() + QFontMetricsF(font).horizontalAdvance(words) + theme::grid);
    };
    if (!row.showsFigures())
        return draw(stateOf(row), true, theme::text());
    const QColor quiet = lit ? theme::text() : theme::secondary();
    const auto [before, behind] = aroundFree(readersSize(row.u64TotalSpace));
    draw(before, false, quiet);
    draw(stateOf(row), true, row.warns() && !lit ? theme::danger() : theme::accent());
    draw(behind, false, quiet);
}

void MenuItemView::paintEvent(QPaintEvent *) {
    const MenuItem &row = item();
    const bool lit = row.clicked && isEnabled();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(4, 1, -4, -1);
    if (lit) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme::selection());
        painter.drawRoundedRect(box, popup::rowRadius, popup::rowRadius);
    }
    const auto place = [this](double x, double y, double wide, double high) {
        return mirrored(QRectF(rect()), QRectF(x, y, wide, high));
    };
    const double side = popup::scaled(iconSide);
    if (row.myStorage >= 0 && std::size_t(row.myStorage) < std::size(storageImages))
        paintImage(painter, QLatin1String(storageImages[row.myStorage]),
                   place(popup::scaled(iconLeft), (height() - side) / 2, side, side));

    const double left = popup::scaled(columnLeft);
    const double width =
        rect().width() - popup::scaled(buttonSide) - popup::scaled(10) - theme::grid - left;
    const QFont bold = theme::font(12, true);
    const double nameHeight = QFontMetricsF(bold).height();
    const double figuresHeight = QFontMetricsF(theme::font(11)).height();
    const double bar = popup::scaled(barHeight);
    const double rest = height() - nameHeight - figuresHeight - bar;
    const double gap = rest / 6;
    double top = rest / 3;
    painter.setFont(bold);
    painter.setPen(row.warns() && !lit ? theme::danger() : theme::text());
    painter.drawText(
        place(left, top, width, nameHeight), Qt::AlignLeft | Qt::AlignVCenter,
        elidedText(QFontMetrics(bold), popup::oneLine(nameOf(row)), Qt::ElideMiddle, int(width)));
    top += nameHeight + gap;
    paintImage(painter, row.prograssImage, place(left, top, width, bar));
    top += bar + gap;
    paintFigures(painter, QRectF(left, top, width, figuresHeight), lit);
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(theme::accent(), theme::focusWidth));
        painter.drawRoundedRect(box, popup::rowRadius, popup::rowRadius);
    }
}

} // namespace brightsweep
