#include "volumes/ui/CustomStatusItemView.h"

#include "ui/ImageProvider.h"

#include <QImage>
#include <QPixmap>
#include <QtEndian>

#include <chrono>

namespace brightsweep {

namespace {

constexpr int sides[] = {16, 22, 24, 32, 48};
// The desktop answers later whether it shows items; an embedded window would only come and go.
constexpr std::chrono::milliseconds answerTime{400};

StatusImage drawn(const QString &name, int side) {
    const QImage image =
        pixmapNamed(name, QSize(side, side), 1).toImage().convertToFormat(QImage::Format_ARGB32);
    if (image.isNull())
        return {};
    StatusImage result{image.width(), image.height(), {}};
    result.argb.resize(std::size_t(image.width()) * std::size_t(image.height()) * 4);
    char *target = result.argb.data();
    for (int y = 0; y < image.height(); ++y, target += image.width() * 4)
        qToBigEndian<quint32>(image.constScanLine(y), image.width(), target);
    return result;
}

} // namespace

CustomStatusItemView::CustomStatusItemView(StatusItem &desktopItem, StatusItem &trayItem,
                                           QObject *parent)
    : QObject(parent), m_desktopItem(desktopItem), m_trayItem(trayItem) {
    for (StatusItem *const item : {&m_desktopItem, &m_trayItem})
        item->setHostHandler([this](bool) { chooseForm(); });
    m_answer.setSingleShot(true);
    m_answer.setInterval(answerTime);
    connect(&m_answer, &QTimer::timeout, this, &CustomStatusItemView::chooseForm);
}

CustomStatusItemView::~CustomStatusItemView() {
    for (StatusItem *const item : {&m_desktopItem, &m_trayItem}) {
        item->setActivatedHandler({});
        item->setHostHandler({});
    }
}

void CustomStatusItemView::setShown(bool shown) {
    if (m_shown == shown)
        return;
    m_shown = shown;
    m_desktopItem.setShown(shown);
    if (shown && !m_desktopItem.hostPresent())
        m_answer.start();
    else
        chooseForm();
}

void CustomStatusItemView::chooseForm() {
    if (!m_answer.isActive())
        m_trayItem.setShown(m_shown && !m_desktopItem.hostPresent());
    const bool present = hostPresent();
    // No answer yet is no "no".
    if ((m_answer.isActive() && !present) || m_hostSeen == present)
        return;
    m_hostSeen = present;
    if (m_hostHandler)
        m_hostHandler(present);
    Q_EMIT hostChanged(present);
}

bool CustomStatusItemView::hostPresent() const {
    return m_desktopItem.hostPresent() || m_trayItem.hostPresent();
}

void CustomStatusItemView::setImages(std::vector<StatusImage> images) {
    m_desktopItem.setImages(images);
    m_trayItem.setImages(std::move(images));
}

void CustomStatusItemView::setTitle(const QString &title) {
    m_desktopItem.setTitle(title);
    m_trayItem.setTitle(title);
}

void CustomStatusItemView::setToolTip(const QString &title, const QString &text) {
    m_desktopItem.setToolTip(title, text);
    m_trayItem.setToolTip(title, text);
}

void CustomStatusItemView::setActivatedHandler(
    std::function<void(const StatusActivation &)> handler) {
    m_desktopItem.setActivatedHandler(handler);
    m_trayItem.setActivatedHandler(std::move(handler));
}

void CustomStatusItemView::setHostHandler(std::function<void(bool present)> handler) {
    m_hostHandler = std::move(handler);
}

std::vector<StatusImage> CustomStatusItemView::drawnImages(const QString &name) {
    std::vector<StatusImage> images;
    for (const int side : sides) {
        StatusImage image = drawn(name, side);
        if (image.width > 0)
            images.push_back(std::move(image));
    }
    return images;
}

} // namespace brightsweep
