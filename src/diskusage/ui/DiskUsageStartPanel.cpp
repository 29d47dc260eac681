#include "diskusage/ui/DiskUsageStartPanel.h"

#include "core/Texts.h"
#include "diskusage/DiskUsageAppController.h"
#include "diskusage/ui/PlaceRow.h"
#include "foundation/Paths.h"
#include "ui/AlertSheet.h"
#include "ui/FolderChoice.h"
#include "ui/ImageProvider.h"
#include "ui/ImageView.h"
#include "ui/Paragraph.h"
#include "ui/Theme.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>

namespace brightsweep {

namespace {

constexpr int pictureSide = 96;
constexpr int placesWidth = 320;
constexpr int cardWidth = 420;
constexpr int sentenceWidth = 340;
constexpr int buttonWidth = 168;
constexpr int buttonHeight = 40;
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
    auto *const scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->viewport()->setAutoFillBackground(false);
    scroll->setWidget(m_places);
    m_places->setAutoFillBackground(false);
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
    connect(m_choice, &FolderChoice::hovered, this, [this](bool isOver) {
        m_isHovered = isOver;
        update();
    });
    follow();
}

QWidget *DiskUsageStartPanel::makeDropCard() {
    m_card = new QWidget(this);
    auto *const inner = new QVBoxLayout(m_card);
    inner->setContentsMargins(6 * theme::grid, 5 * theme::grid, 6 * theme::grid, 6 * theme::grid);
    inner->setSpacing(0);
    auto *const picture = new ImageView(QStringLiteral("start_disk_usage.png"), m_card);
    theme::keepSize(picture, pictureSide, pictureSide);
    inner->addWidget(picture, 0, Qt::AlignHCenter);
    inner->addSpacing(3 * theme::grid);
    auto *const title = new QLabel(localizedText("Disk Usage"), m_card);
    theme::keepFont(title, 20, true);
    inner->addWidget(title, 0, Qt::AlignHCenter);
    inner->addSpacing(2 * theme::grid);
    auto *const sentence = new Paragraph(localizedText("USAGE_DROP"), m_card);
    sentence->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    sentence->setProperty("secondary", true);
    theme::keepFont(sentence, 13);
    inner->addWidget(sentence, 0, Qt::AlignHCenter);
    inner->addSpacing(4 * theme::grid);
    auto *const choose = new QPushButton(localizedText("CHOOSE_FOLDER"), m_card);
    choose->setObjectName(QStringLiteral("folderButton"));
    choose->setProperty("primary", true);
    choose->setAutoDefault(true); // Enter presses it
    theme::keepFont(choose, 14, true);
    inner->addWidget(choose, 0, Qt::AlignHCenter);
    m_word = new QLabel(m_card);
    m_word->setObjectName(QStringLiteral("usage.word"));
    m_word->setTextFormat(Qt::PlainText);
    inner->addSpacing(2 * theme::grid);
    inner->addWidget(m_word, 0, Qt::AlignHCenter);
    theme::keep(m_card, [this, sentence, choose] {
        sentence->setParagraphWidth(theme::height(sentenceWidth));
        m_card->setMinimumWidth(theme::height(cardWidth));
        choose->setMinimumSize(theme::height(buttonWidth), theme::height(buttonHeight));
    });
    connect(choose, &QPushButton::clicked, &m_controller, &DiskUsageAppController::clickIconAction);
    setFocusProxy(choose);
    return m_card;
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
    const bool waits = !isFree && m_controller.state() == DiskUsageAppController::State::Start;
    m_word->setText(
        waits ? localizedText("USAGE_WAITS").arg(paths::displayFromHome(m_controller.scanPathStr()))
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
        auto *const row = new QPushButton(m_recent);
        row->setObjectName(QStringLiteral("usage.recent"));
        row->setFlat(true);
        row->setAutoDefault(true);
        const QString name = paths::displayFromHome(folder);
        row->setText(row->fontMetrics()
                         .elidedText(name, Qt::ElideMiddle, theme::height(sentenceWidth))
                         .replace(u'&', QStringLiteral("&&")));
        row->setToolTip(QStringLiteral("<qt>%1</qt>").arg(name.toHtmlEscaped()));
        row->setAccessibleName(name);
        m_recentRows->addWidget(row, 0, Qt::AlignHCenter);
        connect(row, &QPushButton::clicked, &m_controller,
                [this, folder] { m_controller.viewDragAction(folder); });
    }
}

// The frame that says where to let go.
void DiskUsageStartPanel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_isHovered ? theme::accent() : theme::hairline(), 2, Qt::DashLine));
    painter.setBrush(m_isHovered ? theme::hover() : theme::raised());
    painter.drawRoundedRect(QRectF(m_card->geometry()).adjusted(1, 1, -1, -1), 2 * theme::radius,
                            2 * theme::radius);
}

} // namespace brightsweep
