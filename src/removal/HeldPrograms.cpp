#include "removal/HeldPrograms.h"

#include "platform/FileHolders.h"
#include "platform/Platform.h"

namespace brightsweep {

// What they hold, and every directory on the way there.
HeldPrograms::HeldPrograms() {
    for (const HeldFile &held : Platform::current().holders->heldFiles()) {
        std::string path = held.path;
        for (auto end = path.size(); end != path.npos && end > 0; end = path.rfind('/')) {
            path.resize(end);
            if (!m_programs.emplace(path, held.program).second)
                break; // and with it all above
        }
    }
}

std::string HeldPrograms::of(const std::filesystem::path &path) const {
    const auto held = m_programs.find(path.native());
    return held == m_programs.end() ? std::string() : held->second;
}

} // namespace brightsweep
