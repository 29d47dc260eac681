#include "uninstall/ui/UninstallSheet.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "ui/ElidedLabel.h"
#include "ui/PageParts.h"
#include "ui/SheetShade.h"
#include "ui/Theme.h"
#include "uninstall/UninstallAppsController.h"
#include "uninstall/UninstallTexts.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int sheetWidth = 600;
constexpr int listHeight = 360;     // at most
constexpr int leastListHeight = 96; // however small the window is
constexpr int iconSide = 32;
constexpr int textWidth = 360;

void makeSheet(QDialog &sheet, const char *name) {
    sheet.setAttribute(Qt::WA_DeleteOnClose);
    sheet.setObjectName(QLatin1String(name));
    sheet.setWindowTitle(QStringLiteral("Brightsweep"));
    sheet.setProperty("sheet", true);
}

QLabel *words(const QString &text, QWidget *parent, bool isSecondary = false) {
    auto *const label = makePlainLabel("uninstall.sheet.words", parent);
    label->setText(text);
    label->setWordWrap(true);
    label->setProperty("secondary", isSecondary);
    return label;
}

// A line that takes what room there is; its tool tip says the whole.
ElidedLabel *elided(const char *name, const QString &text, QWidget *parent) {
    auto *const label = new ElidedLabel(Qt::ElideMiddle, parent);
    label->setObjectName(QLatin1String(name));
    label->setText(text);
    label->setToolTip(plainToolTip({text}));
    return label;
}

} // namespace

UninstallSheet *UninstallSheet::show(UninstallAppsController &page, const QString &text,
                                     QWidget *window) {
    auto *const sheet = new UninstallSheet(page, text, window);
    shade(*sheet);
    sheet->open();
    return sheet;
}

UninstallSheet::UninstallSheet(UninstallAppsController &page, const QString &text, QWidget *window)
    : QDialog(window, Qt::Sheet),
      m_page(page),
      m_sum(words({}, this)),
      m_uninstall(new QPushButton(localizedText("Uninstall"), this)) {
    makeSheet(*this, "uninstall.sheet");
    setAccessibleDescription(text);
    auto *const title = makePlainLabel("uninstall.sheet.title", this);
    title->setText(localizedText("Uninstall Applications"));
    theme::keepFont(title, 15, true);
    auto *const question = words(text, this);
    auto *const rows = new QWidget(this);
    auto *const list = new QVBoxLayout(rows);
    list->setContentsMargins(0, 0, 2 * theme::grid, 0);
    list->setSpacing(2 * theme::grid);
    for (std::size_t i = 0; i < page.plans().size(); ++i)
        list->addWidget(makePlan(i));
    list->addStretch(1);
    auto *const scroll = makeScroll(rows, this);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_sum->setObjectName(QStringLiteral("uninstall.sheet.sum"));
    auto *const cancel = new QPushButton(localizedText("CANCEL"), this);
    cancel->setObjectName(QStringLiteral("uninstall.sheet.cancel"));
    cancel->setToolTip(plainToolTip({localizedText("TIP_REMOVE_NOTHING")}));
    cancel->setDefault(true);
    cancel->setProperty("primary", true);
    m_uninstall->setObjectName(QStringLiteral("uninstall.sheet.uninstall"));
    m_uninstall->setAutoDefault(false);
    m_uninstall->setProperty("danger", true);
    auto *const buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(m_uninstall);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(5 * theme::grid, 5 * theme::grid, 5 * theme::grid, 4 * theme::grid);
    layout->setSpacing(2 * theme::grid);
    layout->addWidget(title);
    layout->addWidget(question);
    layout->addWidget(scroll, 1);
    layout->addWidget(makeHairline(this));
    layout->addWidget(m_sum);
    layout->addLayout(buttons);
    theme::keep(this, [this, list, scroll] { fit(*list, *scroll); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_uninstall, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::finished, this,
            [this](int result) { m_page.alertEnded(result == QDialog::Accepted ? 1 : 0); });
    cancel->setFocus();
    follow();
}

// As high as what it says, and above a height it is scrolled.
void UninstallSheet::fit(QVBoxLayout &list, QScrollArea &scroll) {
    const QSize room = parentWidget() ? parentWidget()->size() * 0.9 : QSize(9999, 9999);
    const int width = std::min(theme::height(sheetWidth), room.width());
    const int whole = list.totalHeightForWidth(width - 16 * theme::grid);
    scroll.setFixedHeight(std::min(whole, theme::height(listHeight)));
    const int rest = layout()->totalHeightForWidth(width) - scroll.height();
    scroll.setFixedHeight(
        std::max(std::min(scroll.height(), room.height() - rest), theme::height(leastListHeight)));
    setFixedWidth(width);
    resize(width, rest + scroll.height());
}

QWidget *UninstallSheet::makePlan(std::size_t number) {
    const RemovalPlan &plan = m_page.plans()[number];
    auto *const card = new QFrame(this);
    card->setObjectName(QStringLiteral("uninstall.sheet.plan"));
    card->setProperty("card", true);
    auto *const list = new QVBoxLayout(card);
    list->setContentsMargins(3 * theme::grid, 2 * theme::grid, 3 * theme::grid, 2 * theme::grid);
    list->setSpacing(theme::grid);
    auto *const head = new QHBoxLayout;
    head->setSpacing(2 * theme::grid);
    auto *const icon = new QLabel(card);
    icon->setPixmap(m_icons.pixmap(QString::fromStdString(plan.application.icon),
                                   paths::display(plan.application.name), theme::height(iconSide),
                                   devicePixelRatioF()));
    head->addWidget(icon);
    auto *const name = elided("uninstall.sheet.name", paths::display(plan.application.name), card);
    name->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    theme::keepFont(name, 14, true);
    head->addWidget(name);
    auto *const kind = makePlainLabel("uninstall.sheet.kind", card);
    kind->setText(UninstallTexts::kind(plan.application.kind));
    kind->setProperty("secondary", true);
    head->addWidget(kind, 1);
    list->addLayout(head);
    const QString obstacle = UninstallTexts::obstacle(plan);
    if (!obstacle.isEmpty()) {
        list->addWidget(words(localizedText("UNINSTALL_STAYS").arg(obstacle), card));
        if (const QString why = UninstallTexts::translated(plan.reason);
            !why.isEmpty() && why != obstacle)
            list->addWidget(words(why, card, true));
        return card;
    }
    auto *const size = makePlainLabel("uninstall.sheet.size", card);
    size->setText(sizeWords(m_page.planSizes()[number]));
    size->setProperty("number", true);
    head->addWidget(size);
    for (const QString &sentence : UninstallTexts::sentences(plan))
        list->addWidget(words(sentence, card));
    addLeftovers(*list, number);
    return card;
}

// What it leaves, a tick each.
void UninstallSheet::addLeftovers(QVBoxLayout &list, std::size_t number) {
    const RemovalPlan &plan = m_page.plans()[number];
    list.addWidget(words(plan.leftovers.empty() ? localizedText("UNINSTALL_LEAVES_NOTHING")
                                                : localizedText("UNINSTALL_LEAVES"),
                         this, true));
    for (std::size_t i = 0; i < plan.leftovers.size(); ++i) {
        const Leftover &leftover = plan.leftovers[i];
        auto *const mark = addMark(list, paths::displayFromHome(leftover.path),
                                   UninstallTexts::leftover(leftover.kind),
                                   UninstallTexts::obstacle(leftover), sizeWords(leftover.bytes));
        mark->setChecked(leftover.ticked);
        mark->setEnabled(!leftover.refusal);
        connect(mark, &QCheckBox::toggled, this, [this, number, i](bool on) {
            m_page.tickLeftover(number, i, on);
            follow();
        });
    }
    if (const QString label = UninstallTexts::systemSettings(plan); !label.isEmpty()) {
        auto *const mark = addMark(list, label, {}, {}, {});
        mark->setChecked(plan.purge);
        connect(mark, &QCheckBox::toggled, this,
                [this, number](bool on) { m_page.tickSystemSettings(number, on); });
    }
}

// What keeps it stands below the path, which so has the room of the line.
QCheckBox *UninstallSheet::addMark(QVBoxLayout &list, const QString &label, const QString &kind,
                                   const QString &obstacle, const QString &size) {
    auto *const row = new QHBoxLayout;
    row->setSpacing(2 * theme::grid);
    auto *const mark = new QCheckBox(this);
    mark->setObjectName(QStringLiteral("uninstall.sheet.mark"));
    mark->setAccessibleName(spokenWords({label, kind, obstacle, size}));
    row->addWidget(mark, 0, Qt::AlignVCenter);
    auto *const lines = new QVBoxLayout;
    lines->setSpacing(0);
    lines->addWidget(elided("uninstall.sheet.path", label, this));
    if (!obstacle.isEmpty())
        lines->addWidget(words(obstacle, this, true));
    row->addLayout(lines, 1);
    auto *const note = makePlainLabel("uninstall.sheet.note", this);
    note->setText(kind);
    note->setProperty("secondary", true);
    row->addWidget(note);
    auto *const bytes = makePlainLabel("uninstall.sheet.bytes", this);
    bytes->setText(size);
    bytes->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    theme::keep(bytes,
                [bytes] { bytes->setMinimumWidth(theme::textWidth({theme::widestSize()}, 12)); });
    row->addWidget(bytes);
    list.addLayout(row);
    return mark;
}

void UninstallSheet::follow() {
    const auto sum = UninstallTexts::sum(m_page.plans(), m_page.planSizes());
    m_uninstall->setEnabled(sum.applications > 0);
    m_sum->setText(sum.applications > 0 ? UninstallTexts::sentences(sum).join(u'\n')
                                        : localizedText("UNINSTALL_NOTHING_GOES"));
}

// -- Details

UninstallDetailsSheet *UninstallDetailsSheet::show(UninstallAppsController &page,
                                                   const QPixmap &icon, QWidget *window) {
    auto *const sheet = new UninstallDetailsSheet(page, icon, window);
    shade(*sheet);
    sheet->open();
    return sheet;
}

UninstallDetailsSheet::UninstallDetailsSheet(UninstallAppsController &page, const QPixmap &icon,
                                             QWidget *window)
    : QDialog(window, Qt::Sheet),
      m_page(page),
      m_size(makePlainLabel("uninstall.details.size", this)) {
    makeSheet(*this, "uninstall.details");
    const auto &details = page.details();
    auto *const picture = new QLabel(this);
    picture->setPixmap(icon);
    auto *const name = elided("uninstall.details.name", details.name, this);
    name->setToolTip(plainToolTip({details.nameTip}));
    theme::keepFont(name, 15, true);
    m_size->setProperty("number", true);
    auto *const column = new QVBoxLayout;
    column->setSpacing(theme::grid);
    column->addWidget(name);
    column->addWidget(words(details.item->bundleVersion, this, true));
    column->addWidget(m_size);
    if (!details.date.isEmpty())
        column->addWidget(words(details.date, this));
    auto *const path = elided("uninstall.details.path", details.path, this);
    path->setToolTip(plainToolTip({paths::display(details.item->path)}));
    auto *const id = elided("uninstall.details.id", details.item->bundleID, this);
    for (ElidedLabel *line : {path, id}) {
        line->setProperty("secondary", true);
        line->setHidden(line->text().isEmpty());
        column->addWidget(line);
    }
    const QString reason = details.item->isSystemApp
                               ? UninstallTexts::systemReason(*details.item->application)
                               : QString();
    if (!reason.isEmpty())
        column->addWidget(words(reason, this, true));
    auto *const ok = new QPushButton(localizedText("OK"), this);
    ok->setObjectName(QStringLiteral("uninstall.details.ok"));
    ok->setDefault(true);
    ok->setProperty("primary", true);
    auto *const buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(ok);
    column->addSpacing(2 * theme::grid);
    column->addLayout(buttons);
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(6 * theme::grid, 6 * theme::grid, 6 * theme::grid, 5 * theme::grid);
    layout->setSpacing(5 * theme::grid);
    layout->addWidget(picture, 0, Qt::AlignTop);
    layout->addLayout(column, 1);
    theme::keep(this, [this] { setMinimumWidth(theme::height(textWidth)); });
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::finished, &page, &UninstallAppsController::alertWindowOkAction);
    connect(&page, &UninstallAppsController::detailsChanged, this, &UninstallDetailsSheet::follow);
    follow();
}

void UninstallDetailsSheet::follow() {
    const QString &size = m_page.details().size;
    m_size->setText(size.isNull() ? localizedText("UNINSTALL_MEASURING") : readersSize(size));
}

} // namespace brightsweep
