#include "app/Guide.h"

#include "foundation/Paths.h"

#include <QCoreApplication>
#include <QFile>

#include <array>
#include <system_error>

namespace brightsweep {

std::filesystem::path guidePath() {
    const std::filesystem::path programs =
        QFile::encodeName(QCoreApplication::applicationDirPath()).toStdString();
    const std::array places{
        paths::join(paths::parent(programs), "share/brightsweep/guide.html"),
        std::filesystem::path(BRIGHTSWEEP_GUIDE_PATH),
    };
    for (const auto &place : places) {
        std::error_code error;
        if (std::filesystem::is_regular_file(place, error))
            return place;
    }
    return {};
}

} // namespace brightsweep
