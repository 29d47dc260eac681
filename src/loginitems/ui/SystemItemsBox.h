#pragma once

#include "platform/LoginItemSource.h"

#include <QWidget>

#include <string>
#include <vector>

class QScrollArea;
class QToolButton;
class QVBoxLayout;

namespace brightsweep {

class LoginItemController;

/// What the system starts in every user's session, folded away below the user's own: a line with
/// their number, and behind it a switch for each. The controller outlives it. Main thread.
class SystemItemsBox : public QWidget {
    Q_OBJECT

public:
    explicit SystemItemsBox(LoginItemController &controller, QWidget *parent = nullptr);

private:
    void followItems();
    void followFold();
    void addRow(const LoginItemEntry &entry);

    LoginItemController &m_controller;
    QToolButton *m_fold;
    QScrollArea *m_scroll;
    QVBoxLayout *m_rows;
    std::vector<std::string> m_files; ///< those that have a row
    bool m_isOpen = false;
};

} // namespace brightsweep
