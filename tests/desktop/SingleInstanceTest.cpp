#include "platform/SingleInstance.h"

#include "desktop/PrivateBus.h"
#include "support/ChildProcess.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>

namespace brightsweep {
namespace {

namespace fs = std::filesystem;
using test::ChildResult;
using test::eventually;
using test::RunningProgram;

enum class Way { Bus, Socket };

class SingleInstanceTest : public testing::TestWithParam<Way> {
protected:
    void SetUp() override {
        if (GetParam() == Way::Bus)
            m_bus.emplace();
    }

    std::unique_ptr<RunningProgram> start(const char *activate = "1", const char *token = "",
                                          const fs::path &startFile = {}) {
        std::vector<std::string> arguments{BRIGHTSWEEP_INSTANCE_PROBE, activate, token, m_log};
        if (!startFile.empty())
            arguments.push_back(startFile);
        return std::make_unique<RunningProgram>(arguments);
    }
    std::unique_ptr<RunningProgram> startFirst() {
        auto first = start();
        EXPECT_TRUE(eventually([this] { return log() == "first\n"; }));
        return first;
    }
    ChildResult second(const char *token = "") { return start("1", token)->finish(); }
    std::string log() const { return test::textOf(m_log); }

    const fs::path m_work = test::TestEnvironment::current().work();
    const fs::path m_log = m_work / "log";
    std::optional<test::PrivateBus> m_bus;
};

constexpr int passedOn = int(InstanceOutcome::PassedOn);
constexpr int hanging = int(InstanceOutcome::Hanging);

TEST_P(SingleInstanceTest, ALaterStartAsksTheFirst) {
    const auto first = startFirst();
    for (const char *token : {"token-1", "", "token & 3", "t@", "@/a folder/%\xff\xc3\xa4"}) {
        const ChildResult result = second(token);
        EXPECT_EQ(result.status, passedOn);
        EXPECT_EQ(result.errors, "");
    }
    // One that does not want to be seen only looks.
    EXPECT_EQ(start("0", "unheard")->finish().status, passedOn);
    EXPECT_EQ(second("last").status, passedOn);
    EXPECT_TRUE(eventually([&] { return log().ends_with("last\n"); }));
    EXPECT_EQ(log(), "first\nasked token-1\nasked \nasked token & 3\n"
                     "asked t@\nasked @/a folder/%\xff\xc3\xa4\nasked last\n");
}

TEST_P(SingleInstanceTest, AFirstThatIsStillStartingAnswers) {
    const fs::path go = m_work / "go";
    const auto first = start("1", "", go);
    ASSERT_TRUE(eventually([&] { return log() == "first\n"; }));
    EXPECT_EQ(second("one").status, passedOn);
    EXPECT_EQ(second("two").status, passedOn);
    EXPECT_EQ(log(), "first\n");
    std::ofstream(go) << "go";
    EXPECT_TRUE(eventually([&] { return log() == "first\nasked one\nasked two\n"; }));
}

TEST_P(SingleInstanceTest, ManyStartsAtOnceMakeOneFirst) {
    std::vector<std::unique_ptr<RunningProgram>> programs;
    for (int i = 0; i < 6; ++i)
        programs.push_back(start("1", "x"));
    EXPECT_TRUE(eventually([&] {
        return std::count_if(programs.begin(), programs.end(),
                             [](const auto &program) { return program->hasEnded(); }) == 5;
    }));
    for (const auto &program : programs) {
        if (program->hasEnded()) {
            EXPECT_EQ(program->finish().status, passedOn);
        }
    }
    EXPECT_TRUE(eventually(
        [&] { return log() == "first\nasked x\nasked x\nasked x\nasked x\nasked x\n"; }));
}

TEST_P(SingleInstanceTest, AFirstThatHangsIsToldOf) {
    const auto first = startFirst();
    for (const bool stopped : {true, false}) {
        SCOPED_TRACE(stopped);
        if (stopped) {
            first->signal(SIGSTOP);
        } else {
            EXPECT_EQ(second("hang").status, passedOn);
            ASSERT_TRUE(eventually([&] { return log().ends_with("asked hang\n"); }));
        }
        const ChildResult result = second("unanswered");
        EXPECT_EQ(result.status, hanging);
        EXPECT_EQ(result.errors, "Brightsweep is already running but does not answer.\n");
        first->signal(SIGCONT);
        if (stopped) {
            ASSERT_TRUE(eventually([&] { return log().ends_with("asked unanswered\n"); }));
        }
    }
}

TEST_P(SingleInstanceTest, AKilledOneStandsInNobodysWay) {
    for (int round = 0; round < 3; ++round) {
        fs::remove(m_log);
        const auto first = startFirst();
        EXPECT_EQ(second("x").status, passedOn);
        EXPECT_TRUE(eventually([&] { return log() == "first\nasked x\n"; }));
        // Also one that hung.
        if (round == 1)
            first->signal(SIGSTOP);
        first->signal(SIGKILL);
        ASSERT_TRUE(eventually([&] { return first->hasEnded(); }));
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, SingleInstanceTest, testing::Values(Way::Bus, Way::Socket),
                         [](const auto &way) { return way.param == Way::Bus ? "Bus" : "Socket"; });

using SingleInstanceOnBus = SingleInstanceTest;

TEST_P(SingleInstanceOnBus, TheBusGoesAndComesBack) {
    const auto first = startFirst();
    m_bus->stop();
    // A start that finds no bus finds the first one by the socket, as soon as that has noticed.
    EXPECT_TRUE(eventually([&] {
        return fs::exists(test::TestEnvironment::current().root() /
                          "runtime/com.norvmac.DeskSweeperPro.socket");
    }));
    EXPECT_EQ(second("without").status, passedOn);
    m_bus->start();
    test::PlayedService desktop(*m_bus, "/none");
    const auto call = [&](const char *method, const QVariantList &arguments) {
        return test::callInLoop(desktop.connection, QStringLiteral("com.norvmac.DeskSweeperPro"),
                                QStringLiteral("/com/norvmac/DeskSweeperPro"),
                                QStringLiteral("org.freedesktop.Application"),
                                QLatin1String(method), arguments);
    };
    const QVariantMap data{{QStringLiteral("desktop-startup-id"), QStringLiteral("desktop")}};
    EXPECT_TRUE(test::eventually(
        [&] { return call("Activate", {data}).type() == QDBusMessage::ReplyMessage; }));
    EXPECT_EQ(second("with").status, passedOn);
    EXPECT_EQ(call("Open", {QStringList(), QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call("ActivateAction", {QStringLiteral("scan"), QVariantList(), data}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(call("Nothing", {}).type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(eventually([&] {
        return log() == "first\nasked without\nasked desktop\nasked with\nasked \nasked desktop\n";
    })) << log();
    EXPECT_FALSE(first->hasEnded());
}

TEST_P(SingleInstanceOnBus, ABusThatHangsIsDoneWithout) {
    m_bus->signal(SIGSTOP);
    const auto first = startFirst();
    m_bus->signal(SIGCONT);
}

INSTANTIATE_TEST_SUITE_P(Ways, SingleInstanceOnBus, testing::Values(Way::Bus),
                         [](const auto &) { return "Bus"; });

} // namespace
} // namespace brightsweep
