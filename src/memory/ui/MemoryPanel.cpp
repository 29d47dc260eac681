#include "memory/ui/MemoryPanel.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "memory/CleanMemoryController.h"
#include "memory/ui/PieChartView.h"
#include "memory/ui/ProgramRow.h"
#include "ui/ImageProvider.h"
#include "ui/ImageView.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>

#include <utility>

namespace brightsweep {

namespace {

constexpr int swatchSide = 12;
constexpr int buttonImageSide = 56;
constexpr int programColumns = 2;

struct Figure {
    const char *name;
    const char *title;
    const char *swatch; ///< null where the chart does not show it
    QString cleanMemoryInfo::*words;
};
constexpr Figure figures[] = {
    {"freeMemTF", QT_TRID_NOOP("MEMORY_FREE"), "free.png", &cleanMemoryInfo::freeMem},
    {"inactiveMemTF", QT_TRID_NOOP("MEMORY_INACTIVE"), "inactive.png",
     &cleanMemoryInfo::inactiveMem},
    {"activeMemTF", QT_TRID_NOOP("MEMORY_ACTIVE"), "active.png", &cleanMemoryInfo::activeMem},
    {"wiredMemTF", QT_TRID_NOOP("MEMORY_WIRED"), "wired.png", &cleanMemoryInfo::wiredMem},
    {"usedMemTF", QT_TRID_NOOP("MEMORY_USED"), nullptr, &cleanMemoryInfo::usedMem},
    {"totalMemTF", QT_TRID_NOOP("MEMORY_TOTAL"), nullptr, &cleanMemoryInfo::totalMem},
};

QString inWords(std::uint64_t bytes) {
    return readersSize(UtilityFunction::covertCleanMemory(bytes));
}

void setWords(QLabel &label, const QString &words) {
    if (label.text() != words)
        label.setText(words);
}

QLabel *makeWrapped(const char *name, QWidget *parent) {
    auto *const label = makePlainLabel(name, parent);
    label->setWordWrap(true);
    return label;
}

} // namespace

MemoryPanel::MemoryPanel(CleanMemoryController &controller, QWidget *parent)
    : QWidget(parent), m_controller(controller), chartView(new PieChartView(this)) {
    auto *const content = new QWidget(this);
    auto *const top = new QHBoxLayout;
    top->setSpacing(8 * theme::grid);
    top->addStretch(1);
    top->addWidget(makeFigures(), 0, Qt::AlignVCenter);
    top->addWidget(chartView, 0, Qt::AlignVCenter);
    top->addWidget(makeDetails(), 0, Qt::AlignVCenter);
    top->addStretch(1);
    auto *const layout = new QVBoxLayout(content);
    layout->setContentsMargins(6 * theme::grid, 2 * theme::grid, 6 * theme::grid, 4 * theme::grid);
    layout->setSpacing(3 * theme::grid);
    layout->addLayout(top);
    layout->addWidget(makeRelease());
    layout->addWidget(makePrograms());
    layout->addStretch(1);

    auto *const scroll = makeScroll(content, this);
    scroll->setFocusPolicy(Qt::NoFocus);
    auto *const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);
    setFocusProxy(clearMemBtn);

    connect(&controller, &CleanMemoryController::refreshed, this, &MemoryPanel::followFigures);
    connect(&controller, &CleanMemoryController::releaseChanged, this, &MemoryPanel::followRelease);
    connect(&controller, &CleanMemoryController::programsChanged, this,
            &MemoryPanel::followPrograms);
    controller.loadView();
    followRelease();
    followPrograms();
}

QWidget *MemoryPanel::makeFigures() {
    auto *const box = new QWidget(this);
    auto *const grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(2 * theme::grid);
    grid->setVerticalSpacing(2 * theme::grid);
    for (int row = 0; row < int(std::size(figures)); ++row) {
        const Figure &figure = figures[row];
        if (figure.swatch) {
            auto *const swatch = new ImageView(QLatin1String(figure.swatch), box);
            theme::keepSize(swatch, swatchSide, swatchSide);
            grid->addWidget(swatch, row, 0);
        }
        grid->addWidget(new QLabel(localizedText(figure.title), box), row, 1);
        auto *const value = makePlainLabel(figure.name, box);
        value->setProperty("number", true);
        value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        theme::keep(value, [value] {
            value->setMinimumWidth(theme::textWidth({theme::widestSize()}, 12, true));
        });
        grid->addWidget(value, row, 2);
        m_figures[std::size_t(row)] = value;
    }
    return box;
}

MemoryPanel::Detail MemoryPanel::addDetail(QGridLayout &grid, const char *titleKey,
                                           const char *name) {
    const int row = grid.rowCount();
    auto *const title = new QLabel(localizedText(titleKey), grid.parentWidget());
    title->setProperty("secondary", true);
    auto *const value = makePlainLabel(name, grid.parentWidget());
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid.addWidget(title, row, 0);
    grid.addWidget(value, row, 1);
    return {title, value};
}

QWidget *MemoryPanel::makeDetails() {
    auto *const box = new QWidget(this);
    auto *const grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(4 * theme::grid);
    grid->setVerticalSpacing(2 * theme::grid);
    auto *const title = new QLabel(localizedText("MEMORY_AVAILABLE"), box);
    title->setProperty("secondary", true);
    grid->addWidget(title, 0, 0, 1, 2);
    m_available = makePlainLabel("memory.available", box);
    m_available->setProperty("number", true);
    theme::keepFont(m_available, 20, true);
    grid->addWidget(m_available, 1, 0, 1, 2);
    m_fileCache = addDetail(*grid, QT_TRID_NOOP("MEMORY_FILE_CACHE"), "memory.fileCache");
    m_swap = addDetail(*grid, QT_TRID_NOOP("MEMORY_SWAP"), "memory.swap");
    m_compressed = addDetail(*grid, QT_TRID_NOOP("MEMORY_COMPRESSED"), "memory.compressed");
    m_pressure = addDetail(*grid, QT_TRID_NOOP("MEMORY_PRESSURE"), "memory.pressure");
    theme::keep(m_swap.value, [this] {
        const QString widest = theme::widestSize();
        m_swap.value->setMinimumWidth(
            theme::textWidth({localizedText("MEMORY_SWAP_OF").arg(widest, widest)}, 12));
    });
    return box;
}

QWidget *MemoryPanel::makeRelease() {
    auto *const card = new QFrame(this);
    card->setProperty("card", true);
    clearMemBtn = new QToolButton(card);
    clearMemBtn->setObjectName(QStringLiteral("clearMemBtn"));
    clearMemBtn->setText(localizedText("clean memory"));
    clearMemBtn->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    clearMemBtn->setProperty("flat", true);
    clearMemBtn->setFocusPolicy(Qt::StrongFocus);
    theme::keep(clearMemBtn, [this] {
        const int side = theme::height(buttonImageSide);
        clearMemBtn->setIconSize({side, side});
    });
    theme::keepFont(clearMemBtn, 12, true);
    LastCleanText = makePlainLabel("LastCleanText", card);
    theme::keepFont(LastCleanText, 14, true);
    noteTipText = makeWrapped("noteTipText", card);
    noteCleaning = makeWrapped("noteCleaning", card);
    noteCleaning->setText(localizedText("MEMORY_RELEASE_NOTE"));
    noteCleaning->setProperty("secondary", true);
    auto *const words = new QVBoxLayout;
    words->setSpacing(theme::grid);
    words->addStretch(1);
    for (QLabel *const label : {LastCleanText, noteTipText, noteCleaning})
        words->addWidget(label);
    words->addStretch(1);
    auto *const row = new QHBoxLayout(card);
    row->setContentsMargins(3 * theme::grid, 2 * theme::grid, 4 * theme::grid, 2 * theme::grid);
    row->setSpacing(4 * theme::grid);
    row->addWidget(clearMemBtn);
    row->addLayout(words, 1);
    connect(clearMemBtn, &QToolButton::clicked, &m_controller,
            &CleanMemoryController::cleanMemoryButtonClick);
    return card;
}

QWidget *MemoryPanel::makePrograms() {
    auto *const box = new QWidget(this);
    auto *const title = new QLabel(localizedText("PROGRAMS_MOST"), box);
    theme::keepFont(title, 14, true);
    m_exactness = makeWrapped("memory.exactness", box);
    m_exactness->setProperty("secondary", true);
    m_exactness->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    theme::keepFont(m_exactness, 11);
    m_exactShares = new QPushButton(box);
    m_exactShares->setObjectName(QStringLiteral("memory.exactShares"));
    m_exactShares->setAutoDefault(true); // Enter presses it
    theme::keep(m_exactShares, [this] {
        // The button keeps its place when its word changes.
        constexpr int padding = 10 * theme::grid;
        m_exactShares->setMinimumWidth(
            padding +
            theme::textWidth({localizedText("EXACT_SHARES"), localizedText("READING_SHARES")}, 12));
    });
    auto *const head = new QHBoxLayout;
    head->setSpacing(3 * theme::grid);
    head->addWidget(title);
    head->addWidget(m_exactness, 1);
    head->addWidget(m_exactShares);
    auto *const grid = new QGridLayout;
    grid->setHorizontalSpacing(6 * theme::grid);
    grid->setVerticalSpacing(0);
    constexpr int rows = int(CleanMemoryController::programCount) / programColumns;
    for (int index = 0; index < rows * programColumns; ++index) {
        auto *const row = new ProgramRow(box);
        m_programs.push_back(row);
        grid->addWidget(row, index % rows, index / rows);
    }
    for (int column = 0; column < programColumns; ++column)
        grid->setColumnStretch(column, 1);
    auto *const layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2 * theme::grid);
    layout->addLayout(head);
    layout->addLayout(grid);
    connect(m_exactShares, &QPushButton::clicked, &m_controller,
            &CleanMemoryController::readExactShares);
    return box;
}

QSize MemoryPanel::sizeHint() const {
    return theme::leastPanel();
}

void MemoryPanel::showEvent(QShowEvent *) {
    m_controller.setShown(true);
    followFigures();
    followRelease();
    followPrograms();
}

void MemoryPanel::hideEvent(QHideEvent *) {
    m_controller.setShown(false);
}

void MemoryPanel::followFigures() {
    if (!isVisible())
        return;
    for (std::size_t row = 0; row < m_figures.size(); ++row)
        setWords(*m_figures[row], readersSize(m_controller.cleanMemInfo().*figures[row].words));
    chartView->setPieChartItems(m_controller.pieChartItems());
    followDetails();
}

void MemoryPanel::followDetails() {
    const auto &details = m_controller.details();
    const auto tell = [](const Detail &detail, const QString &words) {
        setWords(*detail.value, words);
        detail.title->setVisible(!words.isEmpty());
        detail.value->setVisible(!words.isEmpty());
    };
    setWords(*m_available, details ? inWords(details->available) : QString());
    tell(m_fileCache, details ? inWords(details->fileCache) : QString());
    tell(m_swap, !details ? QString()
                 : details->swapTotal == 0
                     ? localizedText("MEMORY_NO_SWAP")
                     : localizedText("MEMORY_SWAP_OF")
                           .arg(inWords(details->swapUsed), inWords(details->swapTotal)));
    tell(m_compressed,
         details && details->compressed > 0 ? inWords(details->compressed) : QString());
    tell(m_pressure, m_controller.pressureText());
    if (details && details->pressure)
        m_pressure.value->setToolTip(
            localizedText("PRESSURE_TIP").arg(reader().toString(*details->pressure, 'f', 1)));
}

void MemoryPanel::followRelease() {
    if (!isVisible())
        return;
    clearMemBtn->setIcon(imageNamed(m_controller.imageName()));
    // A button that is disabled hands the keyboard on.
    if (m_controller.isReleasing())
        m_releasedByKeyboard = clearMemBtn->hasFocus();
    clearMemBtn->setEnabled(!m_controller.isReleasing());
    if (!m_controller.isReleasing() && std::exchange(m_releasedByKeyboard, false))
        clearMemBtn->setFocus();
    for (const auto &[label, words] : {std::pair(LastCleanText, m_controller.lastCleanText()),
                                       std::pair(noteTipText, m_controller.noteTipText())}) {
        setWords(*label, words);
        label->setVisible(!words.isEmpty());
    }
}

void MemoryPanel::followPrograms() {
    if (!isVisible())
        return;
    const auto &programs = m_controller.programs();
    const std::uint64_t most = programs.empty() ? 0 : programs.front().bytes;
    for (std::size_t index = 0; index < m_programs.size(); ++index) {
        if (index < programs.size())
            m_programs[index]->show(programs[index], m_names.look(programs[index]), most);
        else
            m_programs[index]->hide();
    }
    setWords(*m_exactness, m_controller.exactnessText());
    m_exactShares->setEnabled(!m_controller.isReadingShares());
    m_exactShares->setText(m_controller.isReadingShares() ? localizedText("READING_SHARES")
                                                          : localizedText("EXACT_SHARES"));
}

} // namespace brightsweep
