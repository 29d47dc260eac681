#pragma once

#include "results/TreeNode.h"

#include <QToolButton>

class QMenu;

namespace brightsweep {

class SameFileDeleteViewController;

/// The button above the groups whose menu ticks by a rule, for all groups that are shown, and takes
/// the last ticks of many files back. The page outlives it. Main thread.
class TickMenu : public QToolButton {
    Q_OBJECT

public:
    explicit TickMenu(SameFileDeleteViewController &page, QWidget *parent = nullptr);

    /// The rules for one group, or without one for all that are shown.
    static void addRules(QMenu &menu, SameFileDeleteViewController &page,
                         const TreeNode::Pointer &group);

private:
    void open();

    SameFileDeleteViewController &m_page;
};

} // namespace brightsweep
