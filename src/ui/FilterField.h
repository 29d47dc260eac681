#pragma once

#include <QLineEdit>
#include <QTimer>

namespace brightsweep {

/// The field that filters a page's list, as long as it is shown. Ctrl+F anywhere in the window
/// brings the focus to it, and Esc within the page clears it.
class FilterField : public QLineEdit {
    Q_OBJECT

public:
    /// The words tell what it filters by.
    FilterField(const QString &words, QWidget *page, QWidget *parent);

    /// Empties it without a word.
    void reset();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// No key was pressed for a moment.
    void settled(const QString &text);
    /// Esc has cleared it: the focus belongs to the list again.
    void left();

private:
    QTimer m_settles;
};

} // namespace brightsweep
