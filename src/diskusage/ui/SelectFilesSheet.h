#pragma once

#include "diskusage/UsageTicks.h"

#include <QDialog>

#include <functional>
#include <optional>

class QLabel;
class QPushButton;

namespace brightsweep {

/// The sheet that asks before a removal: a row for each selected item with what is to be known of
/// it, and what would really be freed. Cancel is the default, and Esc calls the act off. It deletes
/// itself when answered. Main thread; the ticks outlive it.
class SelectFilesSheet : public QDialog {
    Q_OBJECT

public:
    using Act = UsageTicks::Act;

    /// Opens on a window; `answered` gets the act, or nothing where it is called off.
    static SelectFilesSheet *show(UsageTicks &ticks, QWidget *window,
                                  std::function<void(std::optional<Act>)> answered);

private:
    SelectFilesSheet(UsageTicks &ticks, QWidget *window,
                     std::function<void(std::optional<Act>)> answered);

    QWidget *makeRow(std::size_t row);
    void follow();
    void choose(Act act);
    void askOnceMore(Act act, const QStringList &reasons);

    UsageTicks &m_ticks;
    std::function<void(std::optional<Act>)> m_answered;
    std::optional<Act> m_act;
    QLabel *m_title;
    QLabel *m_freed;
    QPushButton *m_cancel;
    QPushButton *m_trash;
    QPushButton *m_remove;
};

/// What a row of the sheet says below its name; empty where there is nothing to say.
QString notesOf(const SelectFilesListView &row);

} // namespace brightsweep
