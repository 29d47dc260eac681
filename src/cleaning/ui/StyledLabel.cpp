#include "cleaning/ui/StyledLabel.h"

#include "ui/Theme.h"

#include <algorithm>

namespace brightsweep {

namespace {

constexpr double outcomeSize = 24;

QString html(const QString &text, const QFont &font, const QColor &color) {
    return QStringLiteral("<span style=\"font-size:%1pt; font-weight:%2; color:%3\">%4</span>")
        .arg(font.pointSizeF())
        .arg(font.bold() ? QStringLiteral("700") : QStringLiteral("400"),
             color.name(QColor::HexArgb).replace(1, 2, QString()), text.toHtmlEscaped());
}

} // namespace

StyledLabel::StyledLabel(QWidget *parent) : Paragraph(parent) {
    setTextFormat(Qt::RichText);
    theme::keep(this, [this] { render(); });
}

void StyledLabel::setStyledText(const CleanStyledText &text) {
    if (m_text == text)
        return;
    m_text = text;
    render();
}

void StyledLabel::render() {
    QString rich;
    int place = 0;
    const int end = int(m_text.text.size());
    const auto plain = [&](int until) {
        if (until > place)
            rich += html(m_text.text.mid(place, until - place), theme::font(m_text.size),
                         theme::text());
        place = std::max(place, until);
    };
    for (const auto &span : m_text.accented) {
        const int from = std::clamp(span.start, place, end);
        const int to = std::clamp(span.start + span.length, from, end);
        plain(from);
        const double size = m_text.isOutcome ? outcomeSize
                            : span.size > 0  ? span.size
                                             : m_text.size;
        rich +=
            html(m_text.text.mid(from, to - from), theme::font(size, span.bold || m_text.isOutcome),
                 m_text.isOutcome ? theme::ok() : theme::accent());
        place = to;
    }
    plain(end);
    setText(rich);
    updateGeometry();
    setAccessibleName(m_text.text);
}

} // namespace brightsweep
