#include "cleaning/ui/CleanResultsPanel.h"

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
#include "ui/ImageProvider.h"
#include "ui/ImageView.h"
#include "ui/Theme.h"
#include "ui/effects/Animation.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int headingSide = 40;
constexpr int outcomeSide = 96;
constexpr int filterWidth = 200;
constexpr int leastFilterWidth = 140;
constexpr int trashSide = 24;
constexpr int lockSide = 20;
constexpr int buttonWidth = 128;
constexpr int buttonHeight = 36;
constexpr int noteWidth = 420;
constexpr std::chrono::milliseconds filterSettles{120};

// Enter never starts a removal.
class RemovingButton : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    void keyPressEvent(QKeyEvent *event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            event->ignore();
        else
            QPushButton::keyPressEvent(event);
    }
};

QLabel *secondaryLabel(QWidget *parent) {
    auto *const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setProperty("secondary", true);
    return label;
}

QFrame *hairline(QWidget *parent) {
    auto *const line = new QFrame(parent);
    line->setFixedHeight(1);
    line->setProperty("hairline", true);
    return line;
}

QPushButton *removingButton(const QString &name, const QString &text, QWidget *parent) {
    auto *const button = new RemovingButton(text, parent);
    button->setObjectName(name);
    button->setProperty("primary", true);
    theme::keep(button, [button] {
        button->setMinimumSize(theme::height(buttonWidth), theme::height(buttonHeight));
    });
    return button;
}

} // namespace

CleanResultsPanel::CleanResultsPanel(NewMainViewController &controller, QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_left(new LeftListView(controller, this)),
      m_hiddenTicks(new HiddenTicksNotice(controller.outline(), this)),
      m_filterSettled(new QTimer(this)),
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
    layout->addWidget(hairline(this));
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
    auto *const row = new QHBoxLayout(heading);
    row->setContentsMargins(2 * theme::grid, theme::grid, 2 * theme::grid, 2 * theme::grid);
    row->setSpacing(3 * theme::grid);
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
    m_filter = new QLineEdit(heading);
    m_filter->setObjectName(QStringLiteral("clean.filter"));
    m_filter->setPlaceholderText(localizedText("FILTER"));
    m_filter->setAccessibleName(localizedText("FILTER"));
    m_filter->setClearButtonEnabled(true);
    theme::keep(m_filter, [this] {
        m_filter->setMinimumWidth(theme::height(leastFilterWidth));
        m_filter->setMaximumWidth(theme::height(filterWidth));
    });
    upper->addWidget(m_filter, 0, Qt::AlignVCenter);
    return heading;
}

QWidget *CleanResultsPanel::makeNotice() {
    auto *const notice = new QFrame(this);
    notice->setProperty("card", true);
    auto *const row = new QHBoxLayout(notice);
    row->setContentsMargins(3 * theme::grid, theme::grid, 2 * theme::grid, theme::grid);
    m_noticeWords = new QLabel(notice);
    m_noticeWords->setObjectName(QStringLiteral("clean.notice"));
    m_noticeWords->setWordWrap(true);
    row->addWidget(m_noticeWords, 1);
    m_noticeAct = new QPushButton(notice);
    m_noticeAct->setObjectName(QStringLiteral("clean.restart"));
    connect(m_noticeAct, &QPushButton::clicked, this, [this] {
        if (m_controller.needsRestart())
            m_controller.restart();
        else
            m_controller.clickScanBtn();
    });
    row->addWidget(m_noticeAct);
    m_notice = notice;
    return notice;
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
    m_outcomeAct->setObjectName(QStringLiteral("clean.outcomeAct"));
    layout->addWidget(m_outcomeAct, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    connect(m_outcomeAct, &QPushButton::clicked, this, [this] {
        if (m_controller.needsRestart())
            m_controller.restart();
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
    auto *const row = new QHBoxLayout(bottom);
    row->setContentsMargins(4 * theme::grid, 3 * theme::grid, 4 * theme::grid, 3 * theme::grid);
    row->setSpacing(3 * theme::grid);
    m_back = new QPushButton(localizedText("BACK"), bottom);
    m_back->setObjectName(QStringLiteral("backButton"));
    m_back->setIcon(imageNamed(isRightToLeft() ? QStringLiteral("arrow_right.png")
                                               : QStringLiteral("arrow_left.png")));
    row->addWidget(m_back);
    lockButton = new QToolButton(bottom);
    lockButton->setObjectName(QStringLiteral("lockButton"));
    lockButton->setCheckable(true);
    theme::keep(lockButton, [this] {
        lockButton->setIconSize({theme::height(lockSide), theme::height(lockSide)});
    });
    lockButton->setToolTip(localizedText(cleanPageTexts::lockToolTip));
    lockButton->setAccessibleName(localizedText("PADLOCK"));
    row->addWidget(lockButton);
    m_padlockBlink = new Animation(bottom);
    m_padlockBlink->hide();

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
    cleanButton = removingButton(QStringLiteral("cleanButton"), localizedText("CLEAN"), bottom);
    oneListCleanButton =
        removingButton(QStringLiteral("oneListCleanButton"), localizedText("CLEAN"), bottom);
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
    connect(page, &NewMainViewController::lockAnimation, this, [this](bool running) {
        if (running)
            m_padlockBlink->startUnlockAnimation(lockButton);
        else
            m_padlockBlink->stopUnlockAnimation(lockButton);
    });
    connect(page, &NewMainViewController::flyToTrash, this, &CleanResultsPanel::flyToTrash);

    connect(m_back, &QPushButton::clicked, page, [this] { m_controller.clickBackBtn(); });
    connect(cleanButton, &QPushButton::clicked, page,
            [this] { m_controller.cleanButtonActionInfo(); });
    connect(oneListCleanButton, &QPushButton::clicked, page,
            [this] { m_controller.cleanButtonAction(); });
    const auto showLock = [this](bool open) {
        lockButton->setChecked(open);
        lockButton->setIcon(imageNamed(QLatin1String(m_controller.padlock().imageName())));
    };
    // Assistive programs toggle it without a click.
    connect(lockButton, &QToolButton::toggled, this, [this](bool open) {
        if (open != m_controller.padlock().isOpen())
            m_controller.unlockRigths(open);
    });
    connect(&m_controller.padlock(), &PadlockController::lockStateChanged, this, showLock);
    connect(&m_controller.padlock(), &PadlockController::askingChanged, lockButton,
            [this](bool asking) { lockButton->setEnabled(!asking); });
    lockButton->setEnabled(!m_controller.padlock().isAsking());
    showLock(m_controller.padlock().isOpen());

    m_filterSettled->setSingleShot(true);
    m_filterSettled->setInterval(filterSettles);
    connect(m_filterSettled, &QTimer::timeout, this, [this] {
        m_controller.outline().model().setFilter(m_filter->text());
        m_hiddenTicks->follow(m_box->currentWidget() == m_outline);
    });
    connect(m_hiddenTicks, &HiddenTicksNotice::showAll, this, [this] {
        m_filter->clear();
        m_box->currentWidget()->setFocus();
    });
    connect(m_filter, &QLineEdit::textChanged, m_filterSettled, qOverload<>(&QTimer::start));
}

// -- Following the controller

void CleanResultsPanel::showEvent(QShowEvent *) {
    followHeading();
    expandFirst();
}

// Once after each scan; what the user opens and closes then is the user's.
void CleanResultsPanel::expandFirst() {
    if (!m_isNew || m_controller.state() != NewMainViewController::State::Results ||
        m_controller.outline().tree().groups().empty())
        return;
    m_isNew = false;
    m_outline->expandFirst();
}

// The keyboard stays in the list: a button that is disabled would hand it on to the toolbar, and a
// disabled list cannot take it.
void CleanResultsPanel::followState(NewMainViewController::State state) {
    using State = NewMainViewController::State;
    m_isNew = m_isNew || state == State::Scanning;
    if ((state == State::Warning || state == State::Cleaning) &&
        isAncestorOf(window()->focusWidget()))
        m_box->currentWidget()->setFocus();
    if (m_controller.controls().outlineEnabled)
        m_outline->setEnabled(true);
    followParts();
    followControls();
}

void CleanResultsPanel::followHeading() {
    const CleanHeading heading = m_controller.heading();
    m_headingImage->setImageName(heading.image);
    m_title->setText(heading.title);
    m_description->setStyledText(heading.description);
}

void CleanResultsPanel::followParts() {
    const CleanPageParts parts = m_controller.parts();
    QWidget *page = m_outline;
    if (parts.box >= 0 && parts.box < int(m_lists.size())) {
        CategoryView *&list = m_lists[std::size_t(parts.box)];
        if (!list) {
            list = new CategoryView(m_controller.list(unsigned(parts.box)), m_box);
            m_box->addWidget(list);
        }
        page = list;
    } else if (parts.uninstallTextField) {
        page = m_uninstallNote;
    } else if (parts.diskSizeView) {
        page = m_volumeNote;
    } else if (m_controller.state() == NewMainViewController::State::Cleaning) {
        page = m_overview;
    } else if (m_controller.outline().tree().groups().empty()) {
        page = m_controller.outcome() == CleanOutcome::Cleaned ? m_overview : m_outcome;
        followOutcome();
    }
    m_filter->setVisible(page == m_outline);
    followNotice(page);
    if (m_box->currentWidget() == page)
        return;
    const bool hadFocus = m_box->isAncestorOf(focusWidget());
    m_box->setCurrentWidget(page);
    if (hadFocus)
        page->setFocus();
}

void CleanResultsPanel::followNotice(const QWidget *page) {
    const bool restarts = m_controller.needsRestart();
    m_noticeWords->setText(restarts ? localizedText(cleanPageTexts::restartText)
                                    : localizedText("CLEAN_OUTDATED"));
    m_noticeAct->setText(restarts ? localizedText("RESTART") : localizedText("Scan"));
    m_noticeAct->setEnabled(m_controller.state() == NewMainViewController::State::Results);
    m_notice->setVisible(restarts ? page != m_outcome : m_controller.isOutdated());
}

void CleanResultsPanel::followOutcome() {
    const bool isStopped =
        m_controller.outcome() == CleanOutcome::Stopped || m_controller.needsRestart();
    m_outcomeTitle->setText(isStopped ? localizedText("SCAN_STOPPED")
                                      : localizedText("NOTHING_TO_CLEAN"));
    CleanStyledText words;
    words.text = isStopped ? localizedText(cleanPageTexts::restartText)
                           : localizedText("NOTHING_TO_CLEAN_WHY");
    m_outcomeText->setStyledText(words);
    m_outcomeAct->setText(isStopped ? localizedText("RESTART") : localizedText("BACK"));
}

void CleanResultsPanel::followControls() {
    const CleanPageControls &controls = m_controller.controls();
    followNotice(m_box->currentWidget());
    const auto show = [](QPushButton *button, const CleanPageControls::Button &state) {
        button->setEnabled(state.enabled);
        button->setVisible(!state.hidden);
    };
    show(cleanButton, controls.cleanButton);
    show(oneListCleanButton, controls.oneListCleanButton);
    show(m_back, controls.backButton);
    m_outline->setEnabled(controls.outlineEnabled);
    const bool hasLine = !controls.stateTextHidden;
    stateTextField->setStyledText(controls.stateTextField);
    stateTextField->setVisible(hasLine);
    // Every line ends with the size that it is about.
    const CleanStyledText &line = controls.stateTextField;
    m_sum->setText(line.accented.empty()
                       ? QString()
                       : line.text.mid(line.accented.back().start, line.accented.back().length));
    m_sum->setVisible(hasLine);
    m_freeSpace->setText(controls.freeSpaceLine);
    m_freeSpace->setVisible(!controls.freeSpaceLine.isEmpty());
    trashFileNumTF->setText(controls.trashFileNumTF);
    m_hiddenTicks->follow(m_box->currentWidget() == m_outline);
}

} // namespace brightsweep
