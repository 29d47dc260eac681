#pragma once

#include "cleaning/CleanOutlineModel.h"
#include "cleaning/CleanResultTree.h"
#include "cleaning/HolderSearch.h"

#include <QObject>

#include <vector>

namespace brightsweep {

class ScanViewController;

/// The outline of results at work: the tree, its model, the rules of its check boxes, and the marks
/// of what running programs hold. Every tick goes to the row of that path in its category's
/// controller. Main thread; the controllers are the page's, in index order.
///
/// While a filter narrows the outline, a tick of a group or of the header reaches only the rows
/// that are shown: nothing goes that nobody saw.
class CleanOutlineController : public QObject {
    Q_OBJECT

public:
    explicit CleanOutlineController(std::vector<ScanViewController *> tableControllers,
                                    QObject *parent = nullptr);
    ~CleanOutlineController() override;

    CleanOutlineModel &model() { return m_model; }
    const CleanResultTree &tree() const { return m_tree; }

    /// Takes the controllers' rows and ticks over.
    void constructTree();
    /// Looks for what is in use, in the background.
    void markHolders();
    void setEnabled(bool enabled);

    /// A click on a check box: a leaf changes its tick, a group with anything ticked loses all, one
    /// with nothing gets all.
    void toggle(const QModelIndex &index);
    /// Sets the ticks of several rows at once; a group among them stands for its leaves.
    void setTicked(const QModelIndexList &rows, bool ticked);
    /// The check box of the header.
    void setAllSelectOrNoSelect(bool ticked);
    TickState allSelectState() const { return m_tree.changeAllSelectCheckBoxState(); }
    // -- Acts on one item; false for a group and where the desktop fails
    /// With the user's program for it.
    bool open(const QModelIndex &index) const;
    /// In the file manager.
    bool reveal(const QModelIndex &index) const;
    /// The paths of the rows' leaves, one a line, to show or to copy.
    QString pathText(const QModelIndexList &rows) const;

    /// The ticked leaves.
    std::size_t selectedCount() const { return m_tree.selectedCount(); }
    /// Those of them that the filter hides: a clean removes them too.
    std::size_t hiddenSelectedCount() const;

Q_SIGNALS:
    /// Ticks have changed, in the outline and in the controllers.
    void ticksChanged();
    void holdersFound(const std::unordered_map<std::string, std::string> &programOfPath);
    /// The tree was taken over anew, or marks were found.
    void reloaded();
    /// An icon flies from the row, or from the header where the index is invalid, to the trash: a
    /// path to look the icon up by, or an image's name.
    void flyToTrash(const QVariant &icon, const QModelIndex &from);

private:
    bool set(const std::vector<SimpleTreeNode *> &leaves, bool ticked);

    const std::vector<ScanViewController *> m_tableControllers;
    CleanResultTree m_tree;
    CleanOutlineModel m_model;
    HolderSearch m_holders;
    bool m_enabled = true;
};

} // namespace brightsweep
