#include "loginitems/ui/SystemItemsBox.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "loginitems/LoginItemController.h"
#include "loginitems/LoginItemWords.h"
#include "ui/ElidedLabel.h"
#include "ui/ImageProvider.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QToolButton>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int arrowSide = 14;
constexpr int rowHeight = 36;
constexpr int mostRows = 5; // at once
constexpr int leastRows = 2;

QString nameOf(const LoginItemEntry &entry) {
    return paths::display(entry.name.empty() ? entry.file : entry.name);
}

} // namespace

SystemItemsBox::SystemItemsBox(LoginItemController &controller, QWidget *parent)
    : QWidget(parent), m_controller(controller), m_fold(new QToolButton(this)) {
    m_fold->setObjectName(QStringLiteral("login.systemFold"));
    m_fold->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_fold->setProperty("flat", true);
    m_fold->setFocusPolicy(Qt::StrongFocus);
    theme::keepFont(m_fold, 12, true);
    auto *const content = new QWidget;
    m_rows = new QVBoxLayout(content);
    m_rows->setContentsMargins(8 * theme::grid, 0, 4 * theme::grid, 0);
    m_rows->setSpacing(0);
    auto *const note = makePlainLabel("login.systemNote", content);
    note->setText(localizedText("LOGIN_SYSTEM_NOTE"));
    note->setProperty("secondary", true);
    note->setWordWrap(true);
    theme::keepFont(note, 11);
    m_rows->addWidget(note);
    m_rows->addStretch(1);
    m_scroll = makeScroll(content, this);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme::grid);
    layout->addWidget(m_fold, 0, Qt::AlignLeft);
    layout->addWidget(m_scroll);
    connect(m_fold, &QToolButton::clicked, this, [this] {
        m_isOpen = !m_isOpen;
        followFold();
    });
    connect(&controller, &LoginItemController::systemItemsChanged, this,
            &SystemItemsBox::followItems);
    theme::keep(this, [this] {
        m_fold->setIconSize({theme::height(arrowSide), theme::height(arrowSide)});
        followFold();
    });
    followItems();
}

void SystemItemsBox::followFold() {
    const bool isLeft = isRightToLeft();
    m_fold->setIcon(imageNamed(m_isOpen ? QStringLiteral("arrow_down.png")
                               : isLeft ? QStringLiteral("arrow_left.png")
                                        : QStringLiteral("arrow_right.png")));
    m_fold->setAccessibleDescription(m_isOpen ? localizedText("FOLD_OPEN")
                                              : localizedText("FOLD_CLOSED"));
    m_scroll->setVisible(m_isOpen);
    const int rows = std::min(int(m_files.size()), mostRows) + 1;
    // In a low window it leaves the table some rows.
    m_scroll->setMinimumHeight(std::min(rows, leastRows) * theme::height(rowHeight));
    m_scroll->setMaximumHeight(rows * theme::height(rowHeight));
}

void SystemItemsBox::addRow(const LoginItemEntry &entry) {
    auto *const row = new QWidget(m_scroll->widget());
    auto *const box = new QCheckBox(row);
    QString name = nameOf(entry);
    box->setText(name.replace(QLatin1Char('&'), QLatin1String("&&")));
    box->setObjectName(QStringLiteral("login.system.") + paths::display(entry.file));
    box->setAccessibleDescription(localizedText("LOGIN_STARTS"));
    auto *const command = new ElidedLabel(Qt::ElideMiddle, row);
    command->setText(startedBy(entry));
    command->setProperty("secondary", true);
    row->setToolTip(plainToolTip({startedBy(entry), paths::display(entry.file)}));
    theme::keep(row, [row, command] {
        row->setFixedHeight(theme::height(rowHeight));
        command->setFont(theme::font(11));
    });
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3 * theme::grid);
    layout->addWidget(box);
    layout->addWidget(command, 1);
    m_rows->insertWidget(m_rows->count() - 1, row);
    // A screen reader toggles a box without a click.
    connect(box, &QCheckBox::toggled, this, [this, file = entry.file](bool isOn) {
        m_controller.setSystemItemStarted(file, isOn);
    });
}

// A switch that stays keeps its widget, and with it the keyboard.
void SystemItemsBox::followItems() {
    const auto &items = m_controller.systemItems();
    std::vector<std::string> files;
    for (const LoginItemEntry &entry : items)
        files.push_back(entry.file);
    if (files != m_files) {
        while (m_rows->count() > 2)
            delete m_rows->takeAt(1)->widget();
        for (const LoginItemEntry &entry : items)
            addRow(entry);
        m_files = std::move(files);
    }
    for (std::size_t index = 0; index < items.size(); ++index) {
        auto *const box = m_rows->itemAt(int(index) + 1)->widget()->findChild<QCheckBox *>();
        const QSignalBlocker quiet(box);
        box->setChecked(!items[index].hidden);
    }
    m_fold->setText(localizedText("LOGIN_SYSTEM").arg(readersNumber(items.size())));
    setVisible(!items.empty());
    followFold();
}

} // namespace brightsweep
