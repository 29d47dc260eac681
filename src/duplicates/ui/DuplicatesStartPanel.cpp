#include "duplicates/ui/DuplicatesStartPanel.h"
#include "duplicates/ui/DuplicatesFolder.h"

#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "duplicates/RecentFolders.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "foundation/Paths.h"
#include "ui/FolderChoice.h"
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
constexpr int cardWidth = 520;
constexpr int sentenceWidth = 420;
constexpr int buttonWidth = 168;
constexpr int buttonHeight = 40;

} // namespace

QString limitWords() {
    const std::uint64_t limit = SameFileDeleteViewController::searchLimit();
    return limit == 0 ? localizedText("DUP_NO_LIMIT")
                      : localizedText("DUP_LIMIT")
                            .arg(readersSize(UtilityFunction::convertVolSpace(limit)));
}

QPushButton *makeLimitLink(SameFileDeleteViewController &controller, QWidget *parent) {
    auto *const link = new QPushButton(limitWords(), parent);
    link->setObjectName(QStringLiteral("duplicates.limit"));
    link->setFlat(true);
    link->setToolTip(localizedText("Preferences"));
    QObject::connect(link, &QPushButton::clicked, &controller,
                     &SameFileDeleteViewController::link2Preferences);
    return link;
}

DuplicatesStartPanel::DuplicatesStartPanel(SameFileDeleteViewController &controller,
                                           QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_card(new QWidget(this)),
      m_sentence(new Paragraph(localizedText("DUP_DROP"), m_card)),
      m_limit(makeLimitLink(controller, m_card)),
      m_stopped(new QLabel(localizedText("DUP_STOPPED"), m_card)),
      m_recent(new QWidget(this)),
      m_recentRows(new QVBoxLayout(m_recent)) {
    auto *const inner = new QVBoxLayout(m_card);
    inner->setContentsMargins(8 * theme::grid, 6 * theme::grid, 8 * theme::grid, 8 * theme::grid);
    inner->setSpacing(0);
    auto *const picture = new ImageView(QStringLiteral("start_duplicates.png"), m_card);
    theme::keepSize(picture, pictureSide, pictureSide);
    inner->addWidget(picture, 0, Qt::AlignHCenter);
    inner->addSpacing(4 * theme::grid);
    auto *const title = new QLabel(localizedText("Duplicates"), m_card);
    theme::keepFont(title, 20, true);
    inner->addWidget(title, 0, Qt::AlignHCenter);
    inner->addSpacing(2 * theme::grid);
    m_sentence->setObjectName(QStringLiteral("duplicates.sentence"));
    m_sentence->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_sentence->setProperty("secondary", true);
    theme::keepFont(m_sentence, 13);
    inner->addWidget(m_sentence, 0, Qt::AlignHCenter);
    inner->addSpacing(5 * theme::grid);
    auto *const choose = new QPushButton(localizedText("CHOOSE_FOLDER"), m_card);
    choose->setObjectName(QStringLiteral("folderButton"));
    choose->setProperty("primary", true);
    choose->setAutoDefault(true); // Enter presses it
    theme::keepFont(choose, 14, true);
    inner->addWidget(choose, 0, Qt::AlignHCenter);
    inner->addSpacing(2 * theme::grid);
    inner->addWidget(m_limit, 0, Qt::AlignHCenter);
    m_stopped->setObjectName(QStringLiteral("duplicates.stopped"));
    inner->addSpacing(2 * theme::grid);
    inner->addWidget(m_stopped, 0, Qt::AlignHCenter);
    theme::keep(this, [this, choose] {
        m_sentence->setParagraphWidth(theme::height(sentenceWidth));
        m_card->setMinimumWidth(theme::height(cardWidth));
        m_recent->setFixedWidth(theme::height(cardWidth));
        choose->setMinimumSize(theme::height(buttonWidth), theme::height(buttonHeight));
    });

    m_recentRows->setContentsMargins(0, 0, 0, 0);
    m_recentRows->setSpacing(0);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(6 * theme::grid, 6 * theme::grid, 6 * theme::grid, 6 * theme::grid);
    layout->setSpacing(0);
    layout->addStretch(2);
    layout->addWidget(m_card, 0, Qt::AlignHCenter);
    layout->addSpacing(4 * theme::grid);
    layout->addWidget(m_recent, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    setFocusProxy(choose);

    connect(choose, &QPushButton::clicked, &m_controller,
            &SameFileDeleteViewController::clickScanBtn);
    auto *const choice = takeFolders(m_controller, this);
    connect(choice, &FolderChoice::hovered, this, [this](bool isOver) {
        m_isHovered = isOver;
        update();
    });
    listRecent();
}

QSize DuplicatesStartPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

void DuplicatesStartPanel::showEvent(QShowEvent *) {
    listRecent();
}

void DuplicatesStartPanel::listRecent() {
    m_stopped->setVisible(m_controller.wasStopped());
    m_limit->setText(limitWords());
    qDeleteAll(m_recent->findChildren<QWidget *>());
    const auto folders = recentFolders();
    if (!folders.empty()) {
        auto *const heading = new QLabel(localizedText("DUP_RECENT"), m_recent);
        heading->setProperty("secondary", true);
        m_recentRows->addWidget(heading);
    }
    for (const auto &folder : folders) {
        auto *const row = new QPushButton(m_recent);
        row->setObjectName(QStringLiteral("duplicates.recent"));
        row->setFlat(true);
        row->setAutoDefault(true);
        const QString name = paths::displayFromHome(folder);
        row->setText(row->fontMetrics()
                         .elidedText(name, Qt::ElideMiddle, m_recent->width() - 12 * theme::grid)
                         .replace(u'&', QStringLiteral("&&")));
        row->setToolTip(QStringLiteral("<qt>%1</qt>").arg(name.toHtmlEscaped()));
        row->setAccessibleName(name);
        m_recentRows->addWidget(row, 0, Qt::AlignLeft);
        connect(row, &QPushButton::clicked, &m_controller,
                [this, folder] { m_controller.viewDragAction(folder); });
    }
}

// The frame that says where to let go.
void DuplicatesStartPanel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(m_isHovered ? theme::accent() : theme::hairline(), 2, Qt::DashLine);
    painter.setPen(pen);
    painter.setBrush(m_isHovered ? theme::hover() : theme::raised());
    painter.drawRoundedRect(QRectF(m_card->geometry()).adjusted(1, 1, -1, -1), 2 * theme::radius,
                            2 * theme::radius);
}

} // namespace brightsweep
