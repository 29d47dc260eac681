#pragma once

#include <QObject>

#include <string>

namespace brightsweep {

/// The thin front of the program's window, for AppDelegate. Main thread.
class AppController : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~AppController() override;

    /// Registers the defaults of the panels' animations. Once in a process, before any is read.
    static void initialize();

    /// Begins to watch the settings of the animation.
    void awakeFromNib();
    void openPreferences();
    /// Shows the window as a normal one, in the middle of the screen. The token, which may be
    /// empty, lets it come to the front.
    void showMainWindow(const std::string &activationToken = {});
    /// A setting has changed: those of the animation go to the window.
    void observeValueForKeyPath(const QString &keyPath);
};

} // namespace brightsweep
