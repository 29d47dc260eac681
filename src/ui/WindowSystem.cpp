#include "ui/WindowSystem.h"

#include <QGuiApplication>
#include <QWidget>

namespace brightsweep {

bool windowsPlaceThemselves() {
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

void showInFront(QWidget &window, const std::string &activationToken) {
    // On Wayland Qt reads the token from the environment and removes it there.
    if (!activationToken.empty() && !windowsPlaceThemselves())
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activationToken));
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace brightsweep
