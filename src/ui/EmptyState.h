#pragma once

#include <QWidget>

class QAbstractScrollArea;
class QLabel;

namespace brightsweep {

class ImageView;

/// What stands in the place of a list's rows while there are none: a picture where one is named and
/// there is room for it, a title and words. It lies over the list's viewport as its sibling, as a
/// screen reader is told of no widget within a list; the list has the same as its description, for
/// whoever comes to it by keyboard. Clicks and drops go through to the list. Belongs to the
/// list's parent, or to the list while that has none.
class EmptyState : public QWidget {
    Q_OBJECT

public:
    explicit EmptyState(QAbstractScrollArea &list, const QString &picture = {});

    /// An empty title takes it away.
    void say(const QString &title, const QString &words = {});

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();

    QAbstractScrollArea &m_list;
    ImageView *m_picture = nullptr; ///< null where none is named
    QLabel *m_title = nullptr;
    QLabel *m_words = nullptr;
};

} // namespace brightsweep
