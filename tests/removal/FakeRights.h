#pragma once

#include "platform/AdministratorRights.h"
#include "platform/Platform.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <unistd.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <mutex>
#include <string>
#include <vector>

namespace brightsweep::test {

constexpr uid_t ordinaryUser = 61234;

/// The process acts as a user without rights while this lives.
class AsOrdinaryUser {
public:
    AsOrdinaryUser() { m_entered = ::seteuid(ordinaryUser) == 0; }
    ~AsOrdinaryUser() {
        if (m_entered && ::seteuid(0) != 0)
            std::abort();
    }
    explicit operator bool() const { return m_entered && ::geteuid() == ordinaryUser; }

private:
    bool m_entered = false;
};

/// Administrator rights that are granted, refused and used as the test says.
class FakeRights final : public AdministratorRights {
public:
    static FakeRights &install() {
        auto rights = std::make_unique<FakeRights>();
        FakeRights &installed = *rights;
        Platform::current().rights = std::move(rights);
        return installed;
    }

    RightsResult request() override {
        ++requests;
        isAlive = result.outcome == RightsOutcome::Granted;
        return result;
    }
    int release() override {
        ++releases;
        isAlive = false;
        return releaseStatus;
    }
    RightsToken token() const override { return isAlive ? RightsToken{7} : RightsToken{}; }
    bool accepts(const RightsToken &given) override { return isAlive && given == token(); }
    PrivilegedReply removeItem(const RightsToken &given, const RemovalTarget &target) override {
        const std::lock_guard lock(m_mutex);
        removals.push_back(target.path());
        if (!accepts(given))
            return {false, false, "wrong token"};
        if (reply)
            return reply(target);
        // As an administrator would.
        const uid_t user = ::geteuid();
        const bool entered = ::seteuid(0) == 0;
        removeTree(target.path());
        return {entered && ::seteuid(user) == 0, true, {}};
    }
    PrivilegedReply dropCaches(const RightsToken &) override { return {}; }

    RightsResult result{RightsOutcome::Granted, 0, {}};
    std::function<PrivilegedReply(const RemovalTarget &)> reply;
    int releaseStatus = 0;
    bool isAlive = false;
    int requests = 0;
    int releases = 0;
    std::vector<std::filesystem::path> removals;

private:
    std::mutex m_mutex;
};

/// Collects what is logged while it lives.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    std::string text() const;

private:
    std::filesystem::path m_file;
    int m_descriptor;
    int m_before;
};

} // namespace brightsweep::test
