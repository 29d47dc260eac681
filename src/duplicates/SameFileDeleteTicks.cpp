// The ticks of the duplicates page.

#include "core/Texts.h"
#include "duplicates/DuplicateNodes.h"
#include "duplicates/FreedBytes.h"
#include "duplicates/SameFileDeleteViewController.h"

#include <algorithm>
#include <utility>

namespace brightsweep {

std::size_t SameFileDeleteViewController::hiddenSelectedCount() const {
    if (m_filter.isEmpty() && m_remberWitchSelect == 0)
        return 0;
    std::size_t hidden = 0;
    const std::int32_t type = duplicateLists[std::size_t(m_remberWitchSelect)].fileType;
    for (const auto &leaf : m_selection.allSelectNumArr()) {
        const bool isListed = type == 0 || dataOf(*leaf->nodeParent()).fileType() == type;
        hidden += isListed && isShown(*leaf) ? 0 : 1;
    }
    return hidden;
}

// Ticks of many files are for what has a row.
DuplicateSelection::IsShown SameFileDeleteViewController::shownOnly() const {
    if (m_filter.isEmpty())
        return nullptr;
    return [this](const TreeNode &leaf) { return isShown(leaf); };
}

void SameFileDeleteViewController::setSelectState(const TreeNode::Pointer &node) {
    if (refuseUnless(m_state == State::Results, "a tick"))
        return;
    if (dataOf(*node).isGroup()) {
        m_selection.clickGroup(node, shownOnly());
    } else if (dataOf(*node).selectNum() == 1) {
        m_selection.untickLeaf(node);
    } else if (!m_selection.tickLeaf(node)) {
        m_askedAbout = node;
        Q_EMIT askAboutLastFile(node);
        return;
    }
    ticksChanged();
    if (dataOf(*node).selectNum() != 0)
        Q_EMIT ticked(node);
}

void SameFileDeleteViewController::setSelectState(const TreeNode::List &nodes) {
    if (refuseUnless(m_state == State::Results, "a tick"))
        return;
    const bool ticks = std::any_of(nodes.begin(), nodes.end(),
                                   [](const auto &node) { return dataOf(*node).selectNum() == 0; });
    m_selection.setTicked(nodes, ticks, shownOnly());
    ticksChanged();
}

void SameFileDeleteViewController::alertEnded(bool ok) {
    const auto leaf = std::exchange(m_askedAbout, nullptr);
    if (!leaf || !ok || refuseUnless(m_state == State::Results, "a tick"))
        return;
    m_selection.tickLastLeaf(leaf);
    ticksChanged();
    Q_EMIT ticked(leaf);
}

void SameFileDeleteViewController::setAllSelectOrNoSelect(bool on) {
    if (refuseUnless(m_state == State::Results, "a tick") || !treeData() ||
        treeData()->numberOfChildren() == 0)
        return;
    m_selection.setAllSelectOrNoSelect(*treeData(), on, shownOnly());
    ticksChanged();
}

void SameFileDeleteViewController::tickAllBut(KeepRule rule, const TreeNode::Pointer &group) {
    if (refuseUnless(m_state == State::Results, "a tick") || !treeData())
        return;
    m_selection.tickAllBut(group ? TreeNode::List{group} : treeData()->children(), rule,
                           shownOnly());
    ticksChanged();
}

void SameFileDeleteViewController::keepOnly(const TreeNode::Pointer &leaf) {
    if (refuseUnless(m_state == State::Results && leaf->nodeParent(), "a tick"))
        return;
    m_selection.keepOnly(leaf, shownOnly());
    ticksChanged();
}

void SameFileDeleteViewController::tickAllOutside(const std::filesystem::path &folder) {
    if (refuseUnless(m_state == State::Results, "a tick") || !treeData())
        return;
    m_selection.tickAllOutside(treeData()->children(), folder, shownOnly());
    ticksChanged();
}

void SameFileDeleteViewController::undoTicks() {
    if (refuseUnless(canUndoTicks(), "an undo"))
        return;
    m_selection.undo();
    ticksChanged();
}

// What follows from every change: the box for all, the button, the title and the message.
void SameFileDeleteViewController::ticksChanged() {
    bool anyTicked = false;
    bool allTicked = treeData() && treeData()->numberOfChildren() > 0;
    for (std::int32_t i = 0; treeData() && i < treeData()->numberOfChildren(); ++i) {
        const std::int32_t state = dataOf(*treeData()->childAtIndex(i)).selectNum();
        anyTicked = anyTicked || state != 0;
        allTicked = allTicked && state == 1;
    }
    m_hasTicked = m_hasTicked || !m_selection.isEmpty();
    DuplicateControls controls = m_controls;
    controls.remove = m_state == State::Results && !m_selection.isEmpty();
    controls.allSelect = treeData() && treeData()->numberOfChildren() > 0;
    controls.allSelectState = !anyTicked  ? Qt::Unchecked
                              : allTicked ? Qt::Checked
                                          : Qt::PartiallyChecked;
    setControls(controls);
    renewTitle();
    Q_EMIT selectionChanged();
}

std::uint64_t SameFileDeleteViewController::freedBySelection() const {
    return freedBy(m_selection.allSelectNumArr());
}

QString SameFileDeleteViewController::selectionMessage() const {
    return m_hasTicked
               ? localizedText("%d of %d selected.")
                     .arg(readersNumber(m_selection.count()), readersNumber(m_frashAllFilesCount))
               : QString();
}

QString SameFileDeleteViewController::failureOf(const TreeNode *leaf) const {
    const auto found = m_failures.find(leaf);
    return found == m_failures.end() ? QString() : QString::fromStdString(found->second);
}

} // namespace brightsweep
