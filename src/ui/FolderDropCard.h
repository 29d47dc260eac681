#pragma once

#include <QWidget>

#include <filesystem>

class QPushButton;
class QVBoxLayout;

namespace brightsweep {

/// The middle of a start panel that a folder can be dropped on: a framed card with a picture, a
/// title, a sentence and a button to choose a folder in a dialog. Main thread.
class FolderDropCard : public QWidget {
    Q_OBJECT

public:
    struct Look {
        const char *image;
        int width; ///< before theme::height(), as is the next one
        int sentenceWidth;
        int gap; ///< between the parts, in units of theme::grid
    };

    FolderDropCard(const QString &title, const QString &sentence, Look look, QWidget *parent);

    /// One more line below the button.
    void add(QWidget *line);
    QPushButton *chooseButton() const { return m_choose; }
    /// Frame and surface tell that a folder is held over the panel.
    void setHovered(bool isHovered);

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QVBoxLayout *m_parts;
    QPushButton *m_choose;
    bool m_isHovered = false;
};

/// A flat button with the path of a folder, cut in its middle where it is wider than `width`.
QPushButton *makeFolderButton(const char *name, const std::filesystem::path &folder, int width,
                              QWidget *parent);

} // namespace brightsweep
