#include "core/ui/EmptyPanel.h"

#include "core/ui/ImageProvider.h"
#include "core/ui/Theme.h"

#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int imageSide = 120;
constexpr int sentenceWidth = 420;

class Picture : public QWidget {
public:
    Picture(const QString &imageName, QWidget *parent) : QWidget(parent), m_imageName(imageName) {
        setFixedSize(imageSide, imageSide);
    }

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        paintImage(painter, m_imageName, rect());
    }

private:
    QString m_imageName;
};

// Wraps its words and is as high as they need, which a layout that centres it does not ask for.
class Paragraph : public QLabel {
public:
    Paragraph(const QString &text, QWidget *parent) : QLabel(text, parent) {
        setTextFormat(Qt::PlainText);
        setWordWrap(true);
        setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    }

    bool hasHeightForWidth() const override { return false; }
    QSize sizeHint() const override {
        const int width = sentenceWidth * theme::height(100) / 100;
        return {width, heightForWidth(width)};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace

EmptyPanel::EmptyPanel(const EmptyPanelContent &content, QWidget *parent) : QWidget(parent) {
    // The keyboard starts here, so that one Tab reaches the act.
    setFocusPolicy(Qt::ClickFocus);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8 * theme::grid, 8 * theme::grid, 8 * theme::grid, 8 * theme::grid);
    layout->setSpacing(0);
    layout->addStretch(2);
    layout->addWidget(new Picture(content.imageName, this), 0, Qt::AlignHCenter);
    layout->addSpacing(6 * theme::grid);

    auto *const title = new QLabel(content.title, this);
    title->setTextFormat(Qt::PlainText);
    title->setFont(theme::font(20, true));
    title->setObjectName(QStringLiteral("empty.title"));
    layout->addWidget(title, 0, Qt::AlignHCenter);
    layout->addSpacing(2 * theme::grid);

    auto *const sentence = new Paragraph(content.sentence, this);
    sentence->setFont(theme::font(13));
    sentence->setObjectName(QStringLiteral("empty.sentence"));
    sentence->setProperty("secondary", true);
    layout->addWidget(sentence, 0, Qt::AlignHCenter);

    if (!content.actLabel.isEmpty()) {
        layout->addSpacing(6 * theme::grid);
        auto *const act = new QPushButton(content.actLabel, this);
        act->setProperty("primary", true);
        act->setObjectName(QStringLiteral("empty.act"));
        connect(act, &QPushButton::clicked, this, content.act);
        layout->addWidget(act, 0, Qt::AlignHCenter);
    }
    layout->addStretch(3);
}

QSize EmptyPanel::sizeHint() const {
    return {880, 500};
}

} // namespace brightsweep
