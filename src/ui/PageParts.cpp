#include "ui/PageParts.h"

#include "core/Texts.h"
#include "ui/ImageProvider.h"
#include "ui/Theme.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int arrowSide = 16;
constexpr int buttonWidth = 128;
constexpr int buttonHeight = 36;

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

QHBoxLayout *makeBottomRow(QWidget *bottom) {
    auto *const row = new QHBoxLayout(bottom);
    row->setContentsMargins(4 * theme::grid, 3 * theme::grid, 4 * theme::grid, 3 * theme::grid);
    row->setSpacing(3 * theme::grid);
    return row;
}

QVBoxLayout *makeSumColumn(QLabel *sum, QLabel *words) {
    theme::keepFont(sum, 18, true);
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

} // namespace brightsweep
