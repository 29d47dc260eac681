#include "ui/ImageProvider.h"

#include "ui/DrawnImages.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <map>
#include <memory>

// The macro declares a function and stands outside every namespace for that.
static void initImages() {
    Q_INIT_RESOURCE(images);
}

namespace brightsweep {
namespace {

QString stem(const QString &name) {
    for (const auto ending : {QLatin1String(".png"), QLatin1String(".icns"), QLatin1String(".svg")})
        if (name.endsWith(ending))
            return name.chopped(ending.size());
    return name;
}

/// The drawing of a name, read once; null where there is none.
QSvgRenderer *drawing(const QString &name) {
    static std::map<QString, std::unique_ptr<QSvgRenderer>> drawings;
    const auto found = drawings.find(name);
    if (found != drawings.end())
        return found->second.get();
    initImages();
    const QString file = QStringLiteral(":/images/") + stem(name) + QStringLiteral(".svg");
    std::unique_ptr<QSvgRenderer> made;
    if (!stem(name).contains(QLatin1Char('/')) && QFile::exists(file))
        made = std::make_unique<QSvgRenderer>(file);
    if (made && !made->isValid())
        made.reset();
    return drawings.emplace(name, std::move(made)).first->second.get();
}

QRectF fitted(const QSizeF &size, const QRectF &area) {
    QRectF place(QPointF(), size.scaled(area.size(), Qt::KeepAspectRatio));
    place.moveCenter(area.center());
    return place;
}

/// Paints an image by name at whatever size a button or a list asks for.
class NamedImageEngine : public QIconEngine {
public:
    explicit NamedImageEngine(QString name) : m_name(std::move(name)) {}

    void paint(QPainter *painter, const QRect &area, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        if (mode == QIcon::Disabled)
            painter->setOpacity(painter->opacity() * disabledOpacity);
        paintImage(*painter, m_name, area);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1.0);
    }

    // `size` is in device pixels here.
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal) override {
        if (mode != QIcon::Disabled)
            return pixmapNamed(m_name, size, 1.0);
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override {
        return imageSize(m_name).scaled(size, Qt::KeepAspectRatio);
    }

    QIconEngine *clone() const override { return new NamedImageEngine(*this); }
    QString key() const override { return QStringLiteral("NamedImageEngine"); }
    QString iconName() override { return m_name; }
    bool isNull() override { return false; }

private:
    static constexpr qreal disabledOpacity = 0.35;
    QString m_name;
};

} // namespace

bool imageExists(const QString &name) {
    return !drawnImageSize(name).isEmpty() || drawing(name) != nullptr;
}

QSize imageSize(const QString &name) {
    const QSize drawn = drawnImageSize(name);
    if (!drawn.isEmpty())
        return drawn;
    const QSvgRenderer *renderer = drawing(name);
    return renderer ? renderer->defaultSize() : QSize();
}

bool paintImage(QPainter &painter, const QString &name, const QRectF &area) {
    const QSize size = imageSize(name);
    if (size.isEmpty())
        return false;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (QSvgRenderer *renderer = drawing(name)) {
        const bool fills = renderer->elementExists(QStringLiteral("stretch"));
        renderer->setAspectRatioMode(fills ? Qt::IgnoreAspectRatio : Qt::KeepAspectRatio);
        renderer->render(&painter, fills ? area : fitted(size, area));
    } else
        paintDrawnImage(painter, name, fitted(size, area));
    painter.restore();
    return true;
}

QPixmap pixmapNamed(const QString &name, QSize logical, qreal devicePixelRatio) {
    if (logical.isEmpty() || !imageExists(name))
        return QPixmap();
    const QString key = QStringLiteral("brightsweep/%1/%2x%3@%4")
                            .arg(name)
                            .arg(logical.width())
                            .arg(logical.height())
                            .arg(devicePixelRatio);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    pixmap = QPixmap((QSizeF(logical) * devicePixelRatio).toSize());
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paintImage(painter, name, QRectF(QPointF(), QSizeF(logical)));
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QIcon imageNamed(const QString &name) {
    return imageExists(name) ? QIcon(new NamedImageEngine(name)) : QIcon();
}

} // namespace brightsweep
