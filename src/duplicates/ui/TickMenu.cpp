#include "duplicates/ui/TickMenu.h"

#include "core/Texts.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "ui/FolderChoice.h"

#include <QMenu>
#include <QShortcut>

#include <array>

namespace brightsweep {

namespace {

using Page = SameFileDeleteViewController;

struct Rule {
    const char *text;
    KeepRule rule;
};
constexpr std::array rules = {
    Rule{QT_TRID_NOOP("DUP_KEEP_NEWEST"), KeepRule::Newest},
    Rule{QT_TRID_NOOP("DUP_KEEP_OLDEST"), KeepRule::Oldest},
    Rule{QT_TRID_NOOP("DUP_KEEP_SHORTEST"), KeepRule::ShortestPath},
    Rule{QT_TRID_NOOP("DUP_KEEP_FIRST"), KeepRule::Last},
};

} // namespace

TickMenu::TickMenu(Page &page, QWidget *parent) : QToolButton(parent), m_page(page) {
    setObjectName(QStringLiteral("duplicates.tickMenu"));
    const QString name = localizedText("DUP_TICK");
    setText(name + QStringLiteral(" \u25be"));
    setToolTip(localizedText("DUP_TICK_TIP"));
    setAccessibleName(name);
    setAccessibleDescription(toolTip());
    setFocusPolicy(Qt::StrongFocus);
    // Not as a menu of the button: assistive programs press it like any other.
    connect(this, &QToolButton::clicked, this, &TickMenu::open);
    auto *const undo = new QShortcut(QKeySequence::Undo, parentWidget());
    connect(undo, &QShortcut::activated, this, [this] {
        if (m_page.canUndoTicks())
            m_page.undoTicks();
    });
}

void TickMenu::addRules(QMenu &menu, Page &page, const TreeNode::Pointer &group) {
    for (const Rule &each : rules)
        menu.addAction(localizedText(each.text), &page,
                       [&page, group, rule = each.rule] { page.tickAllBut(rule, group); });
}

void TickMenu::open() {
    auto *const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addRules(*menu, m_page, nullptr);
    menu->addAction(localizedText("DUP_KEEP_FOLDER"), this, [this] {
        FolderChoice::ask(this, localizedText("DUP_KEPT_FOLDER"), m_page.searchedFolder(),
                          [this](const auto &folder) { m_page.tickAllOutside(folder); });
    });
    menu->addSeparator();
    QAction *const none = menu->addAction(localizedText("DUP_UNTICK"), &m_page,
                                          [this] { m_page.setAllSelectOrNoSelect(false); });
    none->setEnabled(!m_page.selection().isEmpty());
    QAction *const undo =
        menu->addAction(localizedText("DUP_UNDO"), &m_page, [this] { m_page.undoTicks(); });
    undo->setShortcut(QKeySequence::Undo);
    undo->setEnabled(m_page.canUndoTicks());
    menu->popup(mapToGlobal(QPoint(0, height())));
    menu->setActiveAction(menu->actions().constFirst());
}

} // namespace brightsweep
