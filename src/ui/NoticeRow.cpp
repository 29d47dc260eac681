#include "ui/NoticeRow.h"

#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace brightsweep {

NoticeRow::NoticeRow(const char *name, QWidget *parent)
    : QFrame(parent), m_row(new QHBoxLayout(this)), m_label(makePlainLabel(name, this)) {
    setProperty("card", true);
    m_row->setContentsMargins(3 * theme::grid, theme::grid, 2 * theme::grid, theme::grid);
    m_label->setWordWrap(true);
    m_row->addWidget(m_label, 1);
}

void NoticeRow::tell(const QString &words) {
    m_label->setText(words);
    setVisible(!words.isEmpty());
}

QPushButton *NoticeRow::addButton(const char *name, const QString &text) {
    auto *const button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    m_row->addWidget(button);
    return button;
}

} // namespace brightsweep
