#pragma once

#include "foundation/SmallFile.h"
#include "support/FaultPlatform.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brightsweep::test {

/// A trash of three folders whose sizes stand in `directorysizes`, beside one that is elsewhere. It
/// notes what that file holds at each removal.
class SizedTrash {
public:
    SizedTrash() {
        for (const char *name : {"a", "b", "c"}) {
            tree.file(std::string("Trash/files/") + name + "/file");
            tree.file(std::string("Trash/info/") + name + ".trashinfo");
            m_lines += std::string("1 1 ") + name + "\n";
        }
        m_sizes = tree.file("Trash/directorysizes", m_lines + m_other);
        m_fault.setFault([this](std::string_view call, const std::filesystem::path &) {
            if (call == "removeItem")
                m_seen.push_back(*readSmallFile(m_sizes));
            return std::error_code();
        });
    }
    std::filesystem::path files() const { return tree.path("Trash/files"); }
    void expectEmptiedWithOneWrite() {
        EXPECT_EQ(m_seen, std::vector<std::string>(3, m_lines + m_other));
        EXPECT_EQ(*readSmallFile(m_sizes), m_other);
        EXPECT_TRUE(tree.snapshot("Trash/info").empty());
    }

    TestTree tree;

private:
    const std::string m_other = "1 1 other\n";
    std::string m_lines;
    std::filesystem::path m_sizes;
    std::vector<std::string> m_seen;
    FaultPlatform m_fault;
};

} // namespace brightsweep::test
