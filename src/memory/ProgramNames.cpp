#include "memory/ProgramNames.h"

#include "foundation/DesktopEntry.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"

#include <QFile>
#include <QStandardPaths>

#include <string>

namespace brightsweep {

namespace {

ProgramLook lookOfEntry(const std::string &identifier) {
    // What is no file name below the folders is no identifier either.
    if (identifier.empty() || identifier.find('/') != identifier.npos)
        return {};
    for (const QString &folder :
         QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        // Snaps' entries are named NAME_COMMAND.
        for (const std::string &name : {identifier, identifier + '_' + identifier}) {
            const auto path = paths::join(QFile::encodeName(folder).toStdString(), name) +=
                ".desktop";
            const auto text = readSmallFile(path);
            if (!text)
                continue;
            const DesktopEntry entry(*text);
            const std::string title = entry.localeString("Name", messageLocales());
            if (!title.empty())
                return {paths::display(title), paths::text(entry.string("Icon"))};
        }
    }
    return {};
}

} // namespace

ProgramLook ProgramNames::look(const ProgramMemory &program) {
    const bool isApplication = !program.application.empty();
    const std::string &identifier = isApplication ? program.application : program.program;
    const QByteArray key = QByteArray::fromStdString(identifier);
    auto known = m_looks.constFind(key);
    if (known == m_looks.constEnd())
        known = m_looks.insert(key, lookOfEntry(identifier));
    ProgramLook look = *known;
    if (look.name.isEmpty())
        // Of "org.example.Editor" the last part is the one to be known by.
        look.name = paths::display(isApplication ? identifier.substr(identifier.rfind('.') + 1)
                                                 : identifier);
    return look;
}

} // namespace brightsweep
