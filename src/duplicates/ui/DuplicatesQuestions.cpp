// The questions of the results panel, and its word on what a removal came to.
#include "cleaning/ui/FileIcons.h"
#include "cleaning/ui/TickFlight.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "duplicates/DuplicateNodes.h"
#include "duplicates/ui/DuplicatesResultsPanel.h"
#include "duplicates/ui/DuplicatesView.h"
#include "foundation/Paths.h"
#include "ui/ImageView.h"
#include "ui/PageAlerts.h"

#include <QPushButton>

#include <array>

namespace brightsweep {

namespace {

using Act = SameFileDeleteViewController::Act;

} // namespace

AlertSheet *DuplicatesResultsPanel::ask(AlertContent content) {
    auto *const sheet = AlertSheet::show(std::move(content), window());
    // What is asked about goes with the lists, as when a folder comes from outside meanwhile.
    connect(&m_controller, &SameFileDeleteViewController::stateChanged, sheet, [this, sheet] {
        if (!m_controller.canBegin())
            sheet->reject();
    });
    return sheet;
}

void DuplicatesResultsPanel::askAboutLastFile() {
    AlertContent content;
    content.imageName = QStringLiteral("warning.png");
    content.text = localizedText("Are you sure you want to delete all the duplicate files?");
    content.informativeText = QStringLiteral(" ");
    content.buttons = {
        {localizedText("OK"), true, [this] { m_controller.alertEnded(true); }},
        {localizedText("CANCEL"), false, [this] { m_controller.alertEnded(false); }}};
    content.calledOff = [this] { m_controller.alertEnded(false); };
    ask(std::move(content));
}

// How many of each class go, what stays, and what one does not see.
QString DuplicatesResultsPanel::whatGoes() const {
    std::array<std::size_t, duplicateLists.size()> counts{}; // by fileType
    std::size_t wholeGroups = 0;
    const TreeNode *last = nullptr;
    for (const auto &leaf : m_controller.selection().allSelectNumArr()) {
        const TreeNode *const group = leaf->nodeParent();
        ++counts[std::size_t(dataOf(*group).fileType())];
        wholeGroups +=
            group != last && dataOf(*group).selectNum() == 1 && group->firstChild() == leaf ? 1 : 0;
        last = group;
    }
    QStringList lines;
    QStringList classes;
    const auto add = [&](const char *name, std::int32_t type) {
        if (const std::size_t count = counts[std::size_t(type)])
            classes += QStringLiteral("%1:\u00a0%2").arg(localizedText(name), readersNumber(count));
    };
    for (const DuplicateListRow &row : duplicateLists) {
        if (row.fileType != 0)
            add(row.title, row.fileType);
    }
    // What is in no class is in the list of all alone.
    add(QT_TRID_NOOP("DUP_NO_CLASS"), 0);
    lines += classes.join(QStringLiteral(" · "));
    lines += wholeGroups == 0 ? localizedText("DUP_ONE_STAYS")
                              : localizedText("DUP_WHOLE_GROUPS", wholeGroups);
    if (const std::uint64_t bytes = m_controller.selection().bytes();
        m_controller.freedBySelection() < bytes)
        lines += localizedText("DUP_FREES").arg(sizeWords(bytes));
    if (const std::size_t hidden = m_controller.hiddenSelectedCount())
        lines += localizedText("DUP_NOT_SHOWN", hidden);
    return lines.join(QStringLiteral("\n\n"));
}

void DuplicatesResultsPanel::askToRemove() {
    const auto &selection = m_controller.selection();
    AlertContent content;
    content.imageName = QStringLiteral("warning.png");
    content.text =
        countWords(QT_TRID_NOOP("DUP_ASK"), selection.count(), m_controller.freedBySelection());
    content.informativeText = whatGoes();
    const auto answer = [this](Act act) {
        return [this, act] { m_controller.removalAnswered(act); };
    };
    content.buttons = {
        {localizedText("DUP_REMOVE"), true, answer(Act::Remove), false,
         localizedText("DUP_TIP_REMOVE")},
        {localizedText("MOVE_TO_TRASH"), true, answer(Act::Trash), false,
         localizedText("DUP_TIP_TRASH")},
        {localizedText("CANCEL"), false, {}, false, localizedText("TIP_REMOVE_NOTHING")},
        {localizedText("DUP_SHARE"), false, answer(Act::Share), false,
         localizedText("DUP_TIP_SHARE")}};
    auto *const sheet = ask(std::move(content));
    auto *const trash =
        sheet->findChild<QPushButton *>(QStringLiteral("alert.") + localizedText("MOVE_TO_TRASH"));
    connect(&m_controller, &SameFileDeleteViewController::trashAnswered, trash,
            [trash](bool hasTrash) {
                trash->setEnabled(hasTrash);
                if (!hasTrash)
                    trash->setToolTip(plainToolTip({localizedText("has no trash on its volume")}));
            });
    offerSharing(
        sheet->findChild<QPushButton *>(QStringLiteral("alert.") + localizedText("DUP_SHARE")));
}

// Not before the file system has said that it can.
void DuplicatesResultsPanel::offerSharing(QPushButton *button) {
    const QString whatItDoes = button->toolTip();
    const auto tell = [this, button, whatItDoes](const QString &reason) {
        button->setEnabled(reason.isEmpty());
        button->setToolTip(reason.isEmpty() ? whatItDoes : plainToolTip({reason}));
        button->setAccessibleDescription(reason.isEmpty() ? localizedText("DUP_TIP_SHARE")
                                                          : reason);
    };
    tell(localizedText("DUP_SHARE_ASKING"));
    connect(&m_controller, &SameFileDeleteViewController::sharingAnswered, button,
            [tell](const QString &refusal) {
                tell(refusal.isEmpty() ? QString() : localizedText(refusal));
            });
    m_controller.askWhetherShareable();
}

void DuplicatesResultsPanel::flyToTrash(const TreeNode::Pointer &node) {
    const QRect shown = m_outline->viewport()->rect();
    for (QModelIndex row = m_outline->indexAt(shown.topLeft()); row.isValid();
         row = m_outline->indexBelow(row)) {
        const QRect place = m_outline->visualRect(row.siblingAtColumn(0));
        if (!shown.intersects(place))
            return;
        if (m_model.nodeOf(row) != node)
            continue;
        const auto icon =
            FileIcons().icon(paths::fromVariant(row.data(DuplicateOutlineModel::IconRole)),
                             row.data(DuplicateOutlineModel::IsDirectoryRole).toBool());
        flyTick(*this, *m_outline, place.topLeft(), *m_trashImage,
                icon.pixmap(QSize(flyingSide, flyingSide), devicePixelRatioF()));
        return;
    }
}

void DuplicatesResultsPanel::alertCanNotRemoveSome() {
    const auto ended = [this] { m_controller.alertDidEnd(); };
    if (m_controller.report().neededRights > 0)
        ask(padlockAlert(m_controller.padlock(),
                         localizedText("Some files that require admin access can't be removed!"),
                         ended));
    else
        ask(someStayedAlert(ended));
}

void DuplicatesResultsPanel::showWords(const QString &words) {
    ask(wordsAlert(words));
}

void DuplicatesResultsPanel::tellOutcome() {
    const auto &report = m_controller.report();
    const char *const key = report.act == Act::Trash   ? QT_TRID_NOOP("DUP_TRASHED")
                            : report.act == Act::Share ? QT_TRID_NOOP("DUP_SHARED")
                                                       : QT_TRID_NOOP("DUP_REMOVED");
    QStringList words = {report.act == Act::Trash
                             ? localizedText(key, report.done)
                             : countWords(key, report.done, report.bytesFreed)};
    if (report.failed > 0)
        words += localizedText("DUP_STAYED", report.failed);
    if (report.stopped)
        words += localizedText("DUP_REMOVAL_STOPPED");
    m_outcome = words.join(u' ');
    m_outline->showFailures();
    followSelection();
}

} // namespace brightsweep
