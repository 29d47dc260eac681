#pragma once

#include "cleaning/TableViewCellItemObj.h"

#include <QAbstractListModel>
#include <QStringList>

#include <array>
#include <cstdint>
#include <vector>

namespace brightsweep {

/// The key of a row's text in the left list; "My Mac" for a row without one.
QString getLeftCellTitle(int row);

/// The left list of the clean page: the overview in row 0, the six categories in rows 1 to 6. Main
/// thread. Its found sizes are fed through observeFoundText() alone, and the page does not bind it.
class CustomTableView : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        IconImageRole = Qt::UserRole,
        BackgroundImageRole,
        ProgressImageRole,
        FoundTextRole,
        CheckImageRole, ///< empty for the overview
    };
    /// The number of finished cleans that stands for all of them.
    static constexpr int cleanIsFinished = 101;

    explicit CustomTableView(QObject *parent = nullptr);
    ~CustomTableView() override;

    void comeBackStringValue();
    /// The six found sizes added up, in words; "0.00KB" for nothing.
    QString getTotalSize() const;
    /// The image of the share of the ticked sizes that has gone.
    QString getTotalSizeImage() const;
    /// False for row 7, which leads nowhere, and while rows are not enabled. Any other row posts
    /// "shouldSelectRow".
    bool shouldSelectRow(int row);
    /// A click on the check box of row 1 to 6: stores the opposite state, a part becoming none, and
    /// posts "changeCheckBox".
    void checkBoxClicked(int tag);
    /// What the ticks of the categories come to: 0 none, 1 all, 2 part.
    void showStates(const std::array<int, 6> &states);
    /// While false no other row is taken; during a clean.
    void setRowsEnabled(bool enabled) { m_rowsEnabled = enabled; }
    /// While false no click on a check box is taken.
    void setTicksEnabled(bool enabled) { m_ticksEnabled = enabled; }
    /// Hears "changeCheckBox": the state before the click, and the row.
    void changeCheckBox(bool flag, int tag);

    void setProImageNum(int number);
    void setIsCleanInfo(bool isClean);
    void setTotalSelectNum(int number);
    void setSelectTotalSize(std::uint64_t bytes) { m_selectTotalSize = bytes; }
    int clickRow() const { return m_clickRow; }
    const QStringList &selectArray() const { return m_selectArray; }
    void reload();

    void observeFoundText(const QString &context, const QString &size);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    std::uint64_t totalBytes() const;
    QString foundText(int row) const;
    QString progressImage(int row) const;

    std::array<TableViewCellItemObj, 7> dataArr;
    std::array<QString, 6> m_foundSizes;
    QStringList m_selectArray;
    std::uint64_t m_selectTotalSize = 0;
    std::uint64_t m_totalScanSize = 0;
    int m_proImageNum = 0;
    int m_totalSelectNum = 0;
    int m_clickRow = 0;
    int m_updates = 0;
    bool m_isCleanInfo = false;
    bool m_rowsEnabled = true;
    bool m_ticksEnabled = true;
};

} // namespace brightsweep
