#pragma once

#include <QHash>
#include <QString>
#include <QWidget>

#include <functional>

class QMenu;
class QPropertyAnimation;
class QStackedLayout;
class QTimer;

namespace brightsweep {

class DBPrefsWindowController;
class PanelToolBar;
class PanelToolBarItem;

/// The program's one window: a toolbar along the top and the panel on show below it. Which panel
/// that is, the controller says; a panel is made when it is first shown and then kept. Closing
/// hides the window. Its size is the user's and remembered; panels state their least size by their
/// size hint. Main thread; the controller outlives it.
class MainWindow : public QWidget {
    Q_OBJECT

public:
    /// Makes the panel of an identifier; never null.
    using PanelMaker = std::function<QWidget *(const QString &identifier, QWidget *parent)>;

    MainWindow(DBPrefsWindowController &controller, PanelMaker panelMaker);

    /// The menu behind the menu button and F10; empty until somebody fills it.
    QMenu &applicationMenu() { return *m_menu; }
    /// Puts the popup's button into the toolbar, or takes it away: there is a tray, or none.
    void setPopupButtonShown(bool shown);
    /// The lower edge of the popup's button, or of the toolbar, on the screen.
    QPoint popupPoint() const;

    QWidget *currentPanel() const;

Q_SIGNALS:
    void popupRequested();
    void firstFramePainted();
    /// Colours and images are others now.
    void lookChanged();

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void ensureToolBar();
    void displayPanel(const QString &identifier, bool animate);
    QSize fittingScreen(const QSize &panel) const;
    void resizeToPanel(const QSize &least, bool animate);
    void comeForward();
    void moveToCentre();
    void keepOnScreen();
    void setLevel(int levelKey);
    void openApplicationMenu();
    void rememberSize();

    DBPrefsWindowController &m_controller;
    PanelMaker m_panelMaker;
    PanelToolBar *m_toolbar;
    PanelToolBarItem *m_menuButton = nullptr;
    PanelToolBarItem *m_popupButton = nullptr;
    bool m_popupButtonShown = false;
    QMenu *m_menu;
    QWidget *contentSubview;
    QStackedLayout *m_panels;
    QHash<QString, QWidget *> m_panelViews;
    QPropertyAnimation *viewAnimation;
    QTimer *m_sizeSettled;
    bool m_painted = false;
};

} // namespace brightsweep
