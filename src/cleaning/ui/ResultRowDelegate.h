#pragma once

#include "cleaning/ui/FileIcons.h"

#include <QStyledItemDelegate>

namespace brightsweep {

/// What a result row is made of; a list names the columns and roles of its own model.
struct ResultRowForm {
    int checkColumn = 0;
    int nameColumn = 1;
    int spannedColumn = -1; ///< empty but in groups, so that a name may reach into it
    int openColumn = -1;    ///< holds the button that opens the file manager
    int pathRole = -1;
    int directoryRole = -1;
    int failureRole = -1;
    int holderRole = -1; ///< -1: the model has none
    int groupRole = -1;
    int categoryRole = -1; ///< -1: the icon of a group is a file's, and its role holds a path
    int iconRole = -1;     ///< of a group, its name in the icon theme
    int noteRole = -1;     ///< what stands out behind a name, with the folder behind it
    int imageRole = -1;    ///< of the open column
    int reasonRole = -1;
    int shareRole = -1;
    double fontSize = 12;
    double selectedFontSize = 13.5;
    bool isBold = false;
};

/// Paints the rows of the outline and of the category lists: check box, icon, name with its folder,
/// and what is to be said of the item, over a bar as long as its share. Everything is plain text. A
/// row that failed says why in two or three words; they are whole in the tool tip.
class ResultRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit ResultRowDelegate(const ResultRowForm &form, QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// What a cell takes for this text, however it stands out.
    int widthOf(const QString &text) const;

Q_SIGNALS:
    void openClicked(const QModelIndex &index);

protected:
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;
    virtual void paintName(QPainter &painter, const QRect &area, bool isSelected,
                           const QModelIndex &index) const;

private:
    QRect spanned(const QStyleOptionViewItem &option) const;
    void paintSpanned(QPainter &painter, const QStyleOptionViewItem &option,
                      const QModelIndex &index) const;
    void paintGroup(QPainter &painter, const QRect &area, bool isSelected,
                    const QModelIndex &index) const;
    void paintGround(QPainter &painter, const QRect &area, const QStyleOptionViewItem &option,
                     const QModelIndex &index) const;
    QFont font(bool isSelected) const;

    const ResultRowForm m_form;
    mutable FileIcons m_icons;
};

} // namespace brightsweep
