#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace brightsweep {

class FolderDropCard;
class SameFileDeleteViewController;

/// How large files must be to be searched, in words.
QString limitWords();
/// A link of these words to the preferences, where that is set.
QPushButton *makeLimitLink(SameFileDeleteViewController &controller, QWidget *parent);

/// The start panel of the duplicates page: a place to drop a folder on, a button to choose one, and
/// the folders searched last. The controller outlives it. Main thread.
class DuplicatesStartPanel : public QWidget {
    Q_OBJECT

public:
    explicit DuplicatesStartPanel(SameFileDeleteViewController &controller,
                                  QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *) override;

private:
    void listRecent();

    SameFileDeleteViewController &m_controller;
    FolderDropCard *m_card;
    QPushButton *m_limit;
    QLabel *m_stopped;
    QWidget *m_recent;
    QVBoxLayout *m_recentRows;
};

} // namespace brightsweep
