#include "cli/TextWidth.h"

#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brightsweep::cli {
namespace {

TEST(TextWidth, CountsColumnsAndCutsAtThem) {
    const struct {
        const char *text;
        std::size_t width;
        std::size_t columns;
        const char *cut;
    } rows[] = {
        {"", 0, 0, ""},
        {"plain", 5, 4, "pla\u2026"},
        {"plain", 5, 1, "\u2026"},
        {"plain", 5, 0, ""},
        {"\u00e4\u00f6\u00fc", 3, 3, "\u00e4\u00f6\u00fc"},
        {"\u6e05\u7406\u7f13\u5b58", 8, 8, "\u6e05\u7406\u7f13\u5b58"},
        {"\u6e05\u7406\u7f13\u5b58", 8, 7, "\u6e05\u7406\u7f13\u2026"},
        {"e\u0301e\u0301e\u0301", 3, 2, "e\u0301\u2026"},
        {"\U0001f600x", 3, 2, "\u2026"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(widthOf(row.text), row.width) << row.text;
        EXPECT_EQ(cutToWidth(row.text, row.columns), row.cut) << row.text << row.columns;
    }
}

// What a terminal of 40 columns is sent while a folder with a long, wide name is searched.
TEST(TextWidth, ProgressStaysOnItsLine) {
    test::TestTree tree;
    std::string name;
    for (int i = 0; i < 60; ++i)
        name += "\u6e05";
    for (int i = 0; i < 4000; ++i)
        tree.directory(name + "/" + std::to_string(i % 20) + "/" + name + std::to_string(i));
    const winsize size = {24, 40, 0, 0};
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, &size);
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::execl(BRIGHTSWEEP_CLI, BRIGHTSWEEP_CLI, "duplicates", tree.top().c_str(), nullptr);
        ::_exit(127);
    }
    std::string sent;
    char block[4096];
    for (ssize_t got = 0; (got = ::read(terminal, block, sizeof block)) > 0;)
        sent.append(block, std::size_t(got));
    ::close(terminal);
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    const std::string begin = "\r\033[K";
    for (std::size_t at = sent.find(begin); at != sent.npos;) {
        at += begin.size();
        const std::size_t next = sent.find(begin, at);
        if (next == sent.npos)
            break;
        EXPECT_LT(widthOf(sent.substr(at, next - at)), 40u);
        at = next;
    }
}

} // namespace
} // namespace brightsweep::cli
