#pragma once

#include <QTimer>
#include <QWidget>

#include <filesystem>

namespace brightsweep {

class LoginItemController;
class LoginItemView;
class NoticeRow;

/// The login items page: the user's own in a table, those of the system folded away below it, and
/// the button that adds. It says so when the home keeps it waiting, and what could not be done. The
/// controller outlives it. Main thread.
class LoginItemsPanel : public QWidget {
    Q_OBJECT

public:
    explicit LoginItemsPanel(LoginItemController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void hideEvent(QHideEvent *event) override;

private:
    QWidget *makeHead();
    QWidget *makeBottom();
    void ask(const QString &title, const QString &prompt, const std::filesystem::path &folder);
    void followWaiting();

    LoginItemController &m_controller;
    LoginItemView *tableView;
    NoticeRow *m_waiting;
    NoticeRow *m_failed;
    QTimer m_patience;
};

} // namespace brightsweep
