#include "support/TestRun.h"

#include "support/TestEnvironment.h"

#include "app/RegisterDefaults.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <memory>

namespace brightsweep::test {
namespace {

// Gives each test its own home, a fresh platform and the defaults, and takes both away again.
class EnvironmentPerTest : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo &) override {
        m_environment = std::make_unique<TestEnvironment>();
        Platform::setCurrent(makeLinuxPlatform());
        registerAllDefaults();
    }
    void OnTestEnd(const testing::TestInfo &) override {
        Platform::setCurrent(makeNullPlatform("between two tests"));
        m_environment.reset();
    }

    std::unique_ptr<TestEnvironment> m_environment;
};

} // namespace

int runTests(int &argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new EnvironmentPerTest);
    return RUN_ALL_TESTS();
}

} // namespace brightsweep::test
