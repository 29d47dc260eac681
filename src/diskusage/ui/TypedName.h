#pragma once

#include <QElapsedTimer>
#include <QObject>

class QAbstractItemView;

namespace brightsweep {

/// Gives a blank that is pressed soon after a letter to the view's search by name, where it would
/// tick the row that the name has led to so far. The view owns it. Main thread.
class TypedName : public QObject {
public:
    explicit TypedName(QAbstractItemView &view);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QAbstractItemView &m_view;
    QElapsedTimer m_lastTyped;
};

} // namespace brightsweep
