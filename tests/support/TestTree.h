#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace brightsweep::test {

/// Builds folders below one top, whatever the names: parents are made as needed, bytes go as they
/// are. Every call throws where the system refuses.
class TestTree {
public:
    /// Below TestEnvironment::current().work().
    TestTree();
    explicit TestTree(std::filesystem::path top);

    const std::filesystem::path &top() const { return m_top; }
    /// The path of a name below the top.
    std::filesystem::path path(std::string_view relative = {}) const;

    std::filesystem::path directory(std::string_view relative);
    std::filesystem::path file(std::string_view relative, std::string_view contents = "x");
    /// A file of that size without blocks.
    std::filesystem::path sparseFile(std::string_view relative, std::uint64_t size);
    std::filesystem::path link(std::string_view relative, const std::filesystem::path &target);
    std::filesystem::path hardLink(std::string_view relative, const std::filesystem::path &target);
    std::filesystem::path fifo(std::string_view relative);
    std::filesystem::path socket(std::string_view relative);
    /// A chain of that many directories "d" below the name, made relative to descriptors.
    std::filesystem::path deepChain(std::string_view relative, unsigned levels);
    void mode(std::string_view relative, unsigned bits);
    /// Gives it, and all below it, to a user.
    void own(std::string_view relative, unsigned user);

    bool exists(std::string_view relative) const;
    /// Every path below, relative, with its type, mode, size and contents or link target, and its
    /// inode: two of them are equal exactly if nothing has been touched in between.
    std::map<std::string, std::string> snapshot(std::string_view relative = {}) const;

private:
    std::filesystem::path m_top;
};

/// What a file holds; nothing where it cannot be read.
std::string textOf(const std::filesystem::path &file);

} // namespace brightsweep::test
