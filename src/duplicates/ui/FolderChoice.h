#pragma once

#include <QObject>
#include <QString>

#include <filesystem>
#include <functional>

class QWidget;

namespace brightsweep {

class SameFileDeleteViewController;

/// Lets a folder reach the duplicates page from one of its panels: dropped anywhere on it, or
/// chosen where the page asks for one while the panel is on show. Main thread; the page outlives
/// it, and the panel owns it.
class FolderChoice : public QObject {
    Q_OBJECT

public:
    FolderChoice(SameFileDeleteViewController &page, QWidget *panel);

    /// A dialog of the widget's window for a folder, beginning in another one. It does not block;
    /// `chosen` is called unless the dialog is called off or the widget goes first.
    static void ask(QWidget *asking, const QString &title, const std::filesystem::path &start,
                    const std::function<void(const std::filesystem::path &)> &chosen);

Q_SIGNALS:
    /// A folder is held over the panel, or not any more.
    void hovered(bool isOver);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::filesystem::path start() const;

    SameFileDeleteViewController &m_page;
    QWidget *m_panel;
};

} // namespace brightsweep
