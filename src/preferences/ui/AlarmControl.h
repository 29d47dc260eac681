#pragma once

#include "preferences/PreferenceViewController.h"

#include <QWidget>

#include <functional>

class QLabel;
class QSlider;

namespace brightsweep {

class ImageView;

/// The slider of an alarm level, a fraction from 0 to 1, with the image that would show it and
/// whether it would warn now. The image follows while the slider is dragged; the level is told when
/// it is let go, and at each step of a key. Main thread.
class AlarmControl : public QWidget {
    Q_OBJECT

public:
    /// `name` is the slider's; the image is shown at that size.
    AlarmControl(const char *name, const QString &title, QSize image,
                 std::function<AlarmPreview(float)> preview, QWidget *parent);

    /// Shows a level; one that the slider cannot stand at is told by its number all the same.
    void setValue(float alarm);
    /// Shows again what the level would mean now.
    void refresh() { showPreview(m_alarm); }
    QSlider *slider() const { return m_slider; }

Q_SIGNALS:
    void valueChosen(float alarm);

private:
    void moved(int percent);
    void choose(int percent);
    void showPreview(float alarm);

    const std::function<AlarmPreview(float)> m_preview;
    const QString m_title;
    QLabel *m_value;
    QSlider *m_slider;
    ImageView *m_image;
    QLabel *m_words;
    float m_alarm = 0;
};

} // namespace brightsweep
