#include "cleaning/ui/CleanProgressPanel.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/V3MainListView.h"
#include "cleaning/ui/OverviewList.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "ui/Theme.h"
#include "ui/effects/Animation.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int columnWidth = 640;
constexpr int progressBegin = 5; // percent

} // namespace

CleanProgressPanel::CleanProgressPanel(NewMainViewController &controller, QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_total(new QLabel(this)),
      m_state(new QLabel(this)),
      scanProgressAnim(new Animation(this)),
      stopScanBtn(new QPushButton(localizedText("STOP"), this)),
      stopScanText(new QLabel(localizedText("Stopping…"), this)) {
    auto *const column = new QWidget(this);
    auto *const outer = new QHBoxLayout(this);
    outer->setContentsMargins(6 * theme::grid, 6 * theme::grid, 6 * theme::grid, 6 * theme::grid);
    outer->addStretch(1);
    outer->addWidget(column, 1000);
    outer->addStretch(1);
    theme::keep(column, [column] { column->setMaximumWidth(theme::height(columnWidth)); });
    auto *const layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    m_total->setObjectName(QStringLiteral("clean.total"));
    theme::keepFont(m_total, 28, true);
    m_total->setProperty("number", true);
    m_total->setAlignment(Qt::AlignHCenter);
    theme::keepFont(m_state, 12);
    m_state->setProperty("secondary", true);
    m_state->setAlignment(Qt::AlignHCenter);
    layout->addWidget(m_total);
    layout->addWidget(m_state);
    layout->addSpacing(4 * theme::grid);
    auto *const list = new OverviewList(controller, column);
    layout->addWidget(list, 1000);
    for (unsigned category = 0; category < categoryCount; ++category) {
        connect(&controller.row(category), &V3MainListView::changed, this,
                &CleanProgressPanel::showTotal);
    }
    layout->addStretch(1);
    layout->addSpacing(3 * theme::grid);
    scanProgressAnim->showStyle();
    scanProgressAnim->prograssMax = categoryCount;
    scanProgressAnim->baseNumberSetPrograss(progressBegin);
    layout->addWidget(scanProgressAnim, 0, Qt::AlignHCenter);
    layout->addSpacing(4 * theme::grid);
    stopScanText->setAlignment(Qt::AlignHCenter);
    stopScanText->setProperty("secondary", true);
    stopScanBtn->setObjectName(QStringLiteral("stopScanBtn"));
    layout->addWidget(stopScanBtn, 0, Qt::AlignHCenter);
    layout->addWidget(stopScanText, 0, Qt::AlignHCenter);
    setFocusProxy(stopScanBtn);

    connect(stopScanBtn, &QPushButton::clicked, &m_controller,
            &NewMainViewController::clickStopScanBtn);
    connect(&m_controller, &NewMainViewController::baseNumberSetPrograss, scanProgressAnim,
            [this](int percent) {
                scanProgressAnim->addNumber = 0;
                scanProgressAnim->baseNumberSetPrograss(std::uint64_t(percent));
            });
    connect(&m_controller, &NewMainViewController::prograssShowDependChangeSize, scanProgressAnim,
            [this](int amount) {
                scanProgressAnim->prograssShowDependChangeSize(std::uint64_t(amount));
            });
    connect(&m_controller, &NewMainViewController::controlsChanged, this,
            &CleanProgressPanel::follow);
    connect(&m_controller, &NewMainViewController::stateChanged, this, &CleanProgressPanel::follow);
    follow();
}

QSize CleanProgressPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

void CleanProgressPanel::follow() {
    const CleanPageControls &controls = m_controller.controls();
    // Hidden widgets keep their room: nothing jumps.
    stopScanBtn->setVisible(!controls.stopScanBtn.hidden);
    stopScanBtn->setEnabled(controls.stopScanBtn.enabled);
    stopScanText->setVisible(controls.stopTextShown);
    scanProgressAnim->setVisible(controls.scanProgressShown);
    m_state->setText(controls.stopTextShown ? localizedText("Stopping…")
                                            : localizedText("FOUND_SO_FAR"));
    showTotal();
}

void CleanProgressPanel::showTotal() {
    std::uint64_t bytes = 0;
    for (unsigned category = 0; category < categoryCount; ++category)
        bytes += UtilityFunction::getVolSpaceFromString(m_controller.row(category).sizeLabel());
    m_total->setText(sizeWords(bytes));
}

} // namespace brightsweep
