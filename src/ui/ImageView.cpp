#include "ui/ImageView.h"

#include "ui/ImageProvider.h"

#include <QAbstractButton>
#include <QPainter>

namespace brightsweep {

ImageView::ImageView(QWidget *parent) : QWidget(parent) {}

ImageView::ImageView(const QString &name, QWidget *parent) : ImageView(parent) {
    setImageName(name);
    resize(sizeHint());
}

void ImageView::setImageName(const QString &name) {
    if (name == m_name && m_pixmap.isNull())
        return;
    m_name = name;
    m_pixmap = QPixmap();
    updateGeometry();
    update();
}

void ImageView::setPixmap(const QPixmap &pixmap) {
    m_name.clear();
    m_pixmap = pixmap;
    updateGeometry();
    update();
}

QSize ImageView::sizeHint() const {
    return m_pixmap.isNull() ? imageSize(m_name) : m_pixmap.deviceIndependentSize().toSize();
}

void ImageView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    if (m_pixmap.isNull()) {
        paintImage(painter, m_name, rect());
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QRectF place(QPointF(), m_pixmap.deviceIndependentSize().scaled(size(), Qt::KeepAspectRatio));
    place.moveCenter(QRectF(rect()).center());
    painter.drawPixmap(place, m_pixmap, m_pixmap.rect());
}

void showImage(QWidget *view, const QString &name) {
    if (auto *image = qobject_cast<ImageView *>(view))
        image->setImageName(name);
    else if (auto *button = qobject_cast<QAbstractButton *>(view))
        button->setIcon(imageNamed(name));
}

} // namespace brightsweep
