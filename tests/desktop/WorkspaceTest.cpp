#include "platform/Workspace.h"

#include "desktop/PrivateBus.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <stdlib.h>

#include <filesystem>
#include <fstream>

namespace brightsweep {
namespace {

namespace fs = std::filesystem;
using test::eventually;
using test::PlayedService;
using test::PrivateBus;

class WorkspaceTest : public testing::Test {
protected:
    void SetUp() override {
        const fs::path programs = m_work / "programs";
        fs::create_directories(programs);
        std::ofstream(programs / "xdg-open")
            << "#!/bin/sh\nprintf %s \"$1\" >'" << m_opened.native() << ".new'\nmv '"
            << m_opened.native() << ".new' '" << m_opened.native() << "'\n"
            << "while [ -e '" << m_holding.native() << "' ]; do sleep 0.01; done\n";
        fs::permissions(programs / "xdg-open", fs::perms::owner_all);
        m_path = ::getenv("PATH");
        ::setenv("PATH", (programs.native() + ":" + m_path).c_str(), 1);
    }
    void TearDown() override {
        Platform::setCurrent(makeNullPlatform("at the end"));
        ::setenv("PATH", m_path.c_str(), 1);
    }
    std::string opened() {
        eventually([this] { return fs::exists(m_opened); });
        return test::textOf(m_opened);
    }

    const fs::path m_work = test::TestEnvironment::current().work();
    const fs::path m_opened = m_work / "opened";
    const fs::path m_holding = m_work / "holding"; // keeps the opener running
    std::string m_path;
};

TEST_F(WorkspaceTest, RevealsByTheFileManager) {
    const PrivateBus bus;
    PlayedService files(bus, "/org/freedesktop/FileManager1");
    ASSERT_TRUE(files.takeName("org.freedesktop.FileManager1"));
    const fs::path hostile = m_work / "a b%\n\xff&<#?~";
    std::ofstream(hostile) << "x";
    EXPECT_TRUE(Platform::current().workspace->reveal(hostile));
    ASSERT_TRUE(eventually([&] { return files.count("ShowItems") > 0; }));
    const std::string wanted = "file://" + m_work.native() + "/a%20b%25%0A%FF%26%3C%23%3F~";
    EXPECT_EQ(files.callsOf("ShowItems")[0].arguments().value(0).toStringList(),
              QStringList(QString::fromStdString(wanted)));
    EXPECT_FALSE(Platform::current().workspace->reveal(m_work / "none"));
    EXPECT_FALSE(Platform::current().workspace->reveal("relative"));
}

TEST_F(WorkspaceTest, OpensTheFolderWhereNobodyReveals) {
    const PrivateBus bus;
    PlayedService files(bus, "/org/freedesktop/FileManager1");
    files.answer = [](const QDBusMessage &call) {
        return call.createErrorReply(QStringLiteral("org.test.Error"), QStringLiteral("no"));
    };
    ASSERT_TRUE(files.takeName("org.freedesktop.FileManager1"));
    std::ofstream(m_work / "item") << "x";
    EXPECT_TRUE(Platform::current().workspace->reveal(m_work / "item"));
    EXPECT_EQ(opened(), m_work.native());
}

TEST_F(WorkspaceTest, OpensTheFolderWithoutABus) {
    fs::create_symlink("nowhere", m_work / "item");
    EXPECT_TRUE(Platform::current().workspace->reveal(m_work / "item"));
    EXPECT_EQ(opened(), m_work.native());
}

TEST_F(WorkspaceTest, OpeningDoesNotWaitForTheProgram) {
    std::ofstream(m_holding) << "x";
    EXPECT_TRUE(Platform::current().workspace->open(m_work));
    EXPECT_EQ(opened(), m_work.native());
    fs::remove(m_holding);
    EXPECT_FALSE(Platform::current().workspace->open(m_work / "none"));
#ifndef __SANITIZE_THREAD__ // with it vfork() is fork(), and no error comes back
    ::setenv("PATH", "/nowhere", 1);
    EXPECT_FALSE(Platform::current().workspace->open(m_work));
#endif
}

} // namespace
} // namespace brightsweep
