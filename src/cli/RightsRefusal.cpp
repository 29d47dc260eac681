#include "cli/RightsRefusal.h"

#include "foundation/WordTable.h"
#include "platform/AdministratorRights.h"
#include "removal/NvAuthorization.h"

namespace brightsweep::cli {

namespace {

constexpr std::array refusalWords = {
    WordRow{RightsOutcome::Dismissed, "the question was dismissed"},
    WordRow{RightsOutcome::Denied, "they were denied"},
    WordRow{RightsOutcome::NoAgent, "nothing here can ask for a password"},
    WordRow{RightsOutcome::NoBus, "the system's authority cannot be reached"},
    WordRow{RightsOutcome::Failed, "asking for them failed"},
};

} // namespace

bool takeRights(RemovalJob &job, RightsPurpose purpose) {
    if (NvAuthorization::shareNvAuthorization().allocAuthorization(purpose))
        return true;
    const std::lock_guard lock(job.mutex);
    job.isRefused = true;
    return false;
}

std::string rightsRefusal() {
    const RightsResult result = NvAuthorization::shareNvAuthorization().lastResult();
    return std::string("no administrator rights: ") +
           wordsIn(refusalWords, result.outcome, "they were not given");
}

int rightsRefused(Output &output, const std::function<std::string()> &document) {
    std::string line = rightsRefusal() + ". Nothing was removed.";
    line.front() = 'N';
    output.warning(line);
    return output.json && !output.data(document()) ? Failed : RightsRefused;
}

} // namespace brightsweep::cli
