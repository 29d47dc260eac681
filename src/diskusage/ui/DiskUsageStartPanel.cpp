#include "diskusage/ui/DiskUsageStartPanel.h"

#include "core/Texts.h"
#include "diskusage/DiskUsageAppController.h"
#include "diskusage/ui/PlaceRow.h"
#include "foundation/Paths.h"
#include "ui/AlertSheet.h"
#include "ui/FolderChoice.h"
#include "ui/FolderDropCard.h"
#include "ui/ImageProvider.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>

namespace brightsweep {

namespace {

constexpr int placesWidth = 320;
constexpr int cardWidth = 420;
constexpr int sentenceWidth = 340;
constexpr int modeIconSide = 18;

struct Mode {
    bool chart;
    const char *name;
    const char *image;
    const char *words;
};
constexpr Mode modes[] = {
    {true, "usage.chartMode", "view_chart.png", QT_TRID_NOOP("USAGE_CHART_MODE")},
    {false, "usage.listMode", "view_list.png", QT_TRID_NOOP("USAGE_LIST_MODE")},
};

void empty(QWidget &parent) {
    for (QWidget *const child : parent.findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        delete child;
}

} // namespace

DiskUsageStartPanel::DiskUsageStartPanel(DiskUsageAppController &controller, QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_choice(new FolderChoice({[&controller] { return controller.bSearchFinished(); },
                                 [&controller] {
                                     const auto recent = controller.lastFolders();
                                     return recent.empty() ? std::filesystem::path("/")
                                                           : recent.front();
                                 },
                                 [&controller](const std::filesystem::path &folder) {
                                     controller.viewDragAction(folder);
                                 }},
                                this)),
      m_places(new QWidget(this)),
      m_placeRows(new QVBoxLayout(m_places)) {
    m_placeRows->setContentsMargins(0, 0, 0, 0);
    m_placeRows->setSpacing(2 * theme::grid);
    auto *const scroll = makeScroll(m_places, this);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    theme::keep(scroll, [scroll] { scroll->setFixedWidth(theme::height(placesWidth)); });

    auto *const right = new QVBoxLayout;
    right->setSpacing(0);
    right->addStretch(1);
    right->addWidget(makeDropCard(), 0, Qt::AlignHCenter);
    right->addSpacing(4 * theme::grid);
    right->addWidget(makeMode(), 0, Qt::AlignHCenter);
    right->addSpacing(4 * theme::grid);
    m_recent = new QWidget(this);
    m_recentRows = new QVBoxLayout(m_recent);
    m_recentRows->setContentsMargins(0, 0, 0, 0);
    m_recentRows->setSpacing(0);
    right->addWidget(m_recent, 0, Qt::AlignHCenter);
    right->addStretch(2);
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(6 * theme::grid, 6 * theme::grid, 6 * theme::grid, 6 * theme::grid);
    layout->setSpacing(6 * theme::grid);
    layout->addWidget(scroll);
    layout->addLayout(right, 1);

    using Page = DiskUsageAppController;
    connect(&controller, &Page::askForFolder, m_choice, [this] { m_choice->ask(); });
    connect(&controller, &Page::cellsChanged, this, &DiskUsageStartPanel::listPlaces);
    connect(&controller, &Page::stateChanged, this, &DiskUsageStartPanel::follow);
    connect(&controller, &Page::displayModeChanged, this, &DiskUsageStartPanel::follow);
    connect(&controller, &Page::alert, this, [this](const char *key) {
        AlertContent content;
        content.imageName = QStringLiteral("warning.png");
        content.text = localizedText(key);
        AlertSheet::show(std::move(content), window());
    });
    follow();
}

QWidget *DiskUsageStartPanel::makeDropCard() {
    auto *const card =
        new FolderDropCard(localizedText("Disk Usage"), localizedText("USAGE_DROP"),
                           {"start_disk_usage.png", cardWidth, sentenceWidth, 3}, this);
    m_word = makePlainLabel("usage.word", card);
    card->add(m_word);
    connect(m_choice, &FolderChoice::hovered, card, &FolderDropCard::setHovered);
    connect(card->chooseButton(), &QPushButton::clicked, &m_controller,
            &DiskUsageAppController::clickIconAction);
    setFocusProxy(card->chooseButton());
    return card;
}

QWidget *DiskUsageStartPanel::makeMode() {
    auto *const row = new QWidget(this);
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme::grid);
    m_mode = new QButtonGroup(this);
    for (const Mode &mode : modes) {
        auto *const button = new QToolButton(row);
        button->setObjectName(QLatin1String(mode.name));
        button->setText(localizedText(mode.words));
        button->setIcon(imageNamed(QLatin1String(mode.image)));
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setCheckable(true);
        theme::keep(button, [button] {
            button->setIconSize({theme::height(modeIconSide), theme::height(modeIconSide)});
        });
        m_mode->addButton(button, mode.chart ? 1 : 0);
        layout->addWidget(button);
    }
    // Assistive programs check one without a click.
    connect(m_mode, &QButtonGroup::idToggled, &m_controller, [this](int chart, bool on) {
        if (on)
            m_controller.changeDisplayMode(chart == 1);
    });
    return row;
}

QSize DiskUsageStartPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

void DiskUsageStartPanel::showEvent(QShowEvent *) {
    m_controller.getLocalDiskInfo();
    follow();
}

void DiskUsageStartPanel::follow() {
    m_mode->button(m_controller.displayMode() ? 1 : 0)->setChecked(true);
    const bool isFree = m_controller.bSearchFinished();
    const auto waiting = m_controller.leftBehind();
    m_word->setText(!waiting.empty()
                        ? localizedText("USAGE_WAITS").arg(paths::displayFromHome(waiting))
                    : isFree && m_controller.wasStopped() ? localizedText("USAGE_STOPPED")
                                                          : QString());
    for (QWidget *const widget : {m_places, m_recent, focusProxy()})
        widget->setEnabled(isFree);
    listRecent();
}

void DiskUsageStartPanel::listPlaces() {
    empty(*m_places);
    for (const DiskUsageLeftCell &cell : m_controller.leftCellArr()) {
        auto *const row = new PlaceRow(cell, m_places);
        m_placeRows->addWidget(row);
        connect(row, &PlaceRow::clicked, &m_controller,
                [this, path = cell.path] { m_controller.viewDragAction(path); });
    }
    m_placeRows->addStretch(1);
}

void DiskUsageStartPanel::listRecent() {
    empty(*m_recent);
    const auto folders = m_controller.lastFolders();
    if (folders.empty())
        return;
    auto *const heading = new QLabel(localizedText("USAGE_RECENT"), m_recent);
    heading->setProperty("secondary", true);
    m_recentRows->addWidget(heading, 0, Qt::AlignHCenter);
    for (const auto &folder : folders) {
        auto *const row =
            makeFolderButton("usage.recent", folder, theme::height(sentenceWidth), m_recent);
        m_recentRows->addWidget(row, 0, Qt::AlignHCenter);
        connect(row, &QPushButton::clicked, &m_controller,
                [this, folder] { m_controller.viewDragAction(folder); });
    }
}

} // namespace brightsweep
