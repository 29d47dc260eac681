#include "platform/linux/StatusNotifierObject.h"

#include <QDBusMetaType>

#include <utility>

namespace brightsweep {

QDBusArgument &operator<<(QDBusArgument &argument, const StatusPixmap &pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.bytes;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StatusPixmap &pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const StatusToolTip &toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StatusToolTip &toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

StatusNotifierObject::StatusNotifierObject(QObject *parent) : QDBusAbstractAdaptor(parent) {
    qDBusRegisterMetaType<StatusPixmap>();
    qDBusRegisterMetaType<StatusPixmaps>();
    qDBusRegisterMetaType<StatusToolTip>();
}

void StatusNotifierObject::activate(int x, int y) {
    StatusActivation activation{x, y, x != 0 || y != 0, std::exchange(m_token, {})};
    // The host has its answer before anything is opened.
    QMetaObject::invokeMethod(
        this,
        [this, activation = std::move(activation)] {
            if (activated)
                activated(activation);
        },
        Qt::QueuedConnection);
}

} // namespace brightsweep
