#include "uninstall/ui/ApplicationIcons.h"

#include "foundation/SmallFile.h"
#include "ui/IconTheme.h"
#include "ui/Theme.h"

#include <QBuffer>
#include <QFile>
#include <QIcon>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

namespace brightsweep {

namespace {

constexpr std::array imageEndings = {".png", ".svg", ".xpm"};

// An image of the user's own files may be anything: it is read to a limit, and never larger than
// it is drawn.
QPixmap readImage(const QString &path, int pixels) {
    const auto text = readWholeFile(std::filesystem::path(QFile::encodeName(path).toStdString()));
    if (!text)
        return {};
    QByteArray bytes = QByteArray::fromStdString(*text);
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (size.isValid())
        reader.setScaledSize(size.scaled(pixels, pixels, Qt::KeepAspectRatio));
    return QPixmap::fromImage(reader.read());
}

QIcon iconOf(const QString &name, int pixels) {
    if (name.startsWith(u'/'))
        return QIcon(readImage(name, pixels));
    QString bare = name;
    for (const char *const ending : imageEndings) {
        if (bare.endsWith(QLatin1String(ending)))
            bare.chop(4);
    }
    return bare.isEmpty() ? QIcon() : QIcon::fromTheme(bare);
}

void paintOnPlate(QPainter &painter, const QIcon &icon, int side) {
    QColor plate = theme::text();
    plate.setAlphaF(0.85F);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(plate);
    painter.drawRoundedRect(QRect(0, 0, side, side), theme::radius, theme::radius);
    icon.paint(
        &painter,
        QRect(0, 0, side, side).adjusted(theme::grid, theme::grid, -theme::grid, -theme::grid));
}

// In a colour that stays with the name.
void paintLetter(QPainter &painter, const QString &name, int side) {
    const auto letter = std::find_if(name.begin(), name.end(),
                                     [](QChar character) { return character.isLetterOrNumber(); });
    const int hue = int(qHash(name) % 360);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme::appearance().highContrast ? theme::window()
                                                      : QColor::fromHsl(hue, 90, 90));
    const QRect plate = QRect(0, 0, side, side).adjusted(2, 2, -2, -2);
    painter.drawRoundedRect(plate, theme::radius, theme::radius);
    if (letter == name.end())
        return;
    QFont font = theme::font(12, true);
    font.setPixelSize(side / 2);
    painter.setFont(font);
    painter.setPen(theme::text());
    painter.drawText(plate, Qt::AlignCenter, QString(*letter).toUpper());
}

} // namespace

QPixmap ApplicationIcons::pixmap(const QString &wanted, const QString &name, int side,
                                 qreal devicePixelRatio) {
    const QString look = QIcon::themeName() + theme::window().name();
    if (look != std::exchange(m_look, look))
        m_pixmaps.clear();
    const QString key =
        QStringLiteral("%1/%2/").arg(side).arg(devicePixelRatio) + wanted + u'\n' + name;
    if (const QPixmap *const known = m_pixmaps.object(key))
        return *known;
    const int pixels = qRound(side * devicePixelRatio);
    auto *const pixmap = new QPixmap(pixels, pixels);
    pixmap->setDevicePixelRatio(devicePixelRatio);
    pixmap->fill(Qt::transparent);
    QPainter painter(pixmap);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QIcon icon = iconOf(wanted, pixels);
    if (icon.isNull())
        paintLetter(painter, name, side);
    else if (isSeenOnGround(icon))
        icon.paint(&painter, QRect(0, 0, side, side));
    else
        paintOnPlate(painter, icon, side);
    painter.end();
    m_pixmaps.insert(key, pixmap);
    return *pixmap;
}

} // namespace brightsweep
