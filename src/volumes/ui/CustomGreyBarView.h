#pragma once

#include <QWidget>

namespace brightsweep {

/// The header of a section of the popup: its text on a bar, 16 high.
class CustomGreyBarView : public QWidget {
    Q_OBJECT

public:
    /// The text is behind the key; none for "".
    CustomGreyBarView(const char *sectionKey, QWidget *parent);

    QSize sizeHint() const override;
    QString text() const { return m_text; }

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QString m_text;
};

} // namespace brightsweep
