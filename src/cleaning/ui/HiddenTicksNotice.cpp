#include "cleaning/ui/HiddenTicksNotice.h"

#include "cleaning/CleanOutlineController.h"
#include "core/Texts.h"

#include <QLabel>
#include <QPushButton>

namespace brightsweep {

HiddenTicksNotice::HiddenTicksNotice(const CleanOutlineController &outline, QWidget *parent)
    : NoticeRow("clean.hiddenTicks", parent), m_outline(outline) {
    auto *const all = addButton("clean.showAll", localizedText("SHOW_ALL"));
    connect(all, &QPushButton::clicked, this, &HiddenTicksNotice::showAll);
    hide();
}

void HiddenTicksNotice::follow(bool isOutlineShown) {
    const std::size_t hidden = m_outline.hiddenSelectedCount();
    label()->setText(localizedText("HIDDEN_TICKS", hidden));
    setVisible(hidden > 0 && isOutlineShown);
}

} // namespace brightsweep
