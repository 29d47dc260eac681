#include "cli/RightsRefusal.h"

#include "platform/AdministratorRights.h"
#include "removal/NvAuthorization.h"

#include <array>

namespace brightsweep::cli {

namespace {

struct RefusalWords {
    RightsOutcome outcome;
    const char *words;
};

constexpr std::array refusalWords = {
    RefusalWords{RightsOutcome::Dismissed, "the question was dismissed"},
    RefusalWords{RightsOutcome::Denied, "they were denied"},
    RefusalWords{RightsOutcome::NoAgent, "nothing here can ask for a password"},
    RefusalWords{RightsOutcome::NoBus, "the system's authority cannot be reached"},
    RefusalWords{RightsOutcome::Failed, "asking for them failed"},
};

} // namespace

int rightsRefused(Output &output) {
    const RightsResult result = NvAuthorization::shareNvAuthorization().lastResult();
    for (const RefusalWords &row : refusalWords) {
        if (row.outcome == result.outcome)
            output.warning(std::string("No administrator rights: ") + row.words +
                           ". Nothing was removed.");
    }
    return RightsRefused;
}

} // namespace brightsweep::cli
