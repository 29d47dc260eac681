#pragma once

#include <QObject>
#include <QString>

#include <filesystem>
#include <functional>

class QWidget;

namespace brightsweep {

/// Lets a folder reach a page from one of its panels: dropped anywhere on it, or chosen in a
/// dialog. Main thread; the panel owns it, and the page outlives it.
class FolderChoice : public QObject {
    Q_OBJECT

public:
    struct Page {
        /// False keeps a dropped folder from being taken.
        std::function<bool()> canBegin;
        std::function<std::filesystem::path()> start; ///< where the dialog begins
        std::function<void(const std::filesystem::path &)> take;
    };

    FolderChoice(Page page, QWidget *panel);

    /// The page's own dialog; nothing while the panel is not on show.
    void ask();
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
    Page m_page;
    QWidget *m_panel;
};

} // namespace brightsweep
