#include "cli/Commands.h"
#include "cli/DuplicatesActing.h"
#include "cli/JsonWriter.h"
#include "cli/LimitOptions.h"
#include "cli/WorkRun.h"
#include "core/SettingKeys.h"
#include "core/UtilityFunction.h"
#include "duplicates/DuplicateFilesOpt.h"
#include "duplicates/DuplicateNodes.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"
#include "results/FileClasses.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace brightsweep::cli {

namespace {

constexpr std::size_t partSize = 64 * 1024; // of a document that is put out as it is made

void configure(QCommandLineParser &parser) {
    parser.addPositionalArgument(QStringLiteral("PATH"),
                                 QStringLiteral("The folder to search, or base64:…"));
    addLimitOptions(parser, QStringLiteral("Only files larger than this count."));
    parser.addOption({QStringLiteral("hidden"), QStringLiteral("Search hidden items too.")});
    parser.addOption(
        {QStringLiteral("system"), QStringLiteral("Search the system's directories below / too.")});
    DuplicatesActing::configure(parser);
}

struct Request {
    std::filesystem::path root;
    std::uint64_t limitBytes = 0;
    DuplicateFilesOpt::SearchOption option;
    std::unique_ptr<DuplicatesActing> acting; ///< empty where the search is all
};

// Absolute, so that "." and ".." on the way are not taken for hidden folders.
Result<std::filesystem::path> searchRoot(const std::filesystem::path &given) {
    std::error_code error;
    const auto path = std::filesystem::absolute(given, error);
    if (error)
        return error;
    if (std::any_of(path.begin(), path.end(), [](const auto &part) { return part == ".."; }))
        return Platform::current().files->canonicalPath(path);
    return std::filesystem::path(paths::withoutTrailingSlashes(path.lexically_normal().native()));
}

class Search {
public:
    explicit Search(const Request &request) : m_request(request) {
        m_search.setSearchOption(request.option);
    }

    /// Searches, and puts out what was found by means of the function; gives its exit status.
    int run(Output &output, const std::function<int(const TreeNode::List &groups)> &tell) {
        return runWork({[this] { work(); },
                        [this] {
                            m_search.stopSearch();
                            if (m_request.acting)
                                m_request.acting->stop();
                        },
                        [this] {
                            if (m_request.acting && m_request.acting->hasBegun())
                                return m_request.acting->progress();
                            return std::to_string(m_search.getProgress()) + "% " +
                                   m_search.getCurrentSearchFile();
                        },
                        [&](bool) {
                            if (!m_request.acting || !m_request.acting->hasBegun())
                                takeGroups();
                            return tell(m_groups);
                        }},
                       output);
    }

private:
    // By the work, or by who tells of work that was left behind.
    void takeGroups() {
        const std::lock_guard lock(m_taking);
        if (!m_tree && m_search.getDuplicateFiles(m_tree))
            m_groups = m_tree->children();
    }
    void work() {
        m_search.beginSearchAtPath(m_request.root, m_request.limitBytes);
        if (!m_request.acting)
            return;
        takeGroups();
        m_request.acting->run(m_groups, m_search.searchRoot());
    }

    const Request &m_request;
    DuplicateFilesOpt m_search;
    std::shared_ptr<SimpleTreeNode> m_tree;
    TreeNode::List m_groups;
    std::mutex m_taking;
};

bool isBundleGroup(const TreeNode::Pointer &group) {
    // Members of a bundle group have no date of their own.
    return !dataOf(*group->firstChild()).ModificationDate();
}

// By hand: there may be a million of them. A FileTime lies between the years 1677 and 2262.
std::string isoText(FileTime time) {
    const auto second = std::chrono::floor<std::chrono::seconds>(time);
    const auto day = std::chrono::floor<std::chrono::days>(second);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(second - day);
    std::string text(20, 'Z');
    std::size_t place = 0;
    const auto add = [&](unsigned number, std::size_t digits, char end) {
        for (std::size_t i = digits; i-- > 0; number /= 10)
            text[place + i] = char('0' + number % 10);
        text[place + digits] = end;
        place += digits + 1;
    };
    add(unsigned(int(date.year())), 4, '-');
    add(unsigned(date.month()), 2, '-');
    add(unsigned(date.day()), 2, 'T');
    add(unsigned(clock.hours().count()), 2, ':');
    add(unsigned(clock.minutes().count()), 2, ':');
    add(unsigned(clock.seconds().count()), 2, 'Z');
    return text;
}

bool writeJson(const Request &request, const TreeNode::List &groups, Output &output) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("duplicates");
    json.path("path", request.root);
    json.key("limitBytes").value(request.limitBytes);
    json.key("groups").beginArray();
    for (const auto &group : groups) {
        const SimpleNodeData &data = dataOf(*group);
        json.beginObject();
        json.bytes("name", data.name());
        json.bytes("extendName", data.extendName());
        json.key("kind").value(isBundleGroup(group) ? "bundle" : "file");
        json.key("fileType").value(fileTypeOfExtension(data.extendName()));
        json.key("bytes").value(data.fileSize());
        json.key("items").beginArray();
        for (const auto &leaf : group->children()) {
            const SimpleNodeData &item = dataOf(*leaf);
            json.beginObject();
            json.path("path", item.name());
            json.key("bytes").value(item.fileSize());
            json.key("modified");
            if (const auto date = item.ModificationDate())
                json.value(isoText(*date));
            else
                json.nullValue();
            json.endObject();
        }
        json.endArray();
        json.endObject();
        if (json.size() > partSize && !output.data(json.takePart()))
            return false;
    }
    json.endArray();
    if (request.acting)
        request.acting->write(json);
    json.endObject();
    return output.data(json.take());
}

std::string words(std::uint64_t bytes) {
    return UtilityFunction::convertVolSpace(bytes).toStdString();
}

bool writeColumns(const TreeNode::List &groups, Output &output) {
    std::string text;
    for (const auto &group : groups) {
        const SimpleNodeData &data = dataOf(*group);
        text += output.emphasised(words(data.fileSize())) + "  " +
                std::to_string(group->numberOfChildren()) +
                (isBundleGroup(group) ? " bundles\n" : " files\n");
        Table table({true, false});
        for (const auto &leaf : group->children())
            table.row({"  " + words(dataOf(*leaf).fileSize()), dataOf(*leaf).name()});
        text += table.text();
    }
    return output.data(text.empty() ? "No duplicates.\n" : text);
}

int run(const QCommandLineParser &parser, Output &output) {
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 1)
        return output.usage("Write `duplicates PATH` with one folder.");
    const auto limit = limitOf(parser, output, DSDuplicationLimit, DSDuplicatesUnit);
    if (!limit)
        return WrongUsage;

    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    Request &request = *std::make_unique<Request>().release(); // lives as the search does
    if (!DuplicatesActing::read(parser, output, request.acting))
        return WrongUsage;
    request.limitBytes = *limit;
    request.option.hidden =
        parser.isSet(QStringLiteral("hidden")) || defaults.boolForKey(DSHidenDuplication);
    request.option.system =
        parser.isSet(QStringLiteral("system")) || defaults.boolForKey(DSSystemDuplication);
    const auto given = pathOf(arguments[0], output);
    if (!given)
        return WrongUsage;
    auto root = searchRoot(*given);
    if (root) {
        request.root = std::move(*root);
        const auto directory = Platform::current().files->openDirectory(request.root);
        if (!directory)
            root = directory.error();
    }
    if (!root) {
        output.warning("The folder " + paths::display(*given).toStdString() +
                       " cannot be searched: " + root.error().message() + ".");
        return Failed;
    }

    // Never destroyed, like all that the end of the process releases at once: there may be a
    // million nodes.
    Search &search = *std::make_unique<Search>(request).release();
    return search.run(output, [&](const TreeNode::List &groups) {
        const bool written = output.json      ? writeJson(request, groups, output)
                             : request.acting ? output.data(request.acting->text())
                                              : writeColumns(groups, output);
        return !written ? Failed : request.acting ? request.acting->status(output) : Done;
    });
}

} // namespace

const Command duplicatesCommand = {"duplicates", "Finds files and applications that exist twice",
                                   configure, run};

} // namespace brightsweep::cli
