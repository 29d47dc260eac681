#pragma once

#include "platform/ApplicationSource.h"
#include "uninstall/AppItems.h"

#include <string>
#include <vector>

namespace brightsweep {

/// The catalogue of what can be uninstalled: the bundles first, then what each source of the
/// platform lists. Making one lists everything and blocks meanwhile; made on a worker, one at a
/// time, and dropped once its records have been taken.
class UninstallAppInfo {
public:
    /// A source whose applications are missing, and why, in English.
    struct Failure {
        ApplicationKind kind;
        std::string reason;
    };

    UninstallAppInfo();

    const std::vector<AppItems::Pointer> &allAppsInfo() const { return m_allAppsInfo; }
    const std::vector<Failure> &failures() const { return m_failures; }

private:
    void addApplicationsOf(ApplicationSource &source);

    std::vector<AppItems::Pointer> m_allAppsInfo;
    std::vector<Failure> m_failures;
};

} // namespace brightsweep
