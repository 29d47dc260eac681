#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace brightsweep {

class ImageView;
class NewMainViewController;
class StyledLabel;

/// The start panel of the clean page: what the last clean recovered, and one button. The controller
/// outlives it. Main thread.
class CleanStartPanel : public QWidget {
    Q_OBJECT

public:
    explicit CleanStartPanel(NewMainViewController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *) override;

private:
    void follow();

    NewMainViewController &m_controller;
    QLabel *m_title;
    StyledLabel *m_sentence;
    StyledLabel *m_notice;
    QPushButton *m_button;
    ImageView *m_picture;
};

} // namespace brightsweep
