#pragma once

#include "platform/AdministratorRights.h"
#include "platform/Platform.h"
#include "support/LogCapture.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace brightsweep::test {

constexpr uid_t ordinaryUser = 61234;

/// The process acts as a user without rights while this lives, with a runtime folder and a data
/// folder of the user's own.
class AsOrdinaryUser {
public:
    AsOrdinaryUser() {
        needRoot();
        for (auto &[variable, before] : m_folders) {
            before = std::getenv(variable);
            const auto folder = TestEnvironment::current().root() / "user" / variable;
            std::filesystem::create_directories(folder);
            ::chmod(folder.c_str(), 0700);
            m_entered = ::chown(folder.c_str(), ordinaryUser, ordinaryUser) == 0;
            ::setenv(variable, folder.c_str(), 1);
        }
        m_entered = m_entered && ::seteuid(ordinaryUser) == 0;
    }
    ~AsOrdinaryUser() {
        if (m_entered && ::seteuid(0) != 0)
            std::abort();
        for (const auto &[variable, before] : m_folders)
            ::setenv(variable, before.c_str(), 1);
    }
    explicit operator bool() const { return m_entered && ::geteuid() == ordinaryUser; }

private:
    std::map<const char *, std::string> m_folders = {{"XDG_RUNTIME_DIR", {}},
                                                     {"XDG_DATA_HOME", {}}};
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

    RightsResult request(RightsPurpose wanted) override {
        ++requests;
        const bool isGranted = result.outcome == RightsOutcome::Granted;
        if (isGranted)
            purpose = wanted;
        isAlive = isGranted || (isAlive && wanted > purpose);
        return result;
    }
    int release() override {
        ++releases;
        isAlive = false;
        return releaseStatus;
    }
    RightsToken token() const override { return isAlive ? RightsToken{7} : RightsToken{}; }
    bool accepts(const RightsToken &given) override { return isAlive && given == token(); }
    std::vector<PrivilegedReply> removeItems(const RightsToken &given,
                                             const PrivilegedRemoval &removal,
                                             const std::atomic<bool> *) override {
        const std::lock_guard lock(m_mutex);
        ++batches;
        std::vector<PrivilegedReply> replies;
        for (const auto &item : removal.items) {
            const auto path = removal.root.path / removal.way / item.name;
            removals.push_back(path);
            if (!accepts(given))
                replies.push_back({false, false, "wrong token"});
            else
                replies.push_back(reply ? reply(path) : removeAsRoot(path));
        }
        return replies;
    }
    /// What happens unless the test says otherwise.
    static PrivilegedReply removeAsRoot(const std::filesystem::path &path) {
        const uid_t user = ::geteuid();
        const bool entered = ::seteuid(0) == 0;
        removeTree(path);
        return {entered && ::seteuid(user) == 0, true, {}};
    }
    PrivilegedReply dropCaches(const RightsToken &) override { return {}; }
    PackagesReply removePackages(const RightsToken &given, const PackageRemoval &removal) override {
        packageRemovals.push_back(removal);
        if (!accepts(given) || purpose != RightsPurpose::FilesAndPackages)
            return {PackagesOutcome::Refused, {}, "wrong token"};
        return packagesReply ? packagesReply(removal)
                             : PackagesReply{PackagesOutcome::Removed, removal.names, {}};
    }

    RightsPurpose purpose = RightsPurpose::Files; ///< of what was granted last
    RightsResult result{RightsOutcome::Granted, 0, {}};
    std::function<PrivilegedReply(const std::filesystem::path &)> reply;
    int releaseStatus = 0;
    bool isAlive = false;
    int requests = 0;
    int releases = 0;
    int batches = 0;
    std::vector<std::filesystem::path> removals;
    std::function<PackagesReply(const PackageRemoval &)> packagesReply;
    std::vector<PackageRemoval> packageRemovals;

private:
    std::mutex m_mutex;
};

} // namespace brightsweep::test
