#pragma once

#include <QAbstractButton>
#include <QWidget>

#include <vector>

class QHBoxLayout;

namespace brightsweep {

/// One item of a toolbar: an image above its label. Every item is a Tab stop; the arrow keys go
/// from item to item, Space and Enter press. Main thread.
class PanelToolBarItem : public QAbstractButton {
    Q_OBJECT

public:
    /// The label may be empty; the accessible name tells then what the item is.
    PanelToolBarItem(const QString &imageName, const QString &label, const QString &accessibleName,
                     QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QString m_imageName;
};

/// The row of items along the top of the main window. Items stand in the order of adding; what
/// follows the flexible space stands at the right edge. Which item is checked is told from outside.
class PanelToolBar : public QWidget {
    Q_OBJECT

public:
    explicit PanelToolBar(QWidget *parent = nullptr);

    /// The item, which the toolbar owns. A checkable item stands for a panel.
    PanelToolBarItem *addItem(const QString &identifier, const QString &label,
                              const QString &imageName, const QString &accessibleName,
                              bool checkable);
    void addFlexibleSpace();
    void addSpace();

    /// Checks the item and no other. One that stands for no panel changes nothing.
    void setSelectedItemIdentifier(const QString &identifier);
    PanelToolBarItem *item(const QString &identifier) const;

Q_SIGNALS:
    void pressed(const QString &identifier);

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QHBoxLayout *m_layout;
    std::vector<std::pair<QString, PanelToolBarItem *>> m_items;
    QString m_selected;
    bool m_settingState = false;
};

} // namespace brightsweep
