#pragma once

#include <QDialog>
#include <QString>

#include <functional>
#include <vector>

class QHBoxLayout;

namespace brightsweep {

/// What an alert says and may be answered with.
struct AlertButton {
    QString label;
    bool removes = false; ///< the act takes something away: never the default button
    std::function<void()> act = {};
    bool keepsOpen = false; ///< no answer: the question stays
    QString toolTip = {};   ///< what the answer does, plain
};

struct AlertContent {
    QString imageName; ///< none where empty
    QString text;
    QString informativeText;
    /// "OK" where there are none. Whatever their order here, those that remove stand at the right,
    /// then those that end the question, then the others; the first of them that ends it and
    /// removes nothing is the default.
    std::vector<AlertButton> buttons;
    /// Esc and closing: the act is called off.
    std::function<void()> calledOff;
    /// The informative text is a list: each line stays one as far as the screen has room.
    bool isList = false;
};

/// A question or a word to the user: a sheet of the window it belongs to, or a window of its own
/// where that is not on show. It never blocks, and deletes itself when answered. Texts are plain.
/// Main thread.
class AlertSheet : public QDialog {
    Q_OBJECT

public:
    static AlertSheet *show(AlertContent content, QWidget *window);

private:
    AlertSheet(AlertContent content, QWidget *window);
    void addButtons(QHBoxLayout &row);

    AlertContent m_content;
    std::function<void()> m_answer;
};

} // namespace brightsweep
