#pragma once

#include <QString>
#include <QWidget>

#include <functional>

namespace brightsweep {

/// What a panel shows that has nothing to show: an image, what the panel is for, and one act that
/// works. Main thread.
struct EmptyPanelContent {
    QString imageName;
    QString title;
    QString sentence;
    QString actLabel; ///< no button where empty
    std::function<void()> act;
};

class EmptyPanel : public QWidget {
    Q_OBJECT

public:
    explicit EmptyPanel(const EmptyPanelContent &content, QWidget *parent = nullptr);

    QSize sizeHint() const override;
};

} // namespace brightsweep
