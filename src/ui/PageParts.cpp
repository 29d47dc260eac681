#include "ui/PageParts.h"

#include "core/Texts.h"
#include "ui/ImageProvider.h"
#include "ui/ImageView.h"
#include "ui/Theme.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int arrowSide = 16;
constexpr int emptyPictureSide = 96;
constexpr int buttonWidth = 128;
constexpr int buttonHeight = 36;
constexpr double sumSize = 18;
constexpr double tickedSize = 15; // of the number in the words below the sum

class RemovingButton : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    void keyPressEvent(QKeyEvent *event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            event->ignore();
        else
            QPushButton::keyPressEvent(event);
    }
};

} // namespace

QPushButton *makeBackButton(QWidget *parent) {
    auto *const button = new QPushButton(localizedText("BACK"), parent);
    button->setObjectName(QStringLiteral("backButton"));
    button->setIcon(imageNamed(parent->isRightToLeft() ? QStringLiteral("arrow_right.png")
                                                       : QStringLiteral("arrow_left.png")));
    theme::keep(button, [button] {
        button->setIconSize({theme::height(arrowSide), theme::height(arrowSide)});
    });
    return button;
}

QFrame *makeHairline(QWidget *parent) {
    auto *const line = new QFrame(parent);
    line->setFixedHeight(1);
    line->setProperty("hairline", true);
    return line;
}

QLabel *makePlainLabel(const char *name, QWidget *parent) {
    auto *const label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

QHBoxLayout *makeHeadingRow(QWidget *heading) {
    auto *const row = new QHBoxLayout(heading);
    row->setContentsMargins(2 * theme::grid, theme::grid, 2 * theme::grid, 2 * theme::grid);
    row->setSpacing(3 * theme::grid);
    return row;
}

QVBoxLayout *makeEmptyPart(const QString &picture, QLabel *label, QWidget *part) {
    auto *const layout = new QVBoxLayout(part);
    auto *const image = new ImageView(picture, part);
    theme::keepSize(image, emptyPictureSide, emptyPictureSide);
    layout->addStretch(2);
    layout->addWidget(image, 0, Qt::AlignHCenter);
    layout->addSpacing(3 * theme::grid);
    layout->addWidget(label, 0, Qt::AlignHCenter);
    return layout;
}

QScrollArea *makeScroll(QWidget *content, QWidget *parent) {
    auto *const scroll = new QScrollArea(parent);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->viewport()->setAutoFillBackground(false);
    scroll->setWidget(content);
    content->setAutoFillBackground(false);
    return scroll;
}

QHBoxLayout *makeBottomRow(QWidget *bottom) {
    auto *const row = new QHBoxLayout(bottom);
    row->setContentsMargins(4 * theme::grid, 3 * theme::grid, 4 * theme::grid, 3 * theme::grid);
    row->setSpacing(3 * theme::grid);
    return row;
}

QVBoxLayout *makeSumColumn(QLabel *sum, QLabel *words) {
    theme::keepFont(sum, sumSize, true);
    sum->setProperty("number", true);
    QSizePolicy keepsRoom = sum->sizePolicy();
    keepsRoom.setRetainSizeWhenHidden(true);
    sum->setSizePolicy(keepsRoom);
    auto *const column = new QVBoxLayout;
    column->setSpacing(0);
    for (QLabel *const label : {sum, words}) {
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        column->addWidget(label);
    }
    // The row below a page is as high without a tick as with one.
    theme::keep(words, [sum, words] {
        sum->setMinimumHeight(QFontMetrics(theme::font(sumSize, true)).height());
        words->setMinimumHeight(QFontMetrics(theme::font(tickedSize, true)).height());
    });
    return column;
}

QPushButton *makeRemovingButton(const char *name, const QString &text, QWidget *parent) {
    auto *const button = new RemovingButton(text, parent);
    button->setObjectName(QLatin1String(name));
    button->setProperty("primary", true);
    theme::keep(button, [button] {
        button->setMinimumSize(theme::height(buttonWidth), theme::height(buttonHeight));
    });
    return button;
}

bool holdsFocus(const QWidget &part) {
    const QWidget *const focus = part.window()->focusWidget();
    return focus && (focus == &part || part.isAncestorOf(focus));
}

void openMenuByKeyboard(QWidget &widget) {
    const QPoint middle = widget.rect().center();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, middle, widget.mapToGlobal(middle));
    QCoreApplication::sendEvent(&widget, &menu);
}

} // namespace brightsweep
