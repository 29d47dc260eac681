#include "preferences/ui/AlarmControl.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "ui/ImageView.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

#include <cmath>

namespace brightsweep {

namespace {

constexpr int steps = 100;
constexpr int largeStep = 5;

// "10", or "12.5" for a level between two steps.
QString percentWords(float alarm) {
    const double percent = std::round(double(alarm) * 1000) / 10;
    return reader().toString(percent, 'f', percent == std::round(percent) ? 0 : 1);
}

} // namespace

AlarmControl::AlarmControl(const char *name, const QString &title, QSize image,
                           std::function<AlarmPreview(float)> preview, QWidget *parent)
    : QWidget(parent),
      m_preview(std::move(preview)),
      m_title(title),
      m_value(makePlainLabel("alarm.value", this)),
      m_slider(new QSlider(Qt::Horizontal, this)),
      m_image(new ImageView(this)),
      m_words(makePlainLabel("alarm.words", this)) {
    m_slider->setObjectName(QLatin1String(name));
    m_slider->setRange(0, steps);
    m_slider->setPageStep(largeStep);
    m_slider->setFocusPolicy(Qt::StrongFocus);
    // The style fills a slider from the left, in every language.
    m_slider->setLayoutDirection(Qt::LeftToRight);
    m_value->setProperty("number", true);
    m_value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_words->setProperty("secondary", true);
    m_words->setWordWrap(true);
    theme::keepFont(m_words, 11);
    theme::keepSize(m_image, image.width(), image.height());

    auto *const head = new QHBoxLayout;
    auto *const label = new QLabel(title, this);
    label->setBuddy(m_slider);
    label->setWordWrap(true);
    head->addWidget(label, 1);
    head->addWidget(m_value);
    auto *const below = new QHBoxLayout;
    below->setSpacing(2 * theme::grid);
    below->addWidget(m_image);
    below->addWidget(m_words, 1);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme::grid);
    layout->addLayout(head);
    layout->addWidget(m_slider);
    layout->addLayout(below);

    connect(m_slider, &QSlider::valueChanged, this, &AlarmControl::moved);
    connect(m_slider, &QSlider::sliderReleased, this, [this] { choose(m_slider->value()); });
}

void AlarmControl::setValue(float alarm) {
    if (m_slider->isSliderDown())
        return;
    m_alarm = alarm;
    const QSignalBlocker quiet(m_slider);
    m_slider->setValue(int(std::lround(double(alarm) * steps)));
    showPreview(alarm);
}

void AlarmControl::moved(int percent) {
    if (m_slider->isSliderDown())
        showPreview(float(percent) / steps);
    else
        choose(percent);
}

void AlarmControl::choose(int percent) {
    m_alarm = float(percent) / steps;
    showPreview(m_alarm);
    Q_EMIT valueChosen(m_alarm);
}

void AlarmControl::showPreview(float alarm) {
    const QString percent = localizedText("PERCENT").arg(percentWords(alarm));
    m_value->setText(percent);
    m_slider->setAccessibleName(spokenWords({m_title, percent}));
    if (!isVisible())
        return;
    const AlarmPreview preview = m_preview(alarm);
    m_image->setImageName(preview.image);
    m_words->setText(preview.image.isEmpty()
                         ? QString()
                         : localizedText(preview.warns ? QT_TRID_NOOP("ALARM_WARNS")
                                                       : QT_TRID_NOOP("ALARM_QUIET"))
                               .arg(readersNumber(preview.freePercent)));
}

} // namespace brightsweep
