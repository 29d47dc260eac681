#include "cli/Commands.h"
#include "cli/Interruption.h"
#include "cli/JsonWriter.h"
#include "cli/LimitOptions.h"
#include "cli/UsageChanges.h"
#include "cli/UsagePicture.h"
#include "cli/UsageRemoving.h"
#include "cli/WorkRun.h"
#include "core/SettingKeys.h"
#include "core/TaskStopper.h"
#include "core/UtilityFunction.h"
#include "diskusage/FSNode.h"
#include "diskusage/NodeTreeOperator.h"
#include "diskusage/RecordingCanvas.h"
#include "diskusage/RingChart.h"
#include "diskusage/W32AllDir.h"
#include "foundation/NotificationCenter.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"

#include <QObject>

#include <algorithm>
#include <atomic>
#include <optional>

namespace brightsweep::cli {

namespace {

constexpr std::size_t partSize = 1024 * 1024;
constexpr int degreesDecimals = 1;

struct Request {
    std::filesystem::path path;
    std::uint64_t depth = 1;
    bool rings = false;
    bool list = false;
    std::uint64_t limit = 0;
    std::filesystem::path picture; ///< empty: none is wanted
    std::optional<UsageChanges> changes;
    bool removes = false;
    UsageRemoving removing;
};

struct FreeTree {
    void operator()(W32AllDir *root) const { root->FreeAll(); }
};
using Tree = std::unique_ptr<W32AllDir, FreeTree>;

void configure(QCommandLineParser &parser) {
    parser.addPositionalArgument(QStringLiteral("PATH"), QStringLiteral("The folder to measure."));
    parser.addOption({QStringLiteral("depth"),
                      QStringLiteral("Show so many levels of folders, 1 unless given."),
                      QStringLiteral("N")});
    parser.addOption(
        {QStringLiteral("rings"), QStringLiteral("Show the ring chart's sectors too.")});
    parser.addOption({QStringLiteral("list"), QStringLiteral("List files and folders by size.")});
    addLimitOptions(parser, QStringLiteral("With --list: leave out what is smaller."));
    parser.addOption({QStringLiteral("svg"),
                      QStringLiteral("Write the ring chart to the file, too, as a picture."),
                      QStringLiteral("FILE")});
    parser.addOption({QStringLiteral("compare"),
                      QStringLiteral("Show what grew since `usage` wrote the file with --json."),
                      QStringLiteral("FILE")});
    UsageRemoving::configure(parser);
}

// Done, or the exit status after the line that says what is wrong.
int understand(const QCommandLineParser &parser, Output &output, Request &request) {
    constexpr QLatin1String depth("depth");
    constexpr QLatin1String limit("limit");
    constexpr QLatin1String unit("unit");
    constexpr QLatin1String svg("svg");
    constexpr QLatin1String compare("compare");
    if (const int exit = UsageRemoving::read(parser, output, request.removing, request.removes);
        exit != Done)
        return exit;
    if (parser.positionalArguments().size() != 1 && !request.removes)
        return output.usage("Name one folder: `brightsweep-cli usage PATH`.");
    request.rings = parser.isSet(QStringLiteral("rings"));
    request.list = parser.isSet(QStringLiteral("list"));
    if (request.list && (request.rings || parser.isSet(depth)))
        return output.usage("--list goes with neither --rings nor --depth; leave them out.");
    if (request.list && (parser.isSet(svg) || parser.isSet(compare)))
        return output.usage("--list goes with neither --svg nor --compare; leave them out.");
    if (parser.isSet(compare) && (request.rings || parser.isSet(depth)))
        return output.usage("--compare goes with neither --rings nor --depth; leave them out.");
    const auto folder = pathOf(parser.positionalArguments().front(), output);
    const auto picture = pathOf(parser.value(svg), output);
    const auto compared = pathOf(parser.value(compare), output);
    if (!folder || !picture || !compared)
        return WrongUsage;
    request.picture = *picture;
    if (parser.isSet(svg) && request.picture.empty())
        return output.usage("Name the file of the picture: `--svg FILE`.");
    if (!request.list && (parser.isSet(limit) || parser.isSet(unit)))
        return output.usage("--limit and --unit are for the list; add --list.");
    if (parser.isSet(depth) && !numberOf(parser, depth))
        return output.usage("--depth takes a whole number.");
    request.depth = numberOf(parser, depth).value_or(1);
    const auto bytes = limitOf(parser, output, DSDiskUsageLimit, DSDiskUsageUnit);
    if (!bytes)
        return WrongUsage;
    request.limit = *bytes;

    FileOperations &files = *Platform::current().files;
    auto canonical = files.canonicalPath(*folder);
    std::error_code error = canonical.error();
    if (canonical) {
        request.path = *std::move(canonical);
        error = files.openDirectory(request.path).error();
    }
    if (!error && parser.isSet(compare)) {
        const bool isRead = request.changes.emplace().read(
            *compared, paths::withTrailingSlash(request.path.native()), output);
        return isRead ? Done : Failed;
    }
    if (!error)
        return Done;
    output.warning(paths::display(*folder).toStdString() + ": " + error.message());
    return Failed;
}

std::string words(std::uint64_t bytes) {
    return UtilityFunction::convertVolSpace(bytes).toStdString();
}

void tellUnread(const UnreadFolders &unread, Output &output) {
    if (unread.count == 0)
        return;
    const std::string first = paths::display(unread.first.front()).toStdString();
    output.warning(unread.count == 1 ? first + ": could not be read"
                                     : std::to_string(unread.count) +
                                           " folders could not be read, the first one is " + first);
}

// -- The size tree

// The non-null children of the nodes on the way down, to be taken one after the other: trees may
// be deeper than a call stack.
class Descent {
public:
    void enter(const AllDir &node) { m_levels.push_back({node.ppChildren(), 0}); }
    void leave() { m_levels.pop_back(); }
    std::size_t depth() const { return m_levels.size(); }
    /// The next child on the innermost level, null at its end.
    const AllDir *next() {
        Level &level = m_levels.back();
        while (level.next < level.slots.size()) {
            if (const AllDir *child = level.slots[level.next++].load())
                return child;
        }
        return nullptr;
    }

private:
    struct Level {
        AllDir::Slots slots;
        std::size_t next;
    };
    std::vector<Level> m_levels;
};

std::uint64_t countNodes(const AllDir &root) {
    std::uint64_t count = 1;
    Descent descent;
    descent.enter(root);
    while (descent.depth() > 0) {
        if (const AllDir *child = descent.next()) {
            ++count;
            descent.enter(*child);
        } else {
            descent.leave();
        }
    }
    return count;
}

void writeNode(JsonWriter &json, const AllDir &node) {
    json.path("path", node.szPath());
    json.key("bytes").value(node.iSize.load());
}

void writeChildren(JsonWriter &json, Output &output, const AllDir &root, std::uint64_t depth) {
    Descent descent;
    json.key("children").beginArray();
    descent.enter(root);
    std::size_t unwritten = 0;
    while (descent.depth() > 0) {
        const AllDir *const child = descent.depth() <= depth ? descent.next() : nullptr;
        if (!child) {
            json.endArray();
            descent.leave();
            if (descent.depth() > 0)
                json.endObject();
            continue;
        }
        json.beginObject();
        writeNode(json, *child);
        json.key("children").beginArray();
        descent.enter(*child);
        unwritten += child->szPath().size();
        if (unwritten > partSize) {
            output.data(json.takePart());
            unwritten = 0;
        }
    }
}

void writeRings(JsonWriter &json, const std::vector<RecordingCanvas::Sector> &sectors) {
    json.key("rings").beginArray();
    for (const RecordingCanvas::Sector &sector : sectors) {
        json.beginObject();
        json.path("path", sector.node->szPath());
        json.key("level").value(sector.level);
        json.key("start").value(sector.start);
        json.key("sweep").value(sector.sweep);
        json.key("inner").value(sector.inner);
        json.key("outer").value(sector.outer);
        json.key("rgb").beginArray();
        for (const std::uint8_t part : sector.fill)
            json.value(int(part));
        json.endArray();
        json.endObject();
    }
    json.endArray();
}

bool showTree(Output &output, const AllDir &root, const Request &request,
              const std::vector<RecordingCanvas::Sector> &sectors) {
    const std::uint64_t directories = countNodes(root);
    if (output.json) {
        JsonWriter json;
        json.beginObject();
        json.key("schema").value(1);
        json.key("command").value("usage");
        writeNode(json, root);
        json.key("directories").value(directories);
        writeInterrupted(json);
        writeChildren(json, output, root, request.depth);
        if (request.rings)
            writeRings(json, sectors);
        json.endObject();
        return output.data(json.take());
    }
    Table table({true, false});
    table.row({words(std::uint64_t(root.iSize.load())),
               root.szPath() + "  (" + std::to_string(directories) + " folders)"});
    Descent descent;
    descent.enter(root);
    while (descent.depth() > 0) {
        const AllDir *const child = descent.depth() <= request.depth ? descent.next() : nullptr;
        if (!child) {
            descent.leave();
            continue;
        }
        table.row({words(std::uint64_t(child->iSize.load())),
                   std::string(2 * descent.depth(), ' ') + child->name() + "/"});
        descent.enter(*child);
    }
    std::string text = table.text();
    if (request.rings) {
        Table rings({true, true, true, false, false});
        rings.row({"Level", "Start", "Sweep", "Colour", "Path"});
        for (const RecordingCanvas::Sector &sector : sectors) {
            const QString colour = QStringLiteral("%1,%2,%3")
                                       .arg(sector.fill[0])
                                       .arg(sector.fill[1])
                                       .arg(sector.fill[2]);
            rings.row({std::to_string(sector.level),
                       QString::number(sector.start, 'f', degreesDecimals).toStdString(),
                       QString::number(sector.sweep, 'f', degreesDecimals).toStdString(),
                       colour.toStdString(), sector.node->szPath()});
        }
        text += "\n" + rings.text();
    }
    return output.data(text);
}

int measureTree(const Request &request, Output &output) {
    const std::string path = paths::withTrailingSlash(request.path.native());
    const Tree root(W32AllDir::newRoot());
    std::atomic<std::int64_t> levels{0};
    std::atomic<std::int64_t> finished{0};
    NotificationCenter &center = NotificationCenter::defaultCenter();
    QObject observer;
    center.addObserver(&observer, QStringLiteral("GetDirTotalLevel"),
                       [&](const Notification &notification) {
                           levels = notification.userInfo[QStringLiteral("DirLevels")].toLongLong();
                       });
    center.addObserver(&observer, QStringLiteral("NeedUpdateProgress"),
                       [&](const Notification &) { ++finished; });
    AllDir::bStopScan = false;
    return runWork({[&] { root->ListAllDir(path, true); }, [] { AllDir::bStopScan = true; },
                    [&] {
                        return std::to_string(finished) + " of " + std::to_string(levels) +
                               " folders, " + words(std::uint64_t(root->iSize.load()));
                    },
                    [&](bool leftBehind) {
                        center.removeObserver(&observer);
                        RecordingCanvas canvas;
                        // It would stop the painting as well.
                        AllDir::bStopScan = false;
                        if (!leftBehind)
                            tellUnread(RingChart::unreadIn(*root), output);
                        if (request.rings) {
                            const ChartCanvas::Use use(canvas);
                            root->Paint(360.0, 0.0, 1, 0, false);
                        }
                        // A part of the chart would look like the whole.
                        const bool isWhole = Interruption::signal() == 0;
                        if (isWhole && !request.picture.empty() &&
                            !writePicture(*root, request.picture, output))
                            return Failed;
                        const bool shown = request.changes
                                               ? request.changes->show(*root, output)
                                               : showTree(output, *root, request, canvas.sectors);
                        return shown ? Done : Failed;
                    }},
                   output);
}

// -- The list

void writeItems(JsonWriter &json, Output &output, const FSNode &root) {
    struct Level {
        const FSNode *node;
        std::size_t next;
    };
    std::vector<Level> levels{{&root, 0}};
    json.key("items").beginArray();
    std::size_t unwritten = 0;
    while (!levels.empty()) {
        Level &level = levels.back();
        if (level.next == level.node->children.size()) {
            json.endArray();
            levels.pop_back();
            if (!levels.empty())
                json.endObject();
            continue;
        }
        const FSNode &item = *level.node->children[level.next++];
        const std::filesystem::path path = item._path();
        json.beginObject();
        json.path("path", path);
        json.bytes("name", item.displayName());
        json.key("bytes").value(item.size);
        json.key("directory").value(item._isDirectory);
        json.key("items").beginArray();
        levels.push_back({&item, 0});
        unwritten += path.native().size();
        if (unwritten > partSize) {
            output.data(json.takePart());
            unwritten = 0;
        }
    }
}

bool showList(Output &output, const FSNode &root) {
    if (output.json) {
        JsonWriter json;
        json.beginObject();
        json.key("schema").value(1);
        json.key("command").value("usage");
        json.path("path", paths::withTrailingSlash(root._path().native()));
        json.key("bytes").value(root.size);
        writeInterrupted(json);
        writeItems(json, output, root);
        json.endObject();
        return output.data(json.take());
    }
    if (root.children.empty())
        output.warning("No items found in selected folder. Please try another one.");
    Table table({true, false});
    std::vector<std::pair<const FSNode *, std::size_t>> waiting;
    const auto wait = [&](const FSNode &node, std::size_t depth) {
        for (auto child = node.children.rbegin(); child != node.children.rend(); ++child)
            waiting.emplace_back(child->get(), depth);
    };
    wait(root, 0);
    while (!waiting.empty()) {
        const auto [node, depth] = waiting.back();
        waiting.pop_back();
        table.row({words(node->size), std::string(2 * depth, ' ') + node->displayName() +
                                          (node->_isDirectory ? "/" : "")});
        wait(*node, depth + 1);
    }
    return output.data(table.text());
}

int measureList(const Request &request, Output &output) {
    FSNode root(request.path, true);
    TaskStopper &stopper = TaskStopper::sharedTaskStopper();
    stopper.setStopFlags(false);
    NodeTreeOperator nodes;
    return runWork({[&] { root.size = nodes.getFistListTree(request.path, root, request.limit); },
                    [&] { stopper.setStopFlags(true); }, [] { return std::string("Measuring"); },
                    [&](bool leftBehind) {
                        if (leftBehind)
                            root.size = nodes.giveUp(root, request.limit);
                        else
                            tellUnread(nodes.unread(), output);
                        // Equals of the first level by their names, below it in the system's order.
                        std::stable_sort(root.children.begin(), root.children.end(),
                                         [](const auto &a, const auto &b) {
                                             return a->displayName() < b->displayName();
                                         });
                        root.decendingSort();
                        return showList(output, root) ? Done : Failed;
                    }},
                   output);
}

int run(const QCommandLineParser &parser, Output &output) {
    Request request;
    if (const int exit = understand(parser, output, request); exit != Done)
        return exit;
    if (request.removes)
        return request.removing.run(request.path, output);
    return request.list ? measureList(request, output) : measureTree(request, output);
}

} // namespace

const Command usageCommand = {"usage", "What takes the space below a folder", configure, run};

} // namespace brightsweep::cli
