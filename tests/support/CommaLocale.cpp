#include "support/CommaLocale.h"

#include "support/TestEnvironment.h"

#include <clocale>
#include <cstdlib>

namespace brightsweep::test {

CommaLocale::CommaLocale() {
    const auto folder = TestEnvironment::current().root() / "locale";
    m_set = std::setlocale(LC_ALL, "de_DE.UTF-8");
    if (m_set)
        return;
    std::filesystem::create_directories(folder);
    const std::string make = "localedef -i de_DE -f UTF-8 --no-archive '" + folder.native() +
                             "/de_DE.UTF-8' 2>/dev/null";
    if (std::system(make.c_str()) != 0)
        return;
    ::setenv("LOCPATH", folder.c_str(), 1);
    m_set = std::setlocale(LC_ALL, "de_DE.UTF-8");
    ::unsetenv("LOCPATH");
}

CommaLocale::~CommaLocale() {
    std::setlocale(LC_ALL, "C.UTF-8");
}

} // namespace brightsweep::test
