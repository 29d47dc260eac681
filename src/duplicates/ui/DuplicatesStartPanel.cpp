#include "duplicates/ui/DuplicatesStartPanel.h"
#include "duplicates/ui/DuplicatesFolder.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "duplicates/RecentFolders.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "ui/FolderChoice.h"
#include "ui/FolderDropCard.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int cardWidth = 520;
constexpr int sentenceWidth = 420;

} // namespace

QString limitWords() {
    const std::uint64_t limit = SameFileDeleteViewController::searchLimit();
    return limit == 0 ? localizedText("DUP_NO_LIMIT")
                      : localizedText("DUP_LIMIT").arg(sizeWords(limit));
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
      m_card(new FolderDropCard(localizedText("Duplicates"), localizedText("DUP_DROP"),
                                {"start_duplicates.png", cardWidth, sentenceWidth, 4}, this)),
      m_limit(makeLimitLink(controller, m_card)),
      m_stopped(new QLabel(localizedText("DUP_STOPPED"), m_card)),
      m_recent(new QWidget(this)),
      m_recentRows(new QVBoxLayout(m_recent)) {
    m_stopped->setObjectName(QStringLiteral("duplicates.stopped"));
    m_card->add(m_limit);
    m_card->add(m_stopped);
    theme::keep(this, [this] { m_recent->setFixedWidth(theme::height(cardWidth)); });

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
    setFocusProxy(m_card->chooseButton());

    connect(m_card->chooseButton(), &QPushButton::clicked, &m_controller,
            &SameFileDeleteViewController::clickScanBtn);
    auto *const choice = takeFolders(m_controller, this);
    connect(choice, &FolderChoice::hovered, m_card, &FolderDropCard::setHovered);
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
        auto *const row = makeFolderButton("duplicates.recent", folder,
                                           m_recent->width() - 12 * theme::grid, m_recent);
        m_recentRows->addWidget(row, 0, Qt::AlignLeft);
        connect(row, &QPushButton::clicked, &m_controller,
                [this, folder] { m_controller.viewDragAction(folder); });
    }
}

} // namespace brightsweep
