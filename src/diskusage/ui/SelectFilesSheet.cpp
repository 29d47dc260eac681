#include "diskusage/ui/SelectFilesSheet.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "removal/RemovalReason.h"
#include "ui/AlertSheet.h"
#include "ui/ElidedText.h"
#include "ui/ImageProvider.h"
#include "ui/PageParts.h"
#include "ui/SheetShade.h"
#include "ui/Theme.h"

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
constexpr int sheetHeight = 400;
constexpr int listWidth = 560;
// Rows that are made; the rest is told as a number.
constexpr std::size_t mostRows = 500;

} // namespace

QString notesOf(const SelectFilesListView &row) {
    QStringList notes;
    if (row.hasGone)
        notes += localizedText("USAGE_NOTE_GONE");
    else if (row.isOther)
        notes += localizedText(QT_TRID_NOOP("FAILED_CHANGED"));
    else if (row.refusal)
        notes += localizedText(reasonKey(row.refusal));
    if (row.gained > 0)
        notes += localizedText("USAGE_NOTE_GAINED", row.gained);
    if (!row.program.empty())
        notes +=
            localizedText("USAGE_NOTE_IN_USE").arg(nameInSentence(paths::display(row.program)));
    if (row.now.below.smallEntries > 0) {
        notes += localizedText("USAGE_NOTE_SMALL", row.now.below.smallEntries)
                     .arg(sizeWords(row.now.below.smallBytes));
    }
    return notes.join(QStringLiteral(" · "));
}

SelectFilesSheet *SelectFilesSheet::show(UsageTicks &ticks, QWidget *window,
                                         std::function<void(std::optional<Act>)> answered) {
    auto *const sheet = new SelectFilesSheet(ticks, window, std::move(answered));
    shade(*sheet);
    sheet->open();
    return sheet;
}

SelectFilesSheet::SelectFilesSheet(UsageTicks &ticks, QWidget *window,
                                   std::function<void(std::optional<Act>)> answered)
    : QDialog(window, Qt::Sheet), m_ticks(ticks), m_answered(std::move(answered)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("usage.sheet"));
    setWindowTitle(QStringLiteral("Brightsweep"));
    setProperty("sheet", true);
    m_title = new QLabel(this);
    m_title->setObjectName(QStringLiteral("usage.sheet.title"));
    theme::keepFont(m_title, 13, true);
    m_freed = new QLabel(this);
    m_freed->setObjectName(QStringLiteral("usage.sheet.freed"));
    m_freed->setProperty("secondary", true);
    auto *const rows = new QWidget(this);
    auto *const list = new QVBoxLayout(rows);
    list->setContentsMargins(0, 0, 2 * theme::grid, 0);
    list->setSpacing(0);
    const std::size_t shown = std::min(ticks.sheet().size(), mostRows);
    for (std::size_t i = 0; i < shown; ++i)
        list->addWidget(makeRow(i));
    if (shown < ticks.sheet().size())
        list->addWidget(
            new QLabel(localizedText("USAGE_FURTHER_ITEMS", ticks.sheet().size() - shown), rows));
    list->addStretch(1);
    auto *const scroll = makeScroll(rows, this);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    const auto button = [this](const char *name, const QString &label, const QString &tip) {
        auto *const made = new QPushButton(label, this);
        made->setObjectName(QLatin1String(name));
        made->setAutoDefault(false);
        made->setToolTip(plainToolTip({tip}));
        return made;
    };
    m_cancel = button("usage.cancel", localizedText("CANCEL"), localizedText("TIP_REMOVE_NOTHING"));
    m_cancel->setDefault(true);
    m_trash =
        button("usage.trash", localizedText("MOVE_TO_TRASH"), localizedText("USAGE_TIP_TRASH"));
    m_remove =
        button("usage.remove", localizedText("USAGE_REMOVE"), localizedText("USAGE_TIP_REMOVE"));
    m_remove->setProperty("danger", true);
    auto *const buttons = new QHBoxLayout;
    buttons->setSpacing(2 * theme::grid);
    buttons->addWidget(m_cancel);
    buttons->addStretch(1);
    buttons->addWidget(m_trash);
    buttons->addWidget(m_remove);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(5 * theme::grid, 5 * theme::grid, 5 * theme::grid, 4 * theme::grid);
    layout->setSpacing(2 * theme::grid);
    layout->addWidget(m_title);
    layout->addWidget(scroll, 1);
    layout->addWidget(m_freed);
    layout->addLayout(buttons);
    theme::keep(this, [this, window] {
        const QSize stated(theme::height(sheetWidth), theme::height(sheetHeight));
        resize(window ? stated.boundedTo(window->size() * 0.9) : stated);
    });
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_trash, &QPushButton::clicked, this, [this] { choose(Act::Trash); });
    connect(m_remove, &QPushButton::clicked, this, [this] { choose(Act::Remove); });
    connect(this, &QDialog::finished, this, [this] { m_answered(m_act); });
    m_cancel->setFocus();
    follow();
}

QWidget *SelectFilesSheet::makeRow(std::size_t row) {
    const SelectFilesListView &item = m_ticks.sheet()[row];
    auto *const line = new QWidget(this);
    auto *const layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, theme::grid / 2, 0, theme::grid / 2);
    layout->setSpacing(2 * theme::grid);
    auto *const mark = new QCheckBox(line);
    mark->setObjectName(QStringLiteral("usage.sheet.mark"));
    mark->setChecked(item.isSelected);
    mark->setEnabled(!item.hasGone && !item.isOther && !item.refusal);
    const QString path = paths::displayFromHome(item.aFileInfo.path);
    mark->setAccessibleName(path);
    layout->addWidget(mark, 0, Qt::AlignVCenter);
    auto *const words = new QVBoxLayout;
    words->setSpacing(0);
    auto *const name = new QLabel(line);
    name->setTextFormat(Qt::PlainText);
    name->setToolTip(plainToolTip({path}));
    name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    name->setText(elidedText(name->fontMetrics(), path, Qt::ElideMiddle,
                             theme::height(listWidth) - theme::height(160)));
    words->addWidget(name);
    const QString notes = notesOf(item);
    if (!notes.isEmpty()) {
        auto *const note = new QLabel(notes, line);
        note->setTextFormat(Qt::PlainText);
        note->setWordWrap(true);
        const bool isWarning = item.hasGone || item.isOther || item.refusal || item.gained > 0 ||
                               !item.program.empty();
        note->setProperty(isWarning ? "danger" : "secondary", true);
        theme::keepFont(note, 11);
        words->addWidget(note);
    }
    layout->addLayout(words, 1);
    auto *const size = new QLabel(readersSize(item.aFileInfo.size), line);
    size->setProperty("number", true);
    layout->addWidget(size, 0, Qt::AlignVCenter);
    connect(mark, &QCheckBox::toggled, this, [this, row](bool on) {
        m_ticks.select(row, on);
        follow();
    });
    return line;
}

void SelectFilesSheet::follow() {
    const auto &rows = m_ticks.sheet();
    const auto selected = std::size_t(
        std::count_if(rows.begin(), rows.end(), [](const auto &row) { return row.isSelected; }));
    m_title->setText(localizedText("USAGE_ASK", selected));
    m_trash->setEnabled(selected > 0);
    m_remove->setEnabled(selected > 0);
    m_freed->setText(localizedText("USAGE_FREES").arg(sizeWords(m_ticks.sheetFreed())));
}

// What is held by a program, or has grown since it was ticked, is asked about by itself.
void SelectFilesSheet::choose(Act act) {
    QStringList reasons;
    for (const SelectFilesListView &row : m_ticks.sheet()) {
        if (!row.isSelected || (row.program.empty() && row.gained == 0))
            continue;
        SelectFilesListView plain = row;
        plain.now.below.smallEntries = 0;
        reasons += QStringLiteral("%1: %2").arg(paths::display(row.aFileInfo.name), notesOf(plain));
    }
    if (!reasons.isEmpty()) {
        askOnceMore(act, reasons);
        return;
    }
    m_act = act;
    accept();
}

void SelectFilesSheet::askOnceMore(Act act, const QStringList &reasons) {
    AlertContent content;
    content.imageName = QStringLiteral("warning.png");
    content.text = localizedText("USAGE_ASK_ONCE_MORE", std::size_t(reasons.size()));
    content.informativeText = reasons.join(u'\n');
    content.isList = true;
    content.buttons = {{localizedText(act == Act::Trash ? QT_TRID_NOOP("MOVE_TO_TRASH")
                                                        : QT_TRID_NOOP("USAGE_REMOVE")),
                        true,
                        [this, act] {
                            m_act = act;
                            accept();
                        },
                        false,
                        {}},
                       {localizedText("CANCEL"), false, {}, false, {}}};
    AlertSheet::show(std::move(content), this);
}

} // namespace brightsweep
