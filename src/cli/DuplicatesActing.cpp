#include "cli/DuplicatesActing.h"

#include "cli/JsonWriter.h"
#include "duplicates/DuplicateNodes.h"
#include "removal/RemovalRun.h"
#include "removal/TrashRecord.h"

#include <array>

namespace brightsweep::cli {

namespace {

using Act = DuplicateRemoval::Act;

struct ActWords {
    Act act;
    const char *action; ///< in the document
    const char *done;   ///< in columns
    const char *wouldBe;
};

constexpr std::array actWords = {
    ActWords{Act::Remove, "remove", "removed", "would be removed"},
    ActWords{Act::Trash, "trash", "moved to the trash", "would be moved to the trash"},
    ActWords{Act::Share, "share", "shared", "would be shared"},
};

const ActWords &wordsOf(Act act) {
    return *std::find_if(actWords.begin(), actWords.end(),
                         [act](const ActWords &row) { return row.act == act; });
}

} // namespace

void DuplicatesActing::configure(QCommandLineParser &parser) {
    parser.addOption(
        {QStringLiteral("remove"), QStringLiteral("Remove all files of each group but one.")});
    parser.addOption(
        {QStringLiteral("trash"), QStringLiteral("With --remove: move them to the trash.")});
    parser.addOption({QStringLiteral("share"),
                      QStringLiteral("Make them share the blocks of that one, where the file "
                                     "system can.")});
    parser.addOption({QStringLiteral("keep"),
                      QStringLiteral("Which one stays: last (of the group's list, the default), "
                                     "first, newest, oldest or shortest (path)."),
                      QStringLiteral("RULE")});
    parser.addOption({QStringLiteral("apply"),
                      QStringLiteral("Really do it; without it only what would happen is shown.")});
}

bool DuplicatesActing::read(const QCommandLineParser &parser, Output &output,
                            std::unique_ptr<DuplicatesActing> &acting) {
    const auto isSet = [&](const char *name) { return parser.isSet(QLatin1String(name)); };
    const bool acts = isSet("remove") || isSet("share");
    if (isSet("remove") && isSet("share")) {
        output.usage("Write either --remove or --share.");
        return false;
    }
    if (isSet("trash") && !isSet("remove")) {
        output.usage("Write --remove --trash.");
        return false;
    }
    if (!acts && (isSet("keep") || isSet("apply"))) {
        output.usage("Write --remove or --share with --keep and --apply.");
        return false;
    }
    auto made = std::make_unique<DuplicatesActing>();
    if (isSet("keep")) {
        const auto rule = keepRuleOf(parser.value(QStringLiteral("keep")).toStdString());
        if (!rule) {
            output.usage("Write last, first, newest, oldest or shortest behind --keep.");
            return false;
        }
        made->m_keep = *rule;
    }
    made->m_act = isSet("share") ? Act::Share : isSet("trash") ? Act::Trash : Act::Remove;
    made->m_applies = isSet("apply");
    if (acts)
        acting = std::move(made);
    return true;
}

void DuplicatesActing::run(const TreeNode::List &groups, const Result<SearchRoot> &root) {
    if (m_stop || groups.empty() || !root)
        return;
    m_begun = true;
    RemovalRun::Begun begun;
    if (m_applies) {
        begun = RemovalRun::begin("brightsweep-cli duplicates");
        if (!begun.run) {
            const std::lock_guard lock(m_mutex);
            m_refusal = RemovalRun::refusal(begun).toStdString();
            return;
        }
    }
    std::optional<RemovalRun::Busy> busy;
    if (begun.run)
        busy.emplace(*begun.run);
    const TrashBatch batch;
    DuplicateRemoval removal(*root, {.act = m_act, .applies = m_applies, .stop = &m_stop});
    for (const auto &group : groups) {
        const auto leaves = group->children();
        const auto kept = leafToKeep(*group, m_keep);
        auto members = membersOf(*group);
        for (std::size_t i = 0; i < members.size(); ++i)
            members[i].goes = leaves[i] != kept;
        for (std::size_t i = 0; i < members.size(); ++i) {
            if (!members[i].goes)
                continue;
            const auto outcome = removal.act(members, i);
            // What a stop cut short has not failed.
            if (!outcome.done && m_stop)
                return;
            const std::lock_guard lock(m_mutex);
            m_bytesFreed += outcome.bytesFreed;
            m_items.push_back({members[i].path.native(), dataOf(*leaves[i]).fileSize(),
                               outcome.done ? std::string() : outcome.error.message()});
        }
    }
}

std::string DuplicatesActing::progress() {
    const std::lock_guard lock(m_mutex);
    return m_items.empty() ? std::string() : m_items.back().path;
}

void DuplicatesActing::write(JsonWriter &json) {
    const std::lock_guard lock(m_mutex);
    json.key("action").value(wordsOf(m_act).action);
    json.key("applied").value(m_applies);
    json.key("bytesFreed").value(m_bytesFreed);
    const std::vector<ActedItem> none;
    writeActed(json, "removed", m_act == Act::Share ? none : m_items, false);
    writeActed(json, "shared", m_act == Act::Share ? m_items : none, false);
    writeActed(json, "failed", m_items, true);
}

std::string DuplicatesActing::text() {
    const std::lock_guard lock(m_mutex);
    return actedText(m_items, m_applies ? wordsOf(m_act).done : wordsOf(m_act).wouldBe,
                     m_bytesFreed, m_applies);
}

int DuplicatesActing::status(Output &output) {
    const std::lock_guard lock(m_mutex);
    if (!m_refusal.empty()) {
        output.warning(m_refusal);
        return Failed;
    }
    return anyStays(m_items) ? PartlyFailed : Done;
}

} // namespace brightsweep::cli
