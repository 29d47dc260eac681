#pragma once

#include "cli/ActedItem.h"
#include "cli/Command.h"
#include "duplicates/DuplicateRemoval.h"
#include "duplicates/KeepRule.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep::cli {

/// What `duplicates` does with what it found: of each group all but one file are removed, moved to
/// the trash, or made to share the blocks of that one. Never a whole group.
class DuplicatesActing {
public:
    static void configure(QCommandLineParser &parser);
    /// Nothing where no action is asked for. False, after the line of a wrong usage, where the
    /// options do not go together.
    static bool read(const QCommandLineParser &parser, Output &output,
                     std::unique_ptr<DuplicatesActing> &acting);

    /// On the worker, after the search. Without --apply every check is made, and nothing changed.
    void run(const TreeNode::List &groups, const Result<SearchRoot> &root);
    /// From any thread, as are the following; they tell what is known by then.
    void stop() { m_stop = true; }
    bool hasBegun() const { return m_begun; }
    std::string progress();
    void write(JsonWriter &json);
    std::string text();
    /// Done, PartlyFailed, or Failed after a line of warning.
    int status(Output &output);

private:
    DuplicateRemoval::Act m_act = DuplicateRemoval::Act::Remove;
    KeepRule m_keep = KeepRule::Last;
    bool m_applies = false;
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_begun{false};

    std::mutex m_mutex; // guards what follows
    std::vector<ActedItem> m_items;
    std::uint64_t m_bytesFreed = 0;
    std::string m_refusal;
};

} // namespace brightsweep::cli
