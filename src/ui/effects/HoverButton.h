#pragma once

#include <QString>
#include <QToolButton>

namespace brightsweep {

/// A button without a frame that changes its image under the mouse. Main thread. While it is
/// disabled it keeps what it has.
class HoverButton : public QToolButton {
    Q_OBJECT

public:
    explicit HoverButton(QWidget *parent = nullptr);

    /// Shown at once.
    void setNormalImage(const QString &name);
    void setHoverImage(const QString &name);
    /// What is shown now.
    const QString &imageName() const { return m_shown; }

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void showNamed(const QString &name);

    QString m_normalImage;
    QString m_hoverImage;
    QString m_shown;
};

} // namespace brightsweep
