#pragma once

#include <QFrame>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace brightsweep {

/// A card of one row that tells something about the list below it, with a button for what can be
/// done about it. Main thread.
class NoticeRow : public QFrame {
    Q_OBJECT

public:
    /// `name` is that of the label.
    NoticeRow(const char *name, QWidget *parent);

    QLabel *label() const { return m_label; }
    /// Shows the words; without any the row goes.
    void tell(const QString &words);
    QPushButton *addButton(const char *name, const QString &text = {});

private:
    QHBoxLayout *m_row;
    QLabel *m_label;
};

} // namespace brightsweep
