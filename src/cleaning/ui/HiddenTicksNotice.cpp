#include "cleaning/ui/HiddenTicksNotice.h"

#include "cleaning/CleanOutlineController.h"
#include "core/Texts.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace brightsweep {

HiddenTicksNotice::HiddenTicksNotice(const CleanOutlineController &outline, QWidget *parent)
    : QFrame(parent), m_outline(outline), m_words(new QLabel(this)) {
    setProperty("card", true);
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(3 * theme::grid, theme::grid, 2 * theme::grid, theme::grid);
    m_words->setObjectName(QStringLiteral("clean.hiddenTicks"));
    m_words->setWordWrap(true);
    row->addWidget(m_words, 1);
    auto *const all = new QPushButton(localizedText("SHOW_ALL"), this);
    all->setObjectName(QStringLiteral("clean.showAll"));
    connect(all, &QPushButton::clicked, this, &HiddenTicksNotice::showAll);
    row->addWidget(all);
    hide();
}

void HiddenTicksNotice::follow(bool isOutlineShown) {
    const std::size_t hidden = m_outline.hiddenSelectedCount();
    m_words->setText(localizedText("HIDDEN_TICKS", hidden));
    setVisible(hidden > 0 && isOutlineShown);
}

} // namespace brightsweep
