#include "app/ui/EmptyPanel.h"

#include "ui/ImageView.h"
#include "ui/Paragraph.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int imageSide = 120;
constexpr int sentenceWidth = 420;

} // namespace

EmptyPanel::EmptyPanel(const EmptyPanelContent &content, QWidget *parent) : QWidget(parent) {
    // The keyboard starts here, so that one Tab reaches the act.
    setFocusPolicy(Qt::ClickFocus);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8 * theme::grid, 8 * theme::grid, 8 * theme::grid, 8 * theme::grid);
    layout->setSpacing(0);
    layout->addStretch(2);
    auto *const image = new ImageView(content.imageName, this);
    theme::keepSize(image, imageSide, imageSide);
    layout->addWidget(image, 0, Qt::AlignHCenter);
    layout->addSpacing(6 * theme::grid);

    auto *const title = new QLabel(content.title, this);
    title->setTextFormat(Qt::PlainText);
    theme::keepFont(title, 20, true);
    title->setObjectName(QStringLiteral("empty.title"));
    layout->addWidget(title, 0, Qt::AlignHCenter);
    layout->addSpacing(2 * theme::grid);

    auto *const sentence = new Paragraph(content.sentence, this);
    sentence->setTextFormat(Qt::PlainText);
    sentence->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    theme::keepFont(sentence, 13);
    theme::keep(sentence,
                [sentence] { sentence->setParagraphWidth(theme::height(sentenceWidth)); });
    sentence->setObjectName(QStringLiteral("empty.sentence"));
    sentence->setProperty("secondary", true);
    layout->addWidget(sentence, 0, Qt::AlignHCenter);

    if (!content.actLabel.isEmpty()) {
        layout->addSpacing(6 * theme::grid);
        auto *const act = new QPushButton(content.actLabel, this);
        act->setProperty("primary", true);
        act->setAutoDefault(true); // Enter presses it
        act->setObjectName(QStringLiteral("empty.act"));
        connect(act, &QPushButton::clicked, this, content.act);
        layout->addWidget(act, 0, Qt::AlignHCenter);
    }
    layout->addStretch(3);
}

QSize EmptyPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

} // namespace brightsweep
