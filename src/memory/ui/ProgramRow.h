#pragma once

#include "memory/ProgramNames.h"

#include <QWidget>

class QLabel;

namespace brightsweep {

class ElidedLabel;

/// A program with its icon and what it holds, over a bar of its share. Main thread.
class ProgramRow : public QWidget {
    Q_OBJECT

public:
    explicit ProgramRow(QWidget *parent = nullptr);

    /// `most` is what the first program of the list holds, in bytes.
    void show(const ProgramMemory &program, const ProgramLook &look, std::uint64_t most);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QLabel *m_icon;
    ElidedLabel *m_name;
    QLabel *m_processes;
    QLabel *m_size;
    QString m_iconName;
    double m_share = 0;
};

} // namespace brightsweep
