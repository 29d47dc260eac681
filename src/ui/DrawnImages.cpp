#include "ui/DrawnImages.h"

#include "ui/Theme.h"

#include <QFont>
#include <QPainter>
#include <QPainterPath>

#include <array>
#include <cmath>
#include <numbers>
#include <optional>

namespace brightsweep {
namespace {

struct Family {
    QLatin1String affix; // what stands before or after the number
    int first;
    int last;
    QSize size;
    void (*paint)(QPainter &painter, int number);
};

void fillBar(QPainter &painter, QSizeF size, int percentage, const QColor &track,
             const QColor &fill) {
    const QRectF whole(QPointF(), size);
    const qreal round = size.height() / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(track);
    painter.drawRoundedRect(whole, round, round);
    if (percentage == 0)
        return;
    // Never narrower than its round ends.
    const qreal width = std::max(size.height(), size.width() * percentage / 100);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(0, 0, width, size.height()), round, round);
}

QColor trackColor() {
    return theme::appearance().highContrast ? QColor(90, 90, 90) : QColor(70, 74, 90);
}

constexpr QSize gaugeSize(22, 22);
constexpr QSize rowBarSize(200, 6);
constexpr QSize progressBarSize(150, 4);
constexpr QSize frameSize(30, 30);
constexpr QSize spinnerSize(24, 24);

/// A dark disk with a light rim stands out on a light tray and on a dark one.
void paintGauge(QPainter &painter, int percentage, bool warns) {
    const QRectF disk(0.75, 0.75, 20.5, 20.5);
    const QColor alarm(215, 38, 32);
    painter.setPen(warns ? QPen(alarm, 0.8) : QPen(QColor(255, 255, 255, 150), 0.8));
    painter.setBrush(warns ? alarm : QColor(39, 41, 51));
    painter.drawEllipse(disk);

    const qreal inset = warns ? 2.4 : 1.6;
    const QRectF ring = disk.adjusted(inset, inset, -inset, -inset);
    painter.setBrush(Qt::NoBrush);
    QPen pen(warns ? QColor(255, 255, 255, 80) : QColor(86, 90, 108), 1.9, Qt::SolidLine,
             Qt::FlatCap);
    painter.setPen(pen);
    painter.drawEllipse(ring);
    pen.setColor(warns ? QColor(Qt::white) : QColor(255, 214, 10));
    painter.setPen(pen);
    painter.drawArc(ring, 90 * 16, -qRound(percentage * 57.6));

    // Below this the digits would be a blur.
    constexpr qreal smallestWithDigits = 20;
    const qreal scale = painter.deviceTransform().m11();
    if (gaugeSize.width() * scale < smallestWithDigits)
        return;
    QFont font = theme::font(12, true);
    font.setPixelSize(percentage < 100 ? 9 : 7);
    font.setLetterSpacing(QFont::PercentageSpacing, 92);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(disk, Qt::AlignCenter, QString::number(percentage));
}

/// A comet of dots on a circle, with grains that fall into its middle.
void paintSweep(QPainter &painter, int frame) {
    constexpr int frames = 18;
    constexpr int dots = 22;
    constexpr qreal circle = 11;
    painter.setPen(Qt::NoPen);
    const QPointF middle(15, 15);
    const auto at = [middle](qreal turn, qreal distance) {
        const qreal angle = turn * 2 * std::numbers::pi;
        return middle + QPointF(std::sin(angle), -std::cos(angle)) * distance;
    };
    const qreal turn = qreal(frame) / frames;
    QColor color = theme::accent();
    for (int dot = 0; dot < dots; ++dot) {
        const qreal rest = 1.0 - qreal(dot) / dots;
        color.setAlphaF(static_cast<float>(rest));
        painter.setBrush(color);
        const qreal radius = 0.4 + 1.7 * rest;
        painter.drawEllipse(at(turn - dot * 0.02, circle), radius, radius);
    }
    for (int grain = 0; grain < 3; ++grain) {
        const qreal path = std::fmod(turn + grain / 3.0, 1.0);
        painter.setBrush(theme::text());
        painter.drawEllipse(at(grain / 3.0 + path * 0.25, 8 * (1 - path)), 1.3 * (1 - path) + 0.3,
                            1.3 * (1 - path) + 0.3);
    }
}

void paintSpinner(QPainter &painter, int frame) {
    constexpr int spokes = 12;
    painter.translate(12, 12);
    QColor color = theme::text();
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const int age = (frame - 1 - spoke + spokes) % spokes;
        color.setAlphaF(static_cast<float>(1.0 - 0.075 * age));
        painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(spoke * 360.0 / spokes);
        painter.drawLine(QPointF(0, -5.5), QPointF(0, -9.5));
        painter.restore();
    }
}

// An affix that ends another comes after it.
const std::array numbered{
    Family{QLatin1String("%-1"), 0, 100, gaugeSize,
           [](QPainter &painter, int number) { paintGauge(painter, number, true); }},
    Family{QLatin1String("%"), 0, 100, gaugeSize,
           [](QPainter &painter, int number) { paintGauge(painter, number, false); }},
    Family{QLatin1String("-1"), 0, 100, rowBarSize,
           [](QPainter &painter, int number) {
               fillBar(painter, rowBarSize, number, trackColor(), theme::danger());
           }},
    Family{QLatin1String("_progress_bar"), 0, 100, progressBarSize,
           [](QPainter &painter, int number) {
               fillBar(painter, progressBarSize, number, trackColor(), theme::accent());
           }},
    Family{QLatin1String(""), 0, 100, rowBarSize,
           [](QPainter &painter, int number) {
               fillBar(painter, rowBarSize, number, trackColor(), theme::accent());
           }},
};

const std::array framed{
    Family{QLatin1String("clean_"), 1, 18, frameSize, paintSweep},
    Family{QLatin1String("loading_"), 1, 12, spinnerSize, paintSpinner},
};

struct Found {
    const Family &family;
    int number;
};

std::optional<Found> found(const Family &family, QStringView digits) {
    for (const QChar digit : digits)
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9'))
            return std::nullopt;
    bool isNumber = false;
    const int number = digits.toInt(&isNumber);
    if (!isNumber || number < family.first || number > family.last)
        return std::nullopt;
    return Found{family, number};
}

std::optional<Found> find(const QString &name) {
    QStringView stem(name);
    if (stem.endsWith(QLatin1String(".png")))
        stem.chop(4);
    for (const Family &family : framed)
        if (stem.startsWith(family.affix))
            return found(family, stem.mid(family.affix.size()));
    for (const Family &family : numbered)
        if (stem.endsWith(family.affix))
            return found(family, stem.chopped(family.affix.size()));
    return std::nullopt;
}

} // namespace

QSize drawnImageSize(const QString &name) {
    const auto image = find(name);
    return image ? image->family.size : QSize();
}

void paintDrawnImage(QPainter &painter, const QString &name, const QRectF &area) {
    const auto image = find(name);
    if (!image)
        return;
    const QSizeF size = image->family.size;
    painter.save();
    painter.translate(area.topLeft());
    painter.scale(area.width() / size.width(), area.height() / size.height());
    image->family.paint(painter, image->number);
    painter.restore();
}

} // namespace brightsweep
