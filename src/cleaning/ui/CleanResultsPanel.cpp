#include "cleaning/ui/CleanResultsPanel.h"

#include "cleaning/CategoryListModel.h"
#include "cleaning/CleanCategories.h"
#include "cleaning/CustomTableView.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/ui/ComputerSheet.h"
#include "cleaning/ui/HiddenTicksNotice.h"
#include "cleaning/ui/LeftListView.h"
#include "cleaning/ui/OverviewList.h"
#include "cleaning/ui/ResultView.h"
#include "cleaning/ui/StyledLabel.h"
#include "core/Texts.h"
#include "ui/FilterField.h"
#include "ui/ImageProvider.h"
#include "ui/ImageView.h"
#include "ui/NoticeRow.h"
#include "ui/PadlockButton.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int headingSide = 40;
constexpr int outcomeSide = 96;
constexpr int trashSide = 24;
constexpr int noteWidth = 420;

QLabel *secondaryLabel(QWidget *parent) {
    auto *const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setProperty("secondary", true);
    return label;
}

} // namespace

CleanResultsPanel::CleanResultsPanel(NewMainViewController &controller, QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_left(new LeftListView(controller, this)),
      m_hiddenTicks(new HiddenTicksNotice(controller.outline(), this)),
      m_box(new QStackedWidget(this)) {
    m_outline = new OutlineView(m_controller.outline(), m_box);
    m_box->addWidget(m_outline);
    m_overview = makeOverview();
    m_box->addWidget(m_overview);
    m_outcome = makeOutcome();
    m_box->addWidget(m_outcome);
    m_uninstallNote = new QWidget(m_box);
    m_box->addWidget(m_uninstallNote);
    m_volumeNote = makeNote(localizedText("SHOW_VOLUMES"), &CleanResultsPanel::volumesRequested);
    m_box->addWidget(m_volumeNote);

    auto *const right = new QVBoxLayout;
    right->setContentsMargins(0, 0, 0, 0);
    right->setSpacing(0);
    right->addWidget(makeHeading());
    right->addWidget(makeNotice());
    right->addWidget(m_hiddenTicks);
    right->addWidget(m_box, 1);
    auto *const upper = new QHBoxLayout;
    upper->setContentsMargins(2 * theme::grid, 2 * theme::grid, 2 * theme::grid, 0);
    upper->setSpacing(2 * theme::grid);
    upper->addWidget(makeLeft());
    upper->addLayout(right, 1);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(upper, 1);
    layout->addWidget(makeHairline(this));
    layout->addWidget(makeBottom());
    setFocusProxy(m_outline);
    bind();
    followHeading();
    followParts();
    followControls();
}

QSize CleanResultsPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

// -- Making

QWidget *CleanResultsPanel::makeHeading() {
    auto *const heading = new QWidget(this);
    auto *const row = makeHeadingRow(heading);
    m_headingImage = new ImageView(heading);
    theme::keepSize(m_headingImage, headingSide, headingSide);
    row->addWidget(m_headingImage, 0, Qt::AlignTop);
    auto *const words = new QVBoxLayout;
    words->setSpacing(theme::grid);
    auto *const upper = new QHBoxLayout;
    upper->setSpacing(3 * theme::grid);
    m_title = new QLabel(heading);
    m_title->setTextFormat(Qt::PlainText);
    theme::keepFont(m_title, 15, true);
    m_title->setObjectName(QStringLiteral("clean.title"));
    m_description = new StyledLabel(heading);
    m_description->setWordWrap(true);
    m_description->setObjectName(QStringLiteral("clean.description"));
    upper->addWidget(m_title, 1);
    words->addLayout(upper);
    words->addWidget(m_description);
    row->addLayout(words, 1);
    m_filter = new FilterField(localizedText("FILTER"), this, heading);
    m_filter->setObjectName(QStringLiteral("clean.filter"));
    upper->addWidget(m_filter, 0, Qt::AlignVCenter);
    return heading;
}

QWidget *CleanResultsPanel::makeNotice() {
    m_notice = new NoticeRow("clean.resultsNotice", this);
    m_noticeAct = m_notice->addButton("clean.restart");
    connect(m_noticeAct, &QPushButton::clicked, this, [this] {
        if (m_controller.needsRestart())
            m_controller.restart();
        else
            m_controller.clickScanBtn();
    });
    return m_notice;
}

QWidget *CleanResultsPanel::makeLeft() {
    auto *const left = new QWidget(this);
    auto *const column = new QVBoxLayout(left);
    column->setContentsMargins(0, 0, 0, 2 * theme::grid);
    column->setSpacing(theme::grid);
    column->addWidget(m_left, 1);
    auto *const facts = new QPushButton(localizedText("THIS_COMPUTER"), left);
    facts->setObjectName(QStringLiteral("clean.computer"));
    facts->setFlat(true);
    connect(facts, &QPushButton::clicked, this, [this] { (new ComputerSheet(window()))->open(); });
    column->addWidget(facts, 0, Qt::AlignLeft);
    setTabOrder(m_left, facts);
    return left;
}

QWidget *CleanResultsPanel::makeOverview() {
    return new OverviewList(m_controller, m_box);
}

QWidget *CleanResultsPanel::makeOutcome() {
    auto *const page = new QWidget(m_box);
    auto *const layout = new QVBoxLayout(page);
    layout->setSpacing(0);
    layout->addStretch(2);
    auto *const picture = new ImageView(QStringLiteral("start_done.png"), page);
    theme::keepSize(picture, outcomeSide, outcomeSide);
    layout->addWidget(picture, 0, Qt::AlignHCenter);
    layout->addSpacing(4 * theme::grid);
    m_outcomeTitle = new QLabel(page);
    theme::keepFont(m_outcomeTitle, 18, true);
    m_outcomeTitle->setObjectName(QStringLiteral("clean.outcome"));
    layout->addWidget(m_outcomeTitle, 0, Qt::AlignHCenter);
    layout->addSpacing(theme::grid);
    m_outcomeText = new StyledLabel(page);
    m_outcomeText->setAlignment(Qt::AlignHCenter);
    theme::keep(m_outcomeText,
                [this] { m_outcomeText->setParagraphWidth(theme::height(noteWidth)); });
    layout->addWidget(m_outcomeText, 0, Qt::AlignHCenter);
    layout->addSpacing(4 * theme::grid);
    m_outcomeAct = new QPushButton(page);
    m_outcomeAct->setAutoDefault(true); // Enter presses it
    m_outcomeAct->setObjectName(QStringLiteral("clean.outcomeAct"));
    layout->addWidget(m_outcomeAct, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    connect(m_outcomeAct, &QPushButton::clicked, this, [this] {
        if (m_controller.needsRestart())
            m_controller.restart();
        else if (m_controller.parts().box >= 0)
            m_controller.customTableView().shouldSelectRow(0);
        else
            m_controller.clickBackBtn();
    });
    return page;
}

QWidget *CleanResultsPanel::makeNote(const QString &act, void (CleanResultsPanel::*done)()) {
    auto *const page = new QWidget(m_box);
    auto *const layout = new QVBoxLayout(page);
    layout->addStretch(1);
    auto *const button = new QPushButton(act, page);
    connect(button, &QPushButton::clicked, this, done);
    layout->addWidget(button, 0, Qt::AlignHCenter);
    layout->addStretch(2);
    return page;
}

QWidget *CleanResultsPanel::makeBottom() {
    auto *const bottom = new QWidget(this);
    auto *const row = makeBottomRow(bottom);
    m_back = makeBackButton(bottom);
    row->addWidget(m_back);
    lockButton = new PadlockButton(m_controller.padlock(), bottom);
    row->addWidget(lockButton);

    auto *const words = new QVBoxLayout;
    words->setSpacing(0);
    m_sum = new QLabel(bottom);
    m_sum->setObjectName(QStringLiteral("clean.sum"));
    theme::keepFont(m_sum, 22, true);
    m_sum->setProperty("number", true);
    stateTextField = new StyledLabel(bottom);
    stateTextField->setObjectName(QStringLiteral("stateTextField"));
    m_freeSpace = secondaryLabel(bottom);
    theme::keepFont(m_freeSpace, 11);
    m_freeSpace->setObjectName(QStringLiteral("clean.freeSpace"));
    for (QLabel *const label : {m_sum, static_cast<QLabel *>(stateTextField), m_freeSpace}) {
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        label->setWordWrap(true);
        words->addWidget(label);
    }
    row->addLayout(words, 1);
    row->addSpacing(2 * theme::grid);

    m_trashImage = new ImageView(QStringLiteral("user_trash_m.png"), bottom);
    theme::keepSize(m_trashImage, trashSide, trashSide);
    row->addWidget(m_trashImage);
    trashFileNumTF = new QLabel(bottom);
    theme::keepFont(trashFileNumTF, 13, true);
    trashFileNumTF->setObjectName(QStringLiteral("trashFileNumTF"));
    row->addWidget(trashFileNumTF);
    cleanButton = makeRemovingButton("cleanButton", localizedText("CLEAN"), bottom);
    oneListCleanButton = makeRemovingButton("oneListCleanButton", localizedText("CLEAN"), bottom);
    row->addWidget(cleanButton);
    row->addWidget(oneListCleanButton);
    return bottom;
}

void CleanResultsPanel::bind() {
    const auto *const page = &m_controller;
    connect(page, &NewMainViewController::headingChanged, this, &CleanResultsPanel::followHeading);
    connect(page, &NewMainViewController::partsChanged, this, &CleanResultsPanel::followParts);
    connect(page, &NewMainViewController::controlsChanged, this,
            &CleanResultsPanel::followControls);
    connect(page, &NewMainViewController::stateChanged, this, &CleanResultsPanel::followState);
    connect(&m_controller.outline(), &CleanOutlineController::reloaded, this, [this] {
        followParts();
        m_hiddenTicks->follow(m_box->currentWidget() == m_outline);
        expandFirst();
    });
    connect(page, &NewMainViewController::askDownloads, this, &CleanResultsPanel::askDownloads);
    connect(page, &NewMainViewController::askDownloadsAlone, this,
            &CleanResultsPanel::askDownloadsAlone);
    connect(page, &NewMainViewController::showAlertForPrivilegesToClean, this,
            &CleanResultsPanel::showAlertForPrivilegesToClean);
    connect(page, &NewMainViewController::removalRefused, this, &CleanResultsPanel::removalRefused);
    connect(page, &NewMainViewController::lockAnimation, lockButton, &PadlockButton::blink);
    connect(page, &NewMainViewController::flyToTrash, this, &CleanResultsPanel::flyToTrash);

    connect(m_back, &QPushButton::clicked, page, [this] { m_controller.clickBackBtn(); });
    connect(cleanButton, &QPushButton::clicked, page,
            [this] { m_controller.cleanButtonActionInfo(); });
    connect(oneListCleanButton, &QPushButton::clicked, page,
            [this] { m_controller.cleanButtonAction(); });
    connect(lockButton, &PadlockButton::unlockWanted, page,
            [this](bool open) { m_controller.unlockRigths(open); });
    connect(&m_controller.padlock(), &PadlockController::askingChanged, lockButton,
            [this](bool asking) { lockButton->setEnabled(!asking); });
    lockButton->setEnabled(!m_controller.padlock().isAsking());

    connect(m_filter, &FilterField::settled, this, [this](const QString &text) {
        m_controller.outline().model().setFilter(text);
        m_outline->followFilter();
        m_hiddenTicks->follow(m_box->currentWidget() == m_outline);
    });
    connect(m_hiddenTicks, &HiddenTicksNotice::showAll, this, [this] {
        m_filter->clear();
        m_box->currentWidget()->setFocus();
    });
    connect(m_filter, &FilterField::left, this,
            [this] { m_box->currentWidget()->setFocus(Qt::ShortcutFocusReason); });
}

} // namespace brightsweep
