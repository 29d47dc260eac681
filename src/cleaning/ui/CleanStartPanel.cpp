#include "cleaning/ui/CleanStartPanel.h"

#include "cleaning/NewMainViewController.h"
#include "cleaning/ui/StyledLabel.h"
#include "core/Texts.h"
#include "ui/ImageView.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int pictureSide = 136;
constexpr int sentenceWidth = 440;
constexpr int buttonWidth = 168;
constexpr int buttonHeight = 40;

} // namespace

CleanStartPanel::CleanStartPanel(NewMainViewController &controller, QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_title(new QLabel(localizedText("Fast Clean"), this)),
      m_sentence(new StyledLabel(this)),
      m_notice(new StyledLabel(this)),
      m_button(new QPushButton(this)),
      m_picture(new ImageView(QStringLiteral("start_clean.png"), this)) {
    theme::keepFont(m_title, 20, true);
    m_sentence->setObjectName(QStringLiteral("clean.sentence"));
    m_sentence->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_notice->setObjectName(QStringLiteral("clean.notice"));
    m_notice->setAlignment(Qt::AlignHCenter);
    theme::keepSize(m_picture, pictureSide, pictureSide);
    m_button->setObjectName(QStringLiteral("scanButton"));
    m_button->setProperty("primary", true);
    m_button->setAutoDefault(true); // Enter presses it
    theme::keep(this, [this] {
        m_sentence->setParagraphWidth(theme::height(sentenceWidth));
        m_notice->setParagraphWidth(theme::height(sentenceWidth));
        m_button->setMinimumSize(theme::height(buttonWidth), theme::height(buttonHeight));
    });
    theme::keepFont(m_button, 14, true);

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8 * theme::grid, 8 * theme::grid, 8 * theme::grid, 8 * theme::grid);
    layout->setSpacing(0);
    layout->addStretch(2);
    layout->addWidget(m_picture, 0, Qt::AlignHCenter);
    layout->addSpacing(5 * theme::grid);
    layout->addWidget(m_title, 0, Qt::AlignHCenter);
    layout->addSpacing(2 * theme::grid);
    layout->addWidget(m_sentence, 0, Qt::AlignHCenter);
    layout->addWidget(m_notice, 0, Qt::AlignHCenter);
    layout->addSpacing(7 * theme::grid);
    layout->addWidget(m_button, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    setFocusProxy(m_button);

    connect(m_button, &QPushButton::clicked, this, [this] {
        if (m_controller.needsRestart())
            m_controller.restart();
        else
            m_controller.clickScanBtn();
    });
    connect(&m_controller, &NewMainViewController::stateChanged, this, &CleanStartPanel::follow);
    connect(&m_controller, &NewMainViewController::headingChanged, this, &CleanStartPanel::follow);
    follow();
}

QSize CleanStartPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

void CleanStartPanel::follow() {
    CleanStyledText sentence = m_controller.recovered();
    if (sentence.text.isEmpty())
        sentence.text = localizedText("EMPTY_SCAN");
    m_sentence->setStyledText(sentence);
    m_notice->setStyledText({m_controller.notice(), 12, {}});
    m_notice->setVisible(!m_controller.notice().isEmpty());
    m_button->setText(m_controller.needsRestart() ? localizedText("RESTART")
                                                  : localizedText("Scan"));
}

void CleanStartPanel::showEvent(QShowEvent *) {
    follow();
}

} // namespace brightsweep
