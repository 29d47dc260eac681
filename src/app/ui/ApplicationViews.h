#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class QAction;

namespace brightsweep {

class AboutPanel;
class AppDelegate;
class BubbleView;
class CustomStatusItemView;
class MainWindow;
class StatusPopup;

/// Everything that the user sees of the resident program, bound to the delegate and to the window's
/// controller, which both outlive it. It shows what they say and calls what the user did. Main
/// thread.
class ApplicationViews : public QObject {
    Q_OBJECT

public:
    ApplicationViews(AppDelegate &delegate, CustomStatusItemView &statusItem,
                     QObject *parent = nullptr);
    ~ApplicationViews() override;

    MainWindow &mainWindow() { return *m_mainWindow; }

private:
    void fillApplicationMenu();
    QAction *addMenuItem(const char *name, const QString &shortcut, void (AppDelegate::*act)());
    void askForQuickClean();
    void showAlert(const QString &text);
    void showAbout();
    void showPopupAtWindow();
    void closeAll();

    AppDelegate &m_delegate;
    std::unique_ptr<MainWindow> m_mainWindow;
    std::unique_ptr<StatusPopup> m_popup;
    std::unique_ptr<BubbleView> m_bubbles;
    QPointer<AboutPanel> m_about;
};

} // namespace brightsweep
