#include "diskusage/SvgCanvas.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "diskusage/AllDir.h"
#include "diskusage/ChartLabels.h"
#include "foundation/Paths.h"

#include <cstdio>

namespace brightsweep {

namespace {

constexpr double fontSize = 12;
constexpr double lineHeight = 1.25 * fontSize;
// Widths of letters in a usual sans serif font, as parts of its size: viewers have other fonts.
constexpr double letterWidth = 0.6;
constexpr double wideLetterWidth = 1.05;
constexpr char16_t firstWideLetter = 0x1100;

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

std::string colourText(PlaneCanvas::Colour colour) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", colour[0], colour[1], colour[2]);
    return text;
}

std::string escaped(const QString &text) {
    QString allowed = text; // by XML
    allowed.replace(QChar(0xfffe), QChar::ReplacementCharacter);
    allowed.replace(QChar(0xffff), QChar::ReplacementCharacter);
    return allowed.toHtmlEscaped().toStdString();
}

void addContour(std::string &path, std::span<const QPointF> points) {
    if (points.empty())
        return;
    char command = 'M';
    for (const QPointF &point : points) {
        path += command;
        path += number(point.x()) + ' ' + number(point.y());
        command = 'L';
    }
    path += 'Z';
}

double widthOf(const QString &text) {
    double width = 0;
    for (const QChar letter : text)
        width += (letter.unicode() < firstWideLetter ? letterWidth : wideLetterWidth) * fontSize;
    return width;
}

} // namespace

SvgCanvas::SvgCanvas(QSizeF size, Colour background) : PlaneCanvas(size), m_background(background) {
    keepSectors(lineHeight);
}

void SvgCanvas::beginDirectory(const AllDir &node) {
    endDirectory();
    const auto bytes = std::uint64_t(node.shownSize());
    m_drawn += "<g><title>" + escaped(paths::display(node.szPath())) + " · " +
               escaped(sizeWords(bytes)) + "</title>\n";
    m_inGroup = true;
}

void SvgCanvas::endDirectory() {
    if (m_inGroup)
        m_drawn += "</g>\n";
    m_inGroup = false;
}

void SvgCanvas::drawOutline(const Area &area, Colour colour) {
    m_drawn += "<path fill=\"none\" stroke=\"" + colourText(colour) + "\" d=\"";
    addContour(m_drawn, area.outer);
    addContour(m_drawn, area.hole);
    m_drawn += "\"/>\n";
}

void SvgCanvas::fillArea(const Area &area, Colour colour) {
    m_drawn += "<path fill=\"" + colourText(colour) + "\" fill-rule=\"evenodd\" d=\"";
    addContour(m_drawn, area.outer);
    addContour(m_drawn, area.hole);
    m_drawn += "\"/>\n";
}

void SvgCanvas::clearDevice(Colour, std::uint8_t) {
    m_drawn.clear();
    m_inGroup = false;
}

std::string SvgCanvas::document() const {
    const std::string width = number(size().width());
    const std::string height = number(size().height());
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                       width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " +
                       height + "\">\n<rect width=\"100%\" height=\"100%\" fill=\"" +
                       colourText(m_background) + "\"/>\n" + m_drawn + (m_inGroup ? "</g>\n" : "") +
                       "<g font-family=\"sans-serif\" font-size=\"" + number(fontSize) +
                       "\" text-anchor=\"middle\" pointer-events=\"none\">\n";
    for (const ChartLabel &label : layOutLabels(sectors(), {widthOf, lineHeight, fontSize / 3})) {
        const std::string colour = label.isDark ? "#000000" : "#ffffff";
        const auto line = [&](const QString &words, double down) {
            text += "<text fill=\"" + colour + "\" x=\"" + number(label.centre.x()) + "\" y=\"" +
                    number(label.centre.y() + down) + "\">" + escaped(words) + "</text>\n";
        };
        // From the middle of a line to the foot of its letters.
        const double foot = 0.35 * fontSize;
        const double up = label.size.isEmpty() ? 0 : lineHeight / 2;
        line(label.name, foot - up);
        if (!label.size.isEmpty())
            line(label.size, foot + up);
    }
    return text + "</g>\n</svg>\n";
}

} // namespace brightsweep
