#pragma once

#include <filesystem>
#include <string>

namespace brightsweep {

/// The programs that start with the user's session, as the launch-at-login flag needs them.
/// Main thread.
class LoginItemRegistry {
public:
    virtual ~LoginItemRegistry() = default;
    /// Empty when the registry works, else the reason why it does not.
    virtual std::string unavailableReason() const { return {}; }

    /// The place of the entry for that program, or -1.
    virtual int indexForLoginItemWithPath(const std::filesystem::path &path) = 0;
    virtual bool removeLoginItemAtIndex(int index) = 0;
    virtual bool addLoginItemWithPath(const std::filesystem::path &path, bool hideIt) = 0;
};

/// The registry where there is none: nothing is in it and nothing can be added.
class NullLoginItemRegistry final : public LoginItemRegistry {
public:
    explicit NullLoginItemRegistry(std::string reason) : m_reason(std::move(reason)) {}
    std::string unavailableReason() const override { return m_reason; }
    int indexForLoginItemWithPath(const std::filesystem::path &) override { return -1; }
    bool removeLoginItemAtIndex(int) override { return false; }
    bool addLoginItemWithPath(const std::filesystem::path &, bool) override { return false; }

private:
    std::string m_reason;
};

} // namespace brightsweep
