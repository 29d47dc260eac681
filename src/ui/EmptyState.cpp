#include "ui/EmptyState.h"

#include "core/RowWords.h"
#include "ui/ImageView.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int pictureSide = 120;

} // namespace

EmptyState::EmptyState(QAbstractScrollArea &list, const QString &picture)
    : QWidget(list.parentWidget() ? list.parentWidget() : &list), m_list(list) {
    setObjectName(QStringLiteral("empty"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_title = makePlainLabel("empty.title", this);
    m_words = makePlainLabel("empty.words", this);
    m_words->setProperty("secondary", true);
    theme::keepFont(m_title, picture.isEmpty() ? 13 : 15, !picture.isEmpty());
    m_title->setProperty("secondary", picture.isEmpty());
    theme::keepFont(m_words, 12);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8 * theme::grid, 4 * theme::grid, 8 * theme::grid, 4 * theme::grid);
    layout->setSpacing(2 * theme::grid);
    layout->addStretch(1);
    if (!picture.isEmpty()) {
        m_picture = new ImageView(picture, this);
        theme::keepSize(m_picture, pictureSide, pictureSide);
        layout->addWidget(m_picture, 0, Qt::AlignHCenter);
    }
    for (QLabel *const label : {m_title, m_words}) {
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        layout->addWidget(label);
    }
    layout->addStretch(1);
    hide();
    list.installEventFilter(this);
    list.viewport()->installEventFilter(this);
}

void EmptyState::say(const QString &title, const QString &words) {
    m_title->setText(title);
    m_words->setText(words);
    m_words->setVisible(!words.isEmpty());
    m_list.setAccessibleDescription(spokenWords({title, words}));
    place();
}

bool EmptyState::eventFilter(QObject *, QEvent *event) {
    switch (event->type()) {
    case QEvent::ParentChange:
    case QEvent::Resize:
    case QEvent::Move:
    case QEvent::Show:
    case QEvent::Hide:
        place();
        break;
    default:
        break;
    }
    return false;
}

void EmptyState::place() {
    QWidget *const parent = m_list.parentWidget();
    if (!parent)
        return;
    if (parentWidget() != parent)
        setParent(parent);
    const QWidget &room = *m_list.viewport();
    setGeometry({room.mapTo(parent, QPoint()), room.size()});
    if (m_picture) {
        const int side = width() - 16 * theme::grid;
        const int words = m_title->heightForWidth(side) + m_words->heightForWidth(side);
        // A short list has room for the words alone.
        m_picture->setVisible(height() > words + theme::height(pictureSide) + 14 * theme::grid);
    }
    setVisible(!m_title->text().isEmpty() && m_list.isVisibleTo(parent));
    raise();
}

} // namespace brightsweep
