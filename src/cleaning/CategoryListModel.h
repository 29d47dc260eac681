#pragma once

#include <QAbstractTableModel>

#include <optional>
#include <string>
#include <unordered_map>

namespace brightsweep {

class ScanViewController;
struct CleanFileInfo;

/// The list of one category: the table side of a ScanViewController. Main thread; it outlives its
/// controller's runs, and reload() follows each of them.
class CategoryListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { checkBox, Name, Size, openFiled, columns };
    enum Role {
        PathRole = Qt::UserRole, ///< in the form of paths::toVariant()
        IconRole,                ///< the path to look the icon up by, in the same form
        PrimaryTextRole,
        SecondaryTextRole,
        FailureRole,
        ReasonRole,   ///< the key of the same in two or three words
        HolderRole,   ///< the program that holds something of the item open; empty where none does
        ShareRole,    ///< in the category, from 0 to 1
        FontSizeRole, ///< 12, of the selected row 13.5
        ImageRole,    ///< of the column that opens the file manager
        IsDirectoryRole, ///< as the scan found it
    };

    /// The category is the one whose state the list writes.
    CategoryListModel(ScanViewController &controller, unsigned category, QObject *parent = nullptr);

    /// The controller's rows, or their ticks, are other ones now.
    void reload();
    /// By the paths of items the programs that hold something of them open.
    void setHolders(std::unordered_map<std::string, std::string> programOfPath);
    /// While false no tick and no other order is taken.
    void setEnabled(bool enabled) { m_enabled = enabled; }

    /// A cell of the column of ticks in that state; the reply is the cell's new one. Only a cell
    /// that is on posts selectedRowInFastCleanNotification, for the flight into the trash.
    int CellClick(int row, int state);
    /// Opens the folder that holds the item; of a plain folder the folder itself.
    bool openFinder(int row);
    /// Sets the ticks of several rows at once, as one change.
    void setTicked(const QModelIndexList &rows, bool ticked);
    /// The row of that exact path.
    std::optional<int> rowOf(const std::string &path) const;
    /// The check box of the header.
    void cleanShowSelectNumInBottom(bool state);
    void setAllCheckBoxSelect();
    void setNoCheckBoxSelect();
    /// Counts the ticked rows, sets the header's box and writes the state of the category; that of
    /// an empty list stays.
    void getSelectAllOrNull();
    void changeCheckBoxInUserDefaultsWithNumber(int number);
    /// The row that stands out.
    bool shouldSelectRow(int row);
    static bool shouldSelectTableColumn(int column);
    int selectRowNum() const { return m_selectRowNum; }
    bool selectButton() const { return m_selectButton; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

Q_SIGNALS:
    void selectButtonChanged(bool on);

private:
    void setSelectButton(bool on);
    void selectAll(bool ticked);

    QString holderOf(const CleanFileInfo &row) const;
    QString holderWords(const CleanFileInfo &row) const;

    ScanViewController &m_controller;
    std::unordered_map<std::string, std::string> m_holders;
    int m_rows = 0;
    int m_selectRowNum = -1;
    const unsigned aTag; // the category
    bool m_selectButton = false;
    bool m_enabled = true;
    bool isSlected = false;
};

} // namespace brightsweep
