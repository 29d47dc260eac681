#pragma once

#include "platform/StatusItem.h"

#include <QByteArray>
#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QList>
#include <QObject>

#include <functional>

namespace brightsweep {

/// One picture as the bus carries it.
struct StatusPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;
    bool operator==(const StatusPixmap &) const = default;
};
using StatusPixmaps = QList<StatusPixmap>;

/// A tool tip as the bus carries it: the title is plain, the text is markup.
struct StatusToolTip {
    QString iconName;
    StatusPixmaps pixmaps;
    QString title;
    QString text;
    bool operator==(const StatusToolTip &) const = default;
};

QDBusArgument &operator<<(QDBusArgument &argument, const StatusPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, StatusPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &argument, const StatusToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, StatusToolTip &toolTip);

/// The item's object on the bus. What it shows is set from outside and read by the hosts; each
/// signal tells the hosts to read again. It exports no menu: the hosts ask for one by a call.
class StatusNotifierObject : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title MEMBER title)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconName READ noName CONSTANT)
    Q_PROPERTY(brightsweep::StatusPixmaps IconPixmap MEMBER images)
    Q_PROPERTY(QString OverlayIconName READ noName CONSTANT)
    Q_PROPERTY(brightsweep::StatusPixmaps OverlayIconPixmap READ noImages CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ noName CONSTANT)
    Q_PROPERTY(brightsweep::StatusPixmaps AttentionIconPixmap READ noImages CONSTANT)
    Q_PROPERTY(QString AttentionMovieName READ noName CONSTANT)
    Q_PROPERTY(brightsweep::StatusToolTip ToolTip MEMBER toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)

public:
    explicit StatusNotifierObject(QObject *parent);

    QString title;
    StatusPixmaps images;
    StatusToolTip toolTip;
    std::function<void(const StatusActivation &)> activated;

    QString category() const { return QStringLiteral("SystemServices"); }
    QString id() const { return QStringLiteral("brightsweep"); }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString noName() const { return {}; }
    StatusPixmaps noImages() const { return {}; }
    bool itemIsMenu() const { return false; }

public Q_SLOTS:
    void Activate(int x, int y) { activate(x, y); }
    void SecondaryActivate(int x, int y) { activate(x, y); }
    void ContextMenu(int x, int y) { activate(x, y); }
    void Scroll(int, const QString &) {}
    /// Comes before the click that it is for.
    void ProvideXdgActivationToken(const QString &token) { m_token = token.toStdString(); }

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void NewStatus(const QString &status);

private:
    void activate(int x, int y);

    std::string m_token;
};

} // namespace brightsweep

Q_DECLARE_METATYPE(brightsweep::StatusPixmap)
Q_DECLARE_METATYPE(brightsweep::StatusToolTip)
