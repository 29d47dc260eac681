#pragma once

#include <filesystem>

namespace brightsweep::test {

/// A home of its own for the running test: HOME, the XDG folders, XDG_RUNTIME_DIR, TMPDIR and
/// BRIGHTSWEEP_SYSTEM_ROOT all point below one temporary folder, which is removed at the end.
/// TestMain makes one around every test; no test reaches the real home.
class TestEnvironment {
public:
    TestEnvironment();
    ~TestEnvironment();
    TestEnvironment(const TestEnvironment &) = delete;
    TestEnvironment &operator=(const TestEnvironment &) = delete;

    /// The one of the running test.
    static TestEnvironment &current();

    /// The folder that holds everything; absolute, without links.
    const std::filesystem::path &root() const { return m_root; }
    std::filesystem::path home() const { return m_root / "home"; }
    /// What BRIGHTSWEEP_SYSTEM_ROOT names.
    std::filesystem::path system() const { return m_root / "system"; }
    /// An empty folder for whatever the test builds.
    std::filesystem::path work() const { return m_root / "work"; }

private:
    std::filesystem::path m_root;
};

/// A temporary folder for the whole process, apart from any test's; removed at its end.
std::filesystem::path makeTemporaryFolder();

/// Removes a tree of any depth, whatever its modes.
void removeTree(const std::filesystem::path &path);

} // namespace brightsweep::test
