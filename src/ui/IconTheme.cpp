#include "ui/IconTheme.h"

#include "ui/Theme.h"

#include <QFileInfo>
#include <QImage>

#include <algorithm>
#include <cmath>

namespace brightsweep {

namespace {

constexpr int looksAt = 24; // pixels
constexpr double leastContrast = 2;

double linear(double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

bool isInstalled(const QString &theme) {
    const QStringList places = QIcon::themeSearchPaths();
    return std::any_of(places.begin(), places.end(), [&](const QString &place) {
        return QFileInfo::exists(place + u'/' + theme + QStringLiteral("/index.theme"));
    });
}

} // namespace

void useDarkIconTheme() {
    const QString name = QIcon::themeName();
    if (name.isEmpty() || name.endsWith(QLatin1String("dark"), Qt::CaseInsensitive))
        return;
    for (const auto ending : {QLatin1String("-dark"), QLatin1String("-Dark")}) {
        if (isInstalled(name + ending)) {
            QIcon::setThemeName(name + ending);
            return;
        }
    }
}

bool isSeenOnGround(const QIcon &icon) {
    const QImage image = icon.pixmap(looksAt, looksAt).toImage();
    double sum = 0;
    double weight = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            sum += luminance(color) * color.alphaF();
            weight += color.alphaF();
        }
    }
    if (weight <= 0)
        return false;
    const double ground = luminance(theme::window()) + 0.05;
    const double mean = sum / weight + 0.05;
    return std::max(ground, mean) / std::min(ground, mean) >= leastContrast;
}

} // namespace brightsweep
