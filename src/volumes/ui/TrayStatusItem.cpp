#include "volumes/ui/TrayStatusItem.h"

#include <QApplication>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QtEndian>

#include <chrono>

namespace brightsweep {

namespace {

// Qt handles the same event a little later.
constexpr std::chrono::milliseconds hearsayTime{100};

// Of the X protocol: a tray tells all that it has come, and its window's end that it has gone.
constexpr char windowEventType[] = "xcb_generic_event_t";
constexpr int windowDestroyed = 17;
constexpr int clientMessage = 33;
constexpr int sentByClient = 0x80;

QImage imageOf(const StatusImage &image) {
    if (image.width <= 0 || image.height <= 0 ||
        image.argb.size() != std::size_t(image.width) * std::size_t(image.height) * 4)
        return {};
    QImage result(image.width, image.height, QImage::Format_ARGB32);
    const char *source = image.argb.data();
    for (int y = 0; y < image.height; ++y, source += image.width * 4)
        qFromBigEndian<quint32>(source, image.width, result.scanLine(y));
    return result;
}

} // namespace

TrayStatusItem::TrayStatusItem(QObject *parent) : QObject(parent) {
    m_watch.setInterval(hearsayTime);
    m_watch.setSingleShot(true);
    connect(&m_watch, &QTimer::timeout, this, &TrayStatusItem::renew);
}

TrayStatusItem::~TrayStatusItem() {
    if (QCoreApplication *const application = QCoreApplication::instance())
        application->removeNativeEventFilter(this);
}

// Nothing is asked while nothing happens.
bool TrayStatusItem::nativeEventFilter(const QByteArray &type, void *message, qintptr *) {
    if (m_shown && type == windowEventType) {
        const int event = *static_cast<const unsigned char *>(message) & ~sentByClient;
        if (event == clientMessage || event == windowDestroyed)
            m_watch.start();
    }
    return false;
}

bool TrayStatusItem::hostPresent() const {
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayStatusItem::setShown(bool shown) {
    if (shown && !m_shown)
        QCoreApplication::instance()->installNativeEventFilter(this);
    else if (!shown)
        QCoreApplication::instance()->removeNativeEventFilter(this);
    m_shown = shown;
    renew();
}

void TrayStatusItem::renew() {
    const bool present = m_shown && hostPresent();
    tellOfHost(present);
    if (present && !m_tray && !m_icon.isNull()) {
        // To Qt the icon is a window, and it closes an open menu before it shows another window.
        if (QApplication::activePopupWidget()) {
            m_watch.start();
            return;
        }
        m_tray = std::make_unique<QSystemTrayIcon>(m_icon);
        m_tray->setToolTip(toolTip());
        connect(m_tray.get(), &QSystemTrayIcon::activated, this, &TrayStatusItem::activated);
        m_tray->show();
    } else if (!present) {
        m_tray.reset();
    }
}

void TrayStatusItem::tellOfHost(bool present) {
    if (!m_shown || present == m_hostSeen)
        return;
    m_hostSeen = present;
    if (m_hostChanged)
        m_hostChanged(present);
}

void TrayStatusItem::activated() {
    StatusActivation activation;
    const QRect place = m_tray->geometry();
    const QScreen *const screen =
        place.isValid() ? QGuiApplication::screenAt(place.center()) : nullptr;
    if (screen) {
        // The edge of the icon that faces the middle of the screen: what opens stands beside it.
        const bool below = place.center().y() > screen->geometry().center().y();
        activation = {place.center().x(), below ? place.top() : place.bottom() + 1, true, {}};
    }
    if (m_activated)
        m_activated(activation);
}

void TrayStatusItem::setImages(std::vector<StatusImage> images) {
    m_icon = QIcon();
    for (const StatusImage &image : images) {
        const QImage drawn = imageOf(image);
        if (!drawn.isNull())
            m_icon.addPixmap(QPixmap::fromImage(drawn));
    }
    if (m_tray && !m_icon.isNull())
        m_tray->setIcon(m_icon);
    else
        renew();
}

QString TrayStatusItem::toolTip() const {
    QStringList lines{m_toolTipTitle.isEmpty() ? m_title : m_toolTipTitle, m_toolTipText};
    lines.removeAll(QString());
    // A tool tip that begins like a tag would be read as markup.
    return QStringLiteral("<qt>%1</qt>")
        .arg(lines.join(u'\n').toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")));
}

void TrayStatusItem::setTitle(const QString &title) {
    m_title = title;
    if (m_tray)
        m_tray->setToolTip(toolTip());
}

void TrayStatusItem::setToolTip(const QString &title, const QString &text) {
    if (title == m_toolTipTitle && text == m_toolTipText)
        return;
    m_toolTipTitle = title;
    m_toolTipText = text;
    if (m_tray)
        m_tray->setToolTip(toolTip());
}

void TrayStatusItem::setActivatedHandler(std::function<void(const StatusActivation &)> handler) {
    m_activated = std::move(handler);
}

void TrayStatusItem::setHostHandler(std::function<void(bool present)> handler) {
    m_hostChanged = std::move(handler);
}

} // namespace brightsweep
