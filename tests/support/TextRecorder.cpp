#include "support/TextRecorder.h"

#include <QAbstractScrollArea>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QWidget>

namespace brightsweep::test {

namespace {

// Rows of a list and panels may be scrolled out at the upper and the lower edge.
constexpr double anywhere = 1e6;

class Engine final : public QPaintEngine {
public:
    Engine(QWidget &root, std::vector<TextRecorder::Drawn> &drawn)
        : QPaintEngine(AllFeatures), m_root(root), m_drawn(drawn) {}

    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState &) override {}
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}
    void drawImage(const QRectF &, const QImage &, const QRectF &,
                   Qt::ImageConversionFlags) override {}
    void drawPath(const QPainterPath &) override {}
    void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}
    Type type() const override { return User; }

    void drawTextItem(const QPointF &at, const QTextItem &item) override {
        const auto *const widget = dynamic_cast<QWidget *>(painter()->device());
        if (!widget || item.text().trimmed().isEmpty())
            return;
        const QTransform place = painter()->deviceTransform();
        QRectF room(widget->mapTo(&m_root, QPoint()), widget->size());
        if (painter()->hasClipping())
            room &= place.mapRect(painter()->clipBoundingRect());
        const QRectF shown = room;
        for (const QWidget *above = widget; above != &m_root; above = above->parentWidget()) {
            if (qobject_cast<QAbstractScrollArea *>(above->parentWidget())) {
                room.adjust(0, -anywhere, 0, anywhere);
                break;
            }
        }
        m_drawn.push_back({item.text(),
                           place.mapRect(QRectF(at.x(), at.y() - item.ascent(), item.width(),
                                                item.ascent() + item.descent())),
                           room, shown, painter()->pen().color()});
    }

private:
    QWidget &m_root;
    std::vector<TextRecorder::Drawn> &m_drawn;
};

class Device final : public QPaintDevice {
public:
    Device(QWidget &root, std::vector<TextRecorder::Drawn> &drawn)
        : m_root(root), m_engine(root, drawn) {}
    QPaintEngine *paintEngine() const override { return &m_engine; }

protected:
    int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
        case PdmWidth:
            return m_root.width();
        case PdmHeight:
            return m_root.height();
        case PdmDevicePixelRatio:
            return 1;
        case PdmDepth:
            return 32;
        default:
            return 96; // dots in an inch
        }
    }

private:
    const QWidget &m_root;
    mutable Engine m_engine;
};

} // namespace

TextRecorder::TextRecorder(QWidget &widget) {
    Device device(widget, m_drawn);
    widget.render(&device, {}, {}, QWidget::DrawChildren);
}

std::vector<std::string> TextRecorder::faults() const {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < m_drawn.size(); ++i) {
        const Drawn &one = m_drawn[i];
        const double tolerance = one.place.height() / 6; // accents and tails are seldom there
        if (one.place.left() < one.room.left() - 1 || one.place.right() > one.room.right() + 1 ||
            one.place.top() < one.room.top() - tolerance ||
            one.place.bottom() > one.room.bottom() + tolerance)
            lines.push_back("cut: " + one.text.toStdString());
        const QRectF core = one.place.adjusted(2, tolerance, -2, -tolerance) & one.shown;
        for (std::size_t other = 0; other < i; ++other) {
            // What stands out is painted twice, with an effect or over the neighbouring cell.
            if (m_drawn[other].text != one.text &&
                (m_drawn[other].place & m_drawn[other].shown).intersects(core))
                lines.push_back("over each other: " + one.text.toStdString() + " and " +
                                m_drawn[other].text.toStdString());
        }
    }
    return lines;
}

bool TextRecorder::shows(const QString &text) const {
    for (const Drawn &drawn : m_drawn) {
        if (drawn.text == text)
            return true;
    }
    return false;
}

} // namespace brightsweep::test
