#include "uninstall/ui/UninstallPanel.h"

#include "cleaning/ui/StyledLabel.h"
#include "cleaning/ui/TickFlight.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "ui/AlertSheet.h"
#include "ui/FilterField.h"
#include "ui/ImageView.h"
#include "ui/NoticeRow.h"
#include "ui/PadlockButton.h"
#include "ui/PageParts.h"
#include "ui/Paragraph.h"
#include "ui/Theme.h"
#include "uninstall/UninstallTexts.h"
#include "uninstall/ui/LeftBehindTable.h"
#include "uninstall/ui/UninstallLeftCell.h"
#include "uninstall/ui/UninstallSheet.h"
#include "uninstall/ui/UninstallTable.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <array>
#include <utility>

namespace brightsweep {

namespace {

using Page = UninstallAppsController;
using State = Page::State;

constexpr int buttonImageSide = 28;
constexpr int barWidth = 280;
constexpr int sentenceWidth = 420;

// The first number is larger than the second.
CleanStyledText lineOf(const Page::Message &message) {
    CleanStyledText line;
    if (!message.isCount) {
        line.text = message.text;
        return line;
    }
    const std::array numbers = {readersNumber(message.selected), readersNumber(message.total)};
    constexpr std::array sizes = {15, 0};
    for (qsizetype at = 0; at < message.text.size(); ++at) {
        const auto number = std::size_t(message.text.mid(at + 1, 1).toUInt()) - 1;
        if (message.text[at] != u'%' || number >= numbers.size()) {
            line.text += message.text[at];
            continue;
        }
        line.accented.push_back(
            {int(line.text.size()), int(numbers[number].size()), sizes[number], number == 0});
        line.text += numbers[number];
        ++at;
    }
    return line;
}

QLabel *centered(const char *name, double size, bool isBold, QWidget *parent) {
    auto *const label = new Paragraph(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    theme::keepFont(label, size, isBold);
    theme::keep(label, [label] { label->setParagraphWidth(theme::height(sentenceWidth)); });
    return label;
}

} // namespace

UninstallPanel::UninstallPanel(Page &controller, QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_model(controller),
      m_lists(new UninstallLeftList(controller, this)),
      m_box(new QStackedWidget(this)),
      m_table(new UninstallTable(controller, m_model, m_box)),
      m_leftBehindModel(controller.leftBehind()),
      m_leftBehind(new LeftBehindTable(controller.leftBehind(), m_leftBehindModel, m_box)),
      m_waiting(makeWaiting()),
      m_empty(makeEmpty()) {
    for (QWidget *const page : {static_cast<QWidget *>(m_table),
                                static_cast<QWidget *>(m_leftBehind), m_waiting, m_empty})
        m_box->addWidget(page);
    m_notice = new NoticeRow("uninstall.notice", this);
    m_showAll = m_notice->addButton("uninstall.showAll", localizedText("SHOW_ALL"));
    connect(m_showAll, &QPushButton::clicked, this, [this] {
        m_filter->clear();
        UninstallLeftCell::reportClick(Page::AllApplications);
        m_table->setFocus();
    });
    auto *const right = new QVBoxLayout;
    right->setSpacing(0);
    right->addWidget(makeHeading());
    right->addWidget(m_notice);
    right->addWidget(m_box, 1);
    auto *const upper = new QHBoxLayout;
    upper->setContentsMargins(2 * theme::grid, 2 * theme::grid, 2 * theme::grid, 0);
    upper->setSpacing(2 * theme::grid);
    upper->addWidget(m_lists);
    upper->addLayout(right, 1);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(upper, 1);
    layout->addWidget(makeHairline(this));
    layout->addWidget(makeBottom());

    const auto *const page = &m_controller;
    connect(page, &Page::stateChanged, this, &UninstallPanel::followState);
    connect(page, &Page::progressChanged, this, &UninstallPanel::followState);
    connect(page, &Page::allApplicationsChanged, this, &UninstallPanel::followList);
    connect(page, &Page::messageChanged, this, &UninstallPanel::followMessage);
    connect(page, &Page::askToUninstall, this, &UninstallPanel::ask);
    connect(page, &Page::removalRefused, this, &UninstallPanel::showWords);
    const auto *const leftBehind = &m_controller.leftBehind();
    connect(leftBehind, &LeftBehindController::itemsChanged, this, &UninstallPanel::followList);
    connect(leftBehind, &LeftBehindController::ticksChanged, this, &UninstallPanel::followMessage);
    connect(leftBehind, &LeftBehindController::askToRemove, this,
            &UninstallPanel::askAboutLeftBehind);
    connect(leftBehind, &LeftBehindController::removalRefused, this, &UninstallPanel::showWords);
    connect(page, &Page::ticked, this, &UninstallPanel::flyToButton);
    connect(page, &Page::detailsAsked, this, [this] {
        UninstallDetailsSheet::show(m_controller, m_table->iconOf(m_controller.selectRow()),
                                    window());
    });
    QWidget *before = m_lists;
    for (QWidget *const next : {static_cast<QWidget *>(m_filter), static_cast<QWidget *>(m_table),
                                static_cast<QWidget *>(m_leftBehind)})
        setTabOrder(std::exchange(before, next), next);
    followState();
    followList();
    followMessage();
}

QSize UninstallPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

QWidget *UninstallPanel::makeHeading() {
    auto *const heading = new QWidget(this);
    auto *const row = makeHeadingRow(heading);
    m_count = makePlainLabel("uninstall.count", heading);
    theme::keepFont(m_count, 15, true);
    row->addWidget(m_count, 1);
    m_filter = new FilterField(localizedText("UNINSTALL_FILTER"), this, heading);
    m_filter->setObjectName(QStringLiteral("uninstall.filter"));
    connect(m_filter, &QLineEdit::textChanged, &m_controller, &Page::setFilter);
    connect(m_filter, &FilterField::left, this,
            [this] { m_table->setFocus(Qt::ShortcutFocusReason); });
    row->addWidget(m_filter);
    return heading;
}

QWidget *UninstallPanel::makeWaiting() {
    auto *const page = new QWidget(m_box);
    auto *const layout = new QVBoxLayout(page);
    layout->setSpacing(4 * theme::grid);
    layout->addStretch(2);
    m_waitingWords = centered("uninstall.waiting", 15, true, page);
    layout->addWidget(m_waitingWords, 0, Qt::AlignHCenter);
    searchAppsIndicator = new QProgressBar(page);
    searchAppsIndicator->setObjectName(QStringLiteral("searchAppsIndicator"));
    searchAppsIndicator->setTextVisible(false);
    theme::keep(searchAppsIndicator,
                [this] { searchAppsIndicator->setFixedWidth(theme::height(barWidth)); });
    layout->addWidget(searchAppsIndicator, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    return page;
}

QWidget *UninstallPanel::makeEmpty() {
    auto *const page = new QWidget(m_box);
    m_emptyWords = centered("uninstall.empty", 15, true, page);
    makeEmptyPart(QStringLiteral("start_uninstall.png"), m_emptyWords, page)->addStretch(3);
    return page;
}

QWidget *UninstallPanel::makeBottom() {
    auto *const bottom = new QWidget(this);
    auto *const row = makeBottomRow(bottom);
    lockButton = new PadlockButton(m_controller.padlock(), bottom);
    connect(lockButton, &PadlockButton::unlockWanted, &m_controller, &Page::unlockRigths);
    connect(&m_controller.padlock(), &PadlockController::askingChanged, this,
            &UninstallPanel::followState);
    row->addWidget(lockButton);
    uninstallTextField = new StyledLabel(bottom);
    uninstallTextField->setObjectName(QStringLiteral("uninstallTextField"));
    uninstallTextField->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->addWidget(uninstallTextField, 1);
    m_uninstallImage = new ImageView(QLatin1String(m_controller.uninstallImage()), bottom);
    theme::keepSize(m_uninstallImage, buttonImageSide, buttonImageSide);
    row->addWidget(m_uninstallImage);
    uninstallButton = makeRemovingButton("uninstallButton", localizedText("Uninstall"), bottom);
    row->addWidget(uninstallButton);
    connect(uninstallButton, &QPushButton::clicked, this, [this] {
        if (m_controller.state() == State::Planning)
            m_controller.stopPlanning();
        else if (isLeftBehind())
            m_controller.leftBehind().removeButtonAction();
        else
            m_controller.uninstallButtonAction();
    });
    return bottom;
}

// -- Showing

void UninstallPanel::showEvent(QShowEvent *) {
    m_controller.setShown(true);
}

void UninstallPanel::hideEvent(QHideEvent *) {
    m_controller.setShown(false);
}

bool UninstallPanel::isLeftBehind() const {
    return m_controller.nowSelectRow() == Page::LeftBehindRow;
}

// What is waited for; empty where nothing is.
QString UninstallPanel::waitingWords() const {
    using Behind = LeftBehindController::State;
    const State state = m_controller.state();
    const Behind behind = m_controller.leftBehind().state();
    if (!m_controller.isScaned())
        return localizedText("UNINSTALL_LISTING");
    if (state == State::AskingRights || behind == Behind::AskingRights)
        return localizedText("UNINSTALL_ASKING_RIGHTS");
    if (state == State::Uninstalling)
        return m_controller.progress().isEmpty()
                   ? localizedText("UNINSTALL_WORKING")
                   : localizedText("UNINSTALL_REMOVING")
                         .arg(nameInSentence(m_controller.progress()));
    if (isLeftBehind() && behind == Behind::Searching && m_leftBehindModel.rowCount() == 0)
        return localizedText("LEFT_BEHIND_SEARCHING");
    return isLeftBehind() && behind == Behind::Removing ? localizedText("LEFT_BEHIND_REMOVING")
                                                        : QString();
}

void UninstallPanel::followState() {
    const bool isIdle = m_controller.isIdle();
    const QString waiting = waitingWords();
    m_waitingWords->setText(waiting);
    // It turns only while it is looked at.
    searchAppsIndicator->setRange(0, waiting.isEmpty() ? 1 : 0);
    searchAppsIndicator->setAccessibleName(waiting);
    ResultView *const table = isLeftBehind() ? static_cast<ResultView *>(m_leftBehind)
                                             : static_cast<ResultView *>(m_table);
    const bool isEmpty =
        isLeftBehind() ? m_leftBehindModel.rowCount() == 0 : m_controller.searchAllAppArr().empty();
    QWidget *const page = !waiting.isEmpty() ? m_waiting
                          : isEmpty          ? m_empty
                                             : static_cast<QWidget *>(table);
    const bool hadFocus = holdsFocus(*this);
    const bool keepsFocus = holdsFocus(*m_filter) || holdsFocus(*m_lists);
    m_box->setCurrentWidget(page);
    setFocusProxy(isIdle && page == table ? static_cast<QWidget *>(table) : m_box);
    for (QWidget *const part : {static_cast<QWidget *>(m_lists), static_cast<QWidget *>(m_table),
                                static_cast<QWidget *>(m_leftBehind)})
        part->setEnabled(isIdle);
    m_filter->setVisible(!isLeftBehind());
    m_filter->setEnabled(isIdle);
    lockButton->setEnabled(isIdle && !m_controller.padlock().isAsking());
    // The keyboard stays in the page: a widget that goes would hand it on to the toolbar.
    if (isIdle && page == table && hadFocus && !keepsFocus)
        table->setFocus();
    else if (!isIdle && hadFocus)
        m_box->setFocus();
    followMessage();
}

void UninstallPanel::followList() {
    const std::size_t count = isLeftBehind() ? m_controller.leftBehind().items().size()
                                             : m_controller.allApplications().size();
    m_count->setText(!m_controller.isScaned() ? QString()
                     : isLeftBehind()         ? localizedText("LEFT_BEHIND_COUNT", count)
                                              : localizedText("UNINSTALL_COUNT", count));
    m_emptyWords->setText(isLeftBehind() ? localizedText("LEFT_BEHIND_NONE")
                          : m_controller.failures().empty()
                              ? localizedText("UNINSTALL_EMPTY")
                              : localizedText("UNINSTALL_NOT_LISTED"));
    followState();
}

void UninstallPanel::followMessage() {
    const auto &leftBehind = m_controller.leftBehind();
    auto message = m_controller.uninstallTextField();
    bool canGo = m_controller.uninstallButton();
    if (isLeftBehind()) {
        const std::size_t ticked = leftBehind.tickedCount();
        canGo = ticked > 0;
        message = {leftBehind.message(), {}, false, 0, 0, false};
        if (message.text.isEmpty() && !leftBehind.items().empty())
            message = {localizedText("%d of %d selected."), {},   true, ticked,
                       leftBehind.items().size(),           false};
    } else if (m_controller.state() == State::Planning) {
        message = {localizedText("UNINSTALL_PLANNING"), {}, false, 0, 0, false};
    }
    uninstallTextField->setStyledText(lineOf(message));
    uninstallTextField->setToolTip(plainToolTip({message.toolTip}));
    uninstallTextField->setAccessibleDescription(message.toolTip);
    const bool isPlanning = m_controller.state() == State::Planning;
    uninstallButton->setText(isPlanning       ? localizedText("STOP")
                             : isLeftBehind() ? localizedText("DUP_REMOVE")
                                              : localizedText("Uninstall"));
    uninstallButton->setEnabled(isPlanning || (m_controller.isIdle() && canGo));
    m_uninstallImage->setVisible(!isLeftBehind());
    m_uninstallImage->setImageName(QLatin1String(m_controller.uninstallImage()));
    followNotice();
}

// Why something stayed comes first, then what is ticked and does not go, then what could not be
// listed.
void UninstallPanel::followNotice() {
    const std::size_t hidden = isLeftBehind() ? 0 : m_controller.hiddenSelectedCount();
    const QString &notice = isLeftBehind() ? m_controller.leftBehind().refusal()
                                           : m_controller.uninstallTextField().notice;
    m_showAll->setVisible(hidden > 0 && notice.isEmpty());
    if (!notice.isEmpty())
        return m_notice->tell(notice);
    if (hidden > 0)
        return m_notice->tell(localizedText("UNINSTALL_HIDDEN_TICKS", hidden));
    QStringList kinds;
    for (const auto &failure : m_controller.failures())
        kinds += UninstallTexts::kind(failure.kind);
    m_notice->tell(
        kinds.isEmpty()
            ? QString()
            : localizedText("UNINSTALL_KIND_NOT_LISTED").arg(kinds.join(QStringLiteral(", "))));
}

void UninstallPanel::ask(const QString &text) {
    UninstallSheet::show(m_controller, text, window());
}

void UninstallPanel::askAboutLeftBehind() {
    auto &leftBehind = m_controller.leftBehind();
    QStringList lines;
    for (const Leftover &item : leftBehind.items()) {
        if (item.ticked)
            lines += paths::displayFromHome(item.path);
    }
    AlertContent content;
    content.imageName = QStringLiteral("warning.png");
    content.text = countWords(QT_TRID_NOOP("LEFT_BEHIND_ASK"), leftBehind.tickedCount(),
                              leftBehind.tickedBytes());
    content.informativeText = lines.join(u'\n');
    content.isList = true;
    content.buttons = {
        {localizedText("DUP_REMOVE"), true, [&leftBehind] { leftBehind.alertEnded(true); }},
        {localizedText("CANCEL"), false, [&leftBehind] { leftBehind.alertEnded(false); }}};
    content.calledOff = [&leftBehind] { leftBehind.alertEnded(false); };
    AlertSheet::show(std::move(content), window());
}

void UninstallPanel::showWords(const QString &words) {
    AlertContent content;
    content.imageName = QStringLiteral("warning.png");
    content.text = words;
    AlertSheet::show(std::move(content), window());
}

void UninstallPanel::flyToButton(int row) {
    const QModelIndex index = m_model.index(row, UninstallListModel::Name);
    const QRect place = m_table->visualRect(index);
    if (m_table->viewport()->rect().intersects(place))
        flyTick(*this, *m_table, place.topLeft(), *m_uninstallImage, m_table->iconOf(row));
}

} // namespace brightsweep
