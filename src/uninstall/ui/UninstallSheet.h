#pragma once

#include "uninstall/ui/ApplicationIcons.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace brightsweep {

class UninstallAppsController;
struct RemovalPlan;

/// The question before a removal, as a sheet: for each application what goes, what goes with it and
/// what it would leave, with ticks; what stays and why; and the sum. It answers the page, which
/// outlives it, and deletes itself. Main thread.
class UninstallSheet : public QDialog {
    Q_OBJECT

public:
    static UninstallSheet *show(UninstallAppsController &page, const QString &text,
                                QWidget *window);

private:
    UninstallSheet(UninstallAppsController &page, const QString &text, QWidget *window);
    QWidget *makePlan(std::size_t number);
    void addLeftovers(QVBoxLayout &list, std::size_t number);
    QCheckBox *addMark(QVBoxLayout &list, const QString &label, const QString &kind,
                       const QString &obstacle, const QString &size);
    void fit(QVBoxLayout &list, QScrollArea &scroll);
    void follow();

    UninstallAppsController &m_page;
    ApplicationIcons m_icons;
    QLabel *m_sum;
    QPushButton *m_uninstall;
};

/// A closer look at one application, as a sheet. The page outlives it.
class UninstallDetailsSheet : public QDialog {
    Q_OBJECT

public:
    static UninstallDetailsSheet *show(UninstallAppsController &page, const QPixmap &icon,
                                       QWidget *window);

private:
    UninstallDetailsSheet(UninstallAppsController &page, const QPixmap &icon, QWidget *window);
    void follow();

    UninstallAppsController &m_page;
    QLabel *m_size;
};

} // namespace brightsweep
