#pragma once

#include <QPixmap>
#include <QWidget>

namespace brightsweep {

/// Shows one image, by name or as a pixmap, whole and in the middle. Main thread. It takes no focus
/// and has no meaning of its own: what it decorates has the accessible name.
class ImageView : public QWidget {
    Q_OBJECT

public:
    explicit ImageView(QWidget *parent = nullptr);
    explicit ImageView(const QString &name, QWidget *parent = nullptr);

    /// "" shows nothing.
    void setImageName(const QString &name);
    const QString &imageName() const { return m_name; }
    /// Takes the place of a named image.
    void setPixmap(const QPixmap &pixmap);

    /// The size of the image itself.
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_name;
    QPixmap m_pixmap;
};

/// Shows the image on an image view or as the icon of a button; any other widget stays as it is.
void showImage(QWidget *view, const QString &name);

} // namespace brightsweep
