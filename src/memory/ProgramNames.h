#pragma once

#include "memory/LargestPrograms.h"

#include <QHash>
#include <QString>

namespace brightsweep {

/// What a program is called to the user and what it looks like.
struct ProgramLook {
    QString name; ///< plain, without line ends
    QString icon; ///< a name in the icon theme or an absolute path; empty where none is known
};

/// Looks of programs, by the desktop entries of their applications; the entries found, or not, are
/// kept. Main thread.
class ProgramNames {
public:
    ProgramLook look(const ProgramMemory &program);

private:
    QHash<QByteArray, ProgramLook> m_looks; // empty names where there is no entry
};

} // namespace brightsweep
