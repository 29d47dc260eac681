#pragma once

#include <QObject>
#include <QWidget>

#include <map>
#include <memory>

namespace brightsweep {

class BubbleController;
class MAAttachedWindow;
struct Bubble;

/// A text in a bubble: bold, in two lines at most; a long one is cut in its middle, so that what
/// happened to the thing it names is still told.
class BubbleText : public QWidget {
    Q_OBJECT

public:
    explicit BubbleText(const Bubble &content, QWidget *parent = nullptr);

    /// The text cut so that it fits the rectangle in that font.
    static QString fitted(const QString &text, const QRect &area, const QFont &font);

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QString m_text;
};

/// Shows a window in the top right corner of the main screen for each bubble of the controller,
/// which outlives it. Main thread.
class BubbleView : public QObject {
    Q_OBJECT

public:
    explicit BubbleView(BubbleController &controller, QObject *parent = nullptr);
    ~BubbleView() override;

private:
    void show(int bubble, const Bubble &content, int place);

    std::map<int, std::unique_ptr<MAAttachedWindow>> m_windows;
};

} // namespace brightsweep
