#include "support/CommaLocale.h"

#include "support/TestEnvironment.h"

#include <clocale>
#include <cstdlib>
#include <stdexcept>

namespace brightsweep::test {

CommaLocale::CommaLocale() {
    const auto folder = TestEnvironment::current().root() / "locale";
    if (std::setlocale(LC_ALL, "de_DE.UTF-8"))
        return;
    std::filesystem::create_directories(folder);
    const std::string make = "localedef -i de_DE -f UTF-8 --no-archive '" + folder.native() +
                             "/de_DE.UTF-8' 2>/dev/null";
    const bool isMade = std::system(make.c_str()) == 0;
    ::setenv("LOCPATH", folder.c_str(), 1);
    const bool isSet = std::setlocale(LC_ALL, "de_DE.UTF-8");
    ::unsetenv("LOCPATH");
    if (!isMade || !isSet)
        throw std::runtime_error("no locale with a decimal comma can be made");
}

CommaLocale::~CommaLocale() {
    std::setlocale(LC_ALL, "C.UTF-8");
}

} // namespace brightsweep::test
