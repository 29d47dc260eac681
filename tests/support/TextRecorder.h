#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

#include <string>
#include <vector>

class QWidget;

namespace brightsweep::test {

/// What a widget with its children writes when it is painted, by the texts and the places that
/// reach the paint engine.
class TextRecorder {
public:
    explicit TextRecorder(QWidget &widget);

    /// One line for each text that is cut at an edge or runs into another.
    std::vector<std::string> faults() const;
    /// Whether a text stands there whole.
    bool shows(const QString &text) const;

    struct Drawn {
        QString text;
        QRectF place;
        QRectF room;  ///< what of the widget the text may be seen in, once it is scrolled there
        QRectF shown; ///< and what of it is on show now
        QColor color;
    };
    const std::vector<Drawn> &drawn() const { return m_drawn; }

private:
    std::vector<Drawn> m_drawn;
};

} // namespace brightsweep::test
