#include "ui/FolderDropCard.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "ui/ElidedText.h"
#include "ui/ImageView.h"
#include "ui/Paragraph.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int pictureSide = 96;
constexpr int buttonWidth = 168;
constexpr int buttonHeight = 40;

} // namespace

FolderDropCard::FolderDropCard(const QString &title, const QString &sentence, Look look,
                               QWidget *parent)
    : QWidget(parent),
      m_parts(new QVBoxLayout(this)),
      m_choose(new QPushButton(localizedText("CHOOSE_FOLDER"), this)) {
    const int gap = look.gap * theme::grid;
    m_parts->setContentsMargins(2 * gap, gap + 2 * theme::grid, 2 * gap, 2 * gap);
    m_parts->setSpacing(0);
    auto *const picture = new ImageView(QLatin1String(look.image), this);
    theme::keepSize(picture, pictureSide, pictureSide);
    m_parts->addWidget(picture, 0, Qt::AlignHCenter);
    m_parts->addSpacing(gap);
    auto *const heading = new QLabel(title, this);
    theme::keepFont(heading, 20, true);
    m_parts->addWidget(heading, 0, Qt::AlignHCenter);
    m_parts->addSpacing(2 * theme::grid);
    auto *const words = new Paragraph(sentence, this);
    words->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    words->setProperty("secondary", true);
    theme::keepFont(words, 13);
    m_parts->addWidget(words, 0, Qt::AlignHCenter);
    m_parts->addSpacing(gap + theme::grid);
    m_choose->setObjectName(QStringLiteral("folderButton"));
    m_choose->setProperty("primary", true);
    m_choose->setAutoDefault(true); // Enter presses it
    theme::keepFont(m_choose, 14, true);
    m_parts->addWidget(m_choose, 0, Qt::AlignHCenter);
    theme::keep(this, [this, words, look] {
        words->setParagraphWidth(theme::height(look.sentenceWidth));
        setMinimumWidth(theme::height(look.width));
        m_choose->setMinimumSize(theme::height(buttonWidth), theme::height(buttonHeight));
    });
}

void FolderDropCard::add(QWidget *line) {
    m_parts->addSpacing(2 * theme::grid);
    m_parts->addWidget(line, 0, Qt::AlignHCenter);
}

void FolderDropCard::setHovered(bool isHovered) {
    m_isHovered = isHovered;
    update();
}

void FolderDropCard::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_isHovered ? theme::accent() : theme::secondary(), 2, Qt::DashLine));
    painter.setBrush(m_isHovered ? theme::hover() : theme::raised());
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 2 * theme::radius,
                            2 * theme::radius);
}

QPushButton *makeFolderButton(const char *name, const std::filesystem::path &folder, int width,
                              QWidget *parent) {
    auto *const button = new QPushButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setFlat(true);
    button->setAutoDefault(true);
    const QString path = paths::displayFromHome(folder);
    button->setText(elidedText(button->fontMetrics(), path, Qt::ElideMiddle, width)
                        .replace(u'&', QStringLiteral("&&")));
    button->setToolTip(plainToolTip({path}));
    button->setAccessibleName(path);
    return button;
}

} // namespace brightsweep
