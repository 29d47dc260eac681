#include "cleaning/ui/HiddenTicksNotice.h"

#include "cleaning/CleanOutlineController.h"
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
    auto *const all = new QPushButton(QStringLiteral("Show all"), this);
    all->setObjectName(QStringLiteral("clean.showAll"));
    connect(all, &QPushButton::clicked, this, &HiddenTicksNotice::showAll);
    row->addWidget(all);
    hide();
}

void HiddenTicksNotice::follow(bool isOutlineShown) {
    const std::size_t hidden = m_outline.hiddenSelectedCount();
    m_words->setText(
        hidden == 1 ? QStringLiteral("The filter hides 1 ticked item. Clean removes it too.")
                    : QStringLiteral("The filter hides %1 ticked items. Clean removes them too.")
                          .arg(hidden));
    setVisible(hidden > 0 && isOutlineShown);
}

} // namespace brightsweep
