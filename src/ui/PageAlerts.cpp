#include "ui/PageAlerts.h"

#include "core/Texts.h"
#include "removal/PadlockController.h"

namespace brightsweep {

AlertContent wordsAlert(const QString &words) {
    AlertContent content;
    content.imageName = QStringLiteral("warning.png");
    content.text = words;
    return content;
}

AlertContent padlockAlert(PadlockController &padlock, const QString &words,
                          const std::function<void()> &ended) {
    AlertContent content;
    content.imageName = QStringLiteral("Lock.png");
    content.text = words;
    if (padlock.isWithoutAgent())
        content.informativeText = padlock.refusal();
    content.buttons = {{localizedText("OK"), false, ended}};
    content.calledOff = ended;
    return content;
}

AlertContent someStayedAlert(const std::function<void()> &ended) {
    AlertContent content = wordsAlert(localizedText("SOME_STAYED"));
    content.informativeText = localizedText("SOME_STAYED_WHY");
    content.buttons = {{localizedText("OK"), false, ended}};
    content.calledOff = ended;
    return content;
}

} // namespace brightsweep
