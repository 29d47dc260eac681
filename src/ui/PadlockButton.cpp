#include "ui/PadlockButton.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "removal/PadlockController.h"
#include "ui/ImageProvider.h"
#include "ui/Theme.h"
#include "ui/effects/Animation.h"

namespace brightsweep {

namespace {

constexpr int side = 20;

} // namespace

PadlockButton::PadlockButton(PadlockController &padlock, QWidget *parent)
    : QToolButton(parent), m_padlock(padlock), m_blink(new Animation(parent)) {
    m_blink->hide();
    setObjectName(QStringLiteral("lockButton"));
    setCheckable(true);
    setAccessibleName(localizedText("PADLOCK"));
    theme::keep(this, [this] { setIconSize({theme::height(side), theme::height(side)}); });
    // Screen readers use its toggle action, not click.
    connect(this, &QToolButton::toggled, this, [this](bool open) {
        if (open != m_padlock.isOpen())
            Q_EMIT unlockWanted(open);
    });
    connect(&padlock, &PadlockController::lockStateChanged, this, &PadlockButton::follow);
    follow();
}

void PadlockButton::blink(bool running) {
    if (running)
        m_blink->startUnlockAnimation(this);
    else
        m_blink->stopUnlockAnimation(this);
}

void PadlockButton::follow() {
    const QString why = m_padlock.isWithoutAgent()
                            ? m_padlock.refusal()
                            : localizedText("Click lock to get a higer privileges.");
    setToolTip(plainToolTip({why}));
    setAccessibleDescription(why);
    setChecked(m_padlock.isOpen());
    setIcon(imageNamed(QLatin1String(m_padlock.imageName())));
}

} // namespace brightsweep
