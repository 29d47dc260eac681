// What package managers' files and tools say. Theirs are sound; what packages put into them may not
// be.

#include "helper/AptReports.h"
#include "linux/DpkgDatabase.h"
#include "linux/PacmanDatabase.h"
#include "linux/RpmDatabase.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace brightsweep;

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);
    const PathSet paths = {"/usr/bin/a", "/bin/sh", text};
    const WantedPaths wanted(paths);
    forEachLine(text, [&](std::string_view line) {
        if (const std::string *path = wanted.find(line))
            require(paths.count(*path) == 1 && (*path == line || otherNameOf(*path) == line));
    });
    for (const std::string &status :
         {text, "Package: a\nStatus: install ok installed\nSection: tasks\nConffiles:\n " + text}) {
        std::string architecture;
        std::string before;
        for (const PackageRecord &record : DpkgDatabase::parseStatus(status, architecture)) {
            require(before <= record.name);
            before = record.name;
            for (const std::string &setting : record.settings)
                require(setting.starts_with('/'));
        }
    }
    for (const std::string &name : DpkgDatabase::dependentsIn(text))
        require(isPackageName(PackageFamily::Dpkg, name));
    for (const std::string &name : RpmDatabase::dependentsIn(text))
        require(isPackageName(PackageFamily::Rpm, name));
    PacmanDatabase::blocksOf(text);
    // Nothing that is not there matches.
    require(!helper::matchesSimulation(text, {"neverthere"}) ||
            text.find("Remv neverthere") != text.npos);
    require(!helper::matchesReport(text, {"neverthere"}) || text.find("neverthere") != text.npos);
    return 0;
}
