#include "foundation/Log.h"

#include "support/LogCapture.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <regex>
#include <sstream>
#include <thread>

namespace brightsweep {
namespace {

template <typename... Arguments>
std::string formatted(const char *format, const Arguments &...arguments) {
    const std::initializer_list<LogArgument> list{LogArgument(arguments)...};
    return Log::format(format, std::span(list.begin(), list.size()));
}

std::size_t linesOf(const test::LogCapture &log) {
    const std::string text = log.text();
    return std::size_t(std::count(text.begin(), text.end(), '\n'));
}

TEST(Log, Formats) {
    const auto enoent = std::make_error_code(std::errc::no_such_file_or_directory);
    const struct {
        std::string got;
        const char *wanted;
    } rows[] = {
        {formatted("plain 100%% text"), "plain 100% text"},
        {formatted("%@ %s", "text", std::string("more")), "text more"},
        {formatted("%@", std::filesystem::path("/a b")), "/a b"},
        {formatted("%@", QStringLiteral("\u00e4")), "\u00e4"},
        {formatted("%@ %@", enoent, std::error_code()), "No such file or directory (null)"},
        {formatted("%s", static_cast<const char *>(nullptr)), "(null)"},
        {formatted("%d %ld %lld", -1, -2L, -3LL), "-1 -2 -3"},
        {formatted("%u %llu", 1u, ~0ull), "1 18446744073709551615"},
        {formatted("0x%x 0x%X %o", 255u, 255u, 8u), "0xff 0xFF 10"},
        {formatted("%05d|%-4d|%+d", 42, 42, 42), "00042|42  |+42"},
        {formatted("%f %0.2f %f", 0.5, 1.0, 2), "0.500000 1.00 2.000000"},
        {formatted("%d %u", 1.5, -1), "1.500000 18446744073709551615"},
        {formatted("%d %@", true, 7), "1 7"},
        {formatted("%@ and %d", "one"), "one and %d"},
        {formatted("nothing", 1, 2), "nothing"},
        {formatted("end %"), "end %"},
        {formatted("end %ll", 1), "end %ll"},
        {formatted("%n%p", 1, "x"), "1x"}, // no conversion writes to memory
        // A hostile name cannot forge a line, or steer a terminal.
        {formatted("%@", "a\n2026 b\r\t\x1b[2J\x7f"), "a\\n2026 b\\x0d\\t\\x1b[2J\\x7f"},
        {formatted("%@", std::string(100'000, 'x')).substr(99'990), "xxxxxxxxxx"},
        {formatted("%@", "%d %s %n"), "%d %s %n"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(row.got, row.wanted);
}

TEST(Log, LineNamesTimeProcessAndThread) {
    const std::regex form("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} \\S+\\[" +
                          std::to_string(::getpid()) + ":\\d+\\] message\n");
    EXPECT_TRUE(std::regex_match(Log::line("message"), form)) << Log::line("message");
}

TEST(Log, LinesOfManyThreadsStayWhole) {
    const test::LogCapture log;
    std::vector<std::thread> threads;
    for (int who = 0; who < 4; ++who) {
        threads.emplace_back([who] {
            ObjectLog objects;
            for (int i = 0; i < 500; ++i) {
                NSLog("direct %d %d end", who, i);
                objects.log("object %d %d end", who, i);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    const std::regex whole(".*\\] (direct|object) \\d \\d+ end");
    EXPECT_EQ(linesOf(log), 4'000u);
    std::istringstream lines(log.text());
    for (std::string line; std::getline(lines, line);)
        ASSERT_TRUE(std::regex_match(line, whole)) << line;
}

TEST(Log, ObjectLinesComeInBatches) {
    const test::LogCapture log;
    {
        ObjectLog objects;
        objects.log("%@", std::string(70'000, 'a')); // larger than a batch
        EXPECT_EQ(linesOf(log), 1u);
        objects.log("waits");
        objects.flush();
        EXPECT_EQ(linesOf(log), 2u);
        objects.log("goes with it");
    }
    EXPECT_EQ(linesOf(log), 3u);
}

TEST(Log, ALineThatNothingFollowsIsWrittenSoon) {
    const test::LogCapture log;
    ObjectLog objects;
    for (std::size_t lines = 1; lines <= 2; ++lines) {
        objects.log("alone");
        EXPECT_TRUE(test::eventually([&] { return linesOf(log) == lines; }));
    }
}

TEST(Log, ObjectLinesOfRunningJobsAreFetched) {
    const test::LogCapture log;
    std::promise<void> logged;
    std::promise<void> release;
    std::thread job([&] {
        ObjectLog objects;
        for (int i = 0; i < 3; ++i)
            objects.log("object %d", i);
        logged.set_value();
        release.get_future().wait();
        objects.log("last");
    });
    logged.get_future().wait();
    ObjectLog::flushAll();
    EXPECT_EQ(linesOf(log), 3u);
    release.set_value();
    job.join();
    ObjectLog::flushAll();
    EXPECT_EQ(linesOf(log), 4u);
}

TEST(Log, ObjectLinesEndAtTheLimit) {
    const test::LogCapture log;
    const auto written = [&](const std::function<void()> &write) {
        const auto before = log.text().size();
        write();
        return log.text().substr(before);
    };
    const auto object = [] { ObjectLog().log("an object"); };
    std::filesystem::resize_file(log.file(), Log::sizeLimit);
    // At the limit, not past it.
    EXPECT_NE(written(object).find("an object"), std::string::npos);
    const std::string told = written([&] {
        object();
        object();
    });
    EXPECT_EQ(told.find("an object"), std::string::npos);
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1);
    EXPECT_NE(written([] { NSLog("direct"); }).find("direct"), std::string::npos);
}

} // namespace
} // namespace brightsweep
