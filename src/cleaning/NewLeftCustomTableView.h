#pragma once

#include <QObject>
#include <QString>

#include <array>

namespace brightsweep {

/// One entry of the short left list.
struct NewMyMacListCell {
    int rowTag = 0; ///< the row that a click selects
    bool isClicked = false;
    QString title;
    int y = 0; ///< from the bottom

    QString listImage() const;
};

/// The short left list, which stays hidden: the overview and the categories of the user. Main
/// thread.
class NewLeftCustomTableView : public QObject {
    Q_OBJECT

public:
    explicit NewLeftCustomTableView(QObject *parent = nullptr);
    ~NewLeftCustomTableView() override;

    const std::array<NewMyMacListCell, 5> &allListArr() const { return m_cells; }
    bool isHidden() const { return true; }
    /// The row of a position in the list.
    static int reSetTag(int position);
    /// Posts "updateRowForBackGround" and "shouldSelectRow".
    void mouseDown(int position);

Q_SIGNALS:
    void changed();

private:
    void clickedStateShow(int rowTag);

    std::array<NewMyMacListCell, 5> m_cells;
};

} // namespace brightsweep
