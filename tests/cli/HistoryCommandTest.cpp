#include "core/DateText.h"
#include "core/ParseFileLog.h"
#include "support/ChildProcess.h"

#include <gtest/gtest.h>

namespace brightsweep {
namespace {

TEST(HistoryCommand, ShowsTheRecord) {
    ASSERT_TRUE(ParseFileLog().setSize(1'500'000,
                                       dateFromText(QStringLiteral("2011-03-15 10:22:33 +0800"))));
    auto result = test::runProgram({BRIGHTSWEEP_CLI, "--json", "history"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, R"({"schema":1,"command":"history","logName":"SIZE",)"
                             R"("date":"2011-03-15T02:22:33Z","bytes":1500000})"
                             "\n");
    result = test::runProgram({BRIGHTSWEEP_CLI, "history"});
    EXPECT_NE(result.output.find("1.50 MB"), std::string::npos);
    EXPECT_NE(result.output.find("2011-03-15 10:22:33 +0800"), std::string::npos);
}

TEST(HistoryCommand, WithoutARecordNothingWasRecovered) {
    const auto result = test::runProgram({BRIGHTSWEEP_CLI, "history", "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.output.find(R"("logName":"FILE SIZE")"), std::string::npos);
    EXPECT_NE(result.output.find(R"("bytes":0)"), std::string::npos);
    EXPECT_EQ(test::runProgram({BRIGHTSWEEP_CLI, "history", "more"}).status, 2);
}

} // namespace
} // namespace brightsweep
