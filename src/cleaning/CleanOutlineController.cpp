#include "cleaning/CleanOutlineController.h"

#include "cleaning/ScanViewController.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <algorithm>
#include <array>
#include <utility>

namespace brightsweep {

namespace {

const QString groupFlyImage = QStringLiteral("file1.png");

bool isTicked(const SimpleTreeNode *leaf) {
    return leaf->data().selectNum() == 1;
}

} // namespace

CleanOutlineController::CleanOutlineController(std::vector<ScanViewController *> tableControllers,
                                               QObject *parent)
    : QObject(parent),
      m_tableControllers(std::move(tableControllers)),
      m_model(m_tree),
      m_holders(m_tableControllers) {
    connect(&m_model, &CleanOutlineModel::checkBoxClicked, this, &CleanOutlineController::toggle);
    connect(&m_holders, &HolderSearch::found, this, [this] {
        m_tree.setHolders(m_holders.programOfPath());
        m_model.valuesChanged();
        Q_EMIT holdersFound(m_holders.programOfPath());
        Q_EMIT reloaded();
    });
}

CleanOutlineController::~CleanOutlineController() = default;

void CleanOutlineController::constructTree() {
    m_model.rebuild(m_tableControllers);
    Q_EMIT reloaded();
}

void CleanOutlineController::markHolders() {
    m_holders.start();
}

void CleanOutlineController::setEnabled(bool enabled) {
    m_enabled = enabled;
    m_model.setEnabled(enabled);
}

void CleanOutlineController::toggle(const QModelIndex &index) {
    SimpleTreeNode *node = m_model.nodeOf(index);
    if (!m_enabled || !node)
        return;
    const auto leaves = m_model.shownLeaves(index);
    const bool ticked = std::none_of(leaves.begin(), leaves.end(), isTicked);
    const QVariant icon =
        node->data().isLeaf() ? paths::toVariant(node->data().name()) : QVariant(groupFlyImage);
    if (set(leaves, ticked) && ticked)
        Q_EMIT flyToTrash(icon, index);
}

void CleanOutlineController::setTicked(const QModelIndexList &rows, bool ticked) {
    std::vector<SimpleTreeNode *> leaves;
    for (const QModelIndex &row : rows) {
        const auto below = m_model.shownLeaves(row);
        leaves.insert(leaves.end(), below.begin(), below.end());
    }
    if (set(leaves, ticked) && ticked)
        Q_EMIT flyToTrash(groupFlyImage, rows.constFirst());
}

void CleanOutlineController::setAllSelectOrNoSelect(bool ticked) {
    if (set(m_model.shownLeaves(), ticked) && ticked)
        Q_EMIT flyToTrash(groupFlyImage, QModelIndex());
}

bool CleanOutlineController::open(const QModelIndex &index) const {
    const SimpleTreeNode *node = m_model.nodeOf(index);
    return node && node->data().isLeaf() &&
           Platform::current().workspace->open(node->data().name());
}

bool CleanOutlineController::reveal(const QModelIndex &index) const {
    const SimpleTreeNode *node = m_model.nodeOf(index);
    return node && node->data().isLeaf() &&
           Platform::current().workspace->reveal(node->data().name());
}

QString CleanOutlineController::pathText(const QModelIndexList &rows) const {
    QStringList lines;
    for (const QModelIndex &row : rows) {
        for (const SimpleTreeNode *leaf : m_model.shownLeaves(row))
            lines += paths::text(leaf->data().name());
    }
    return lines.join(QLatin1Char('\n'));
}

std::size_t CleanOutlineController::hiddenSelectedCount() const {
    if (m_model.filter().isEmpty())
        return 0;
    const auto shown = m_model.shownLeaves();
    return selectedCount() - std::size_t(std::count_if(shown.begin(), shown.end(), isTicked));
}

// False where there was nothing to change.
bool CleanOutlineController::set(const std::vector<SimpleTreeNode *> &leaves, bool ticked) {
    if (!m_enabled)
        return false;
    std::array<std::size_t, 6> changed{};
    for (SimpleTreeNode *leaf : leaves) {
        const CleanResultTree::Group *group = m_tree.groupOf(leaf);
        if (!group || !m_tree.setSelectState(leaf, ticked))
            continue;
        ++changed[group->category];
    }
    bool any = false;
    for (const CleanResultTree::Group &group : m_tree.groups()) {
        if (changed[group.category] == 0)
            continue;
        any = true;
        m_tree.refreshGroup(group);
        ScanViewController &controller = *m_tableControllers[group.category];
        if (group.node->data().selectNum() != 2) {
            controller.selectAll(ticked);
        } else {
            for (SimpleTreeNode *leaf : leaves) {
                if (leaf->nodeParent() == group.node.get())
                    controller.setSelected(leaf->data().name(), ticked);
            }
        }
    }
    if (any) {
        m_model.valuesChanged();
        Q_EMIT ticksChanged();
    }
    return any;
}

} // namespace brightsweep
