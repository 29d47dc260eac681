#include "diskusage/UsageRemoval.h"

#include "foundation/Log.h"
#include "foundation/PathBytes.h"
#include "linux/RemovalError.h"
#include "platform/Platform.h"

namespace brightsweep {

UsageRemoval::UsageRemoval(const Options &options)
    : m_options(options), m_removal(options.stop), m_trash(options.stop) {}

Result<RemovalTarget> UsageRemoval::targetOf(const RemovalRoot &root,
                                             const std::filesystem::path &item) {
    std::string_view relative = item.native();
    const std::string top = paths::withTrailingSlash(root.path.native());
    if (!relative.starts_with(top))
        return std::errc::invalid_argument;
    relative.remove_prefix(top.size());
    while (relative.ends_with('/'))
        relative.remove_suffix(1);
    const std::filesystem::path way(relative);
    for (const std::filesystem::path &name : way) {
        if (name.empty() || name == "." || name == "..")
            return std::errc::invalid_argument;
    }
    if (way.empty())
        return std::errc::invalid_argument;
    return RemovalTarget{root, way};
}

std::error_code UsageRemoval::refusalOf(const OpenItem &item) {
    FileOperations &files = *Platform::current().files;
    const auto error = files.checkRemoval(item);
    if (!isForWantOfPermission(error))
        return error;
    const auto refusal = files.refusalWithRights(item);
    return refusal ? refusal : error;
}

std::error_code UsageRemoval::refusalBeforehand(const RemovalTarget &target, OpenItem &previous) {
    FileOperations &files = *Platform::current().files;
    auto item = files.openItem(target, previous.folder ? &previous : nullptr);
    if (!item)
        return {};
    previous = *std::move(item);
    const auto error = refusalOf(previous);
    return isForWantOfPermission(error) ? std::error_code() : error;
}

UsageRemoval::Outcome UsageRemoval::act(const UsageItem &item) {
    const auto stays = [](std::error_code error) {
        return Outcome{false, false, error, {}, isForWantOfPermission(error)};
    };
    const auto reached = m_removal.reach(item.target);
    if (!reached) {
        Outcome outcome = stays(reached.error());
        outcome.wasGone = outcome.error == std::errc::no_such_file_or_directory;
        return outcome;
    }
    FreedBytes freed;
    const auto now = lookAtItem(item.target, *reached, {0, m_options.stop, &freed});
    if (!now)
        return stays(now.error());
    if (item.isReplacedBy(*now) || item.hasGainedBy(*now)) {
        NSLog("Not removed, for it has changed: %@", item.target.path());
        // What may not go at all changes as it likes.
        const auto refusal = refusalOf(*reached);
        return stays(refusal && !isForWantOfPermission(refusal) ? refusal : RemovalError::Changed);
    }
    if (m_options.act == Act::Trash) {
        const auto error = m_options.applies ? m_trash.move(*reached) : m_trash.check(*reached);
        return error ? stays(error) : Outcome{true, false, {}, {}, false};
    }
    if (!m_options.applies) {
        const auto error = refusalOf(*reached);
        if (error && !(m_options.withRights && isForWantOfPermission(error)))
            return stays(error);
        m_freed.add(freed);
        return {true, false, {}, {}, false};
    }
    RemovalOutcome outcome = m_removal.remove(item.target, reached);
    if (outcome.removed)
        m_freed.add(freed);
    return {outcome.removed, false, outcome.error, std::move(outcome.words), outcome.neededRights};
}

} // namespace brightsweep
