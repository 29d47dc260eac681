#include "cli/UsageChanges.h"

#include "cli/JsonWriter.h"
#include "cli/WorkRun.h"
#include "core/UtilityFunction.h"
#include "diskusage/AllDir.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace brightsweep::cli {

namespace {

constexpr std::size_t largestDocument = std::size_t(1) << 30;

struct Change {
    std::string path;
    std::uint64_t bytes = 0;
    std::uint64_t before = 0;
    std::int64_t difference() const { return std::int64_t(bytes - before); }
};

std::string words(std::int64_t bytes) {
    const auto size = std::uint64_t(bytes < 0 ? -bytes : bytes);
    return (bytes < 0 ? "-" : "+") + UtilityFunction::convertVolSpace(size).toStdString();
}

} // namespace

bool UsageChanges::read(const std::filesystem::path &file, const std::string &folder,
                        Output &output) {
    const auto wrong = [&](const std::string &what) {
        output.warning(paths::display(file).toStdString() + ": " + what);
        return false;
    };
    const auto text = readSmallFile(file, largestDocument);
    if (!text)
        return wrong(text.error().message());
    if (const std::string problem = m_before.read(*text); !problem.empty())
        return wrong(problem);
    if (m_before.folder != folder)
        return wrong("is about " + paths::display(m_before.folder).toStdString());
    return true;
}

bool UsageChanges::show(const AllDir &root, Output &output) const {
    std::vector<Change> changes;
    auto gone = m_before.bytes;
    std::vector<std::pair<const AllDir *, std::size_t>> waiting{{&root, 0}};
    while (!waiting.empty()) {
        const auto [node, depth] = waiting.back();
        waiting.pop_back();
        Change change{node->szPath(), std::uint64_t(node->iSize.load()), 0};
        if (const auto known = gone.find(change.path); known != gone.end()) {
            change.before = known->second;
            gone.erase(known);
        }
        if (change.bytes != change.before)
            changes.push_back(std::move(change));
        if (depth == m_before.depth)
            continue;
        for (const auto &slot : node->ppChildren()) {
            if (const AllDir *const child = slot.load())
                waiting.emplace_back(child, depth + 1);
        }
    }
    for (const auto &[path, bytes] : gone) {
        if (bytes > 0)
            changes.push_back({path, 0, bytes});
    }
    std::sort(changes.begin(), changes.end(), [](const Change &first, const Change &second) {
        return first.difference() != second.difference() ? first.difference() > second.difference()
                                                         : first.path < second.path;
    });
    if (output.json) {
        JsonWriter json;
        json.beginObject();
        json.key("schema").value(1);
        json.key("command").value("usage");
        json.path("path", root.szPath());
        writeInterrupted(json);
        json.key("changes").beginArray();
        for (const Change &change : changes) {
            json.beginObject();
            json.path("path", change.path);
            json.key("bytes").value(change.bytes);
            json.key("before").value(change.before);
            json.key("difference").value(change.difference());
            json.endObject();
        }
        json.endArray();
        json.endObject();
        return output.data(json.take());
    }
    Table table({true, true, false});
    for (const Change &change : changes) {
        table.row({words(change.difference()),
                   UtilityFunction::convertVolSpace(change.bytes).toStdString(), change.path});
    }
    return output.data(changes.empty() ? "Nothing became larger or smaller.\n" : table.text());
}

} // namespace brightsweep::cli
