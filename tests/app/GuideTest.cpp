#include "app/Guide.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace brightsweep {
namespace {

TEST(Guide, IsFoundBesideTheProgramAndWhole) {
    const auto path = guidePath();
    ASSERT_FALSE(path.empty());
    std::ifstream file(path);
    const std::string text((std::istreambuf_iterator<char>(file)),
                           std::istreambuf_iterator<char>());
    EXPECT_NE(text.find("</html>"), std::string::npos);
}

} // namespace
} // namespace brightsweep
