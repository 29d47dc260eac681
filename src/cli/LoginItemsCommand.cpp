#include "cli/Commands.h"
#include "cli/JsonWriter.h"
#include "cli/TextWidth.h"
#include "core/LaunchAtLogin.h"
#include "core/UKLoginItemRegistry.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "loginitems/LoginItemWords.h"
#include "platform/Platform.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <variant>

namespace brightsweep::cli {

namespace {

enum class Act { Add, Remove, Hide, Show };

struct ActRow {
    const char *name;
    Act act;
    const char *done; ///< behind the entry's file
};

constexpr ActRow acts[] = {
    {"add", Act::Add, " is added\n"},
    {"remove", Act::Remove, " is removed\n"},
    {"hide", Act::Hide, " is hidden and does not start\n"},
    {"show", Act::Show, " starts at login\n"},
};

constexpr std::size_t mostNameWidth = 40; // of the table, in columns
constexpr char listing[] = "`brightsweep-cli login-items`";

// The one entry that is meant.
struct Choice {
    std::string file;
    bool isSystems = false; ///< of the system's list, which can be hidden and shown
};

void configure(QCommandLineParser &parser) {
    parser.addOption({QStringLiteral("hidden"), QStringLiteral("What is added does not start.")});
    parser.addOption({QStringLiteral("file"), QStringLiteral("The entry in that file."),
                      QStringLiteral("NAME")});
    parser.addOption({QStringLiteral("index"), QStringLiteral("The entry of that number."),
                      QStringLiteral("N")});
}

// One that cannot be read, or that has no name, goes by its file.
const std::string &nameOf(const LoginItemEntry &entry) {
    return entry.name.empty() ? entry.file : entry.name;
}

std::vector<LoginItemEntry> systemItems() {
    return Platform::current().loginItems->systemItems().value_or({});
}

void writeEntry(JsonWriter &json, const LoginItemEntry &entry) {
    json.path("path", entry.path);
    json.key("name").value(paths::text(nameOf(entry)));
    json.key("hidden").value(entry.hidden);
    json.key("missing").value(entry.missing);
    json.key("applies").value(entry.obstacle == LoginItemObstacle::None);
    json.key("reason");
    if (const QString reason = reasonOf(entry); !reason.isEmpty())
        json.value(reason);
    else
        json.nullValue();
    json.bytes("file", entry.file);
}

std::string listAsJson(const std::vector<LoginItem> &items) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("login-items");
    json.key("items").beginArray();
    for (std::size_t index = 0; index < items.size(); ++index) {
        json.beginObject();
        json.key("index").value(index);
        json.key("url").value(items[index].url);
        writeEntry(json, items[index].entry);
        json.endObject();
    }
    json.endArray();
    json.key("system").beginArray();
    for (const LoginItemEntry &entry : systemItems()) {
        json.beginObject();
        writeEntry(json, entry);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.take();
}

std::string stateOf(const LoginItemEntry &entry) {
    if (entry.hidden)
        return "hidden";
    const QString mark = markOf(entry);
    return mark.isEmpty() ? "starts" : mark.toStdString();
}

std::string listAsTable(const std::vector<LoginItem> &items, Output &output) {
    Table table({true, false, false, false, false});
    table.row({"Index", "State", "Name", "File", "Starts"});
    const auto row = [&](std::string index, const LoginItemEntry &entry) {
        const std::string name = paths::display(nameOf(entry)).toStdString();
        table.row({std::move(index), stateOf(entry), cutToWidth(name, mostNameWidth), entry.file,
                   startedBy(entry).toStdString()});
    };
    for (std::size_t index = 0; index < items.size(); ++index)
        row(std::to_string(index), items[index].entry);
    for (const LoginItemEntry &entry : systemItems())
        row("system", entry);
    for (const LoginItem &item : items) {
        if (const QString reason = reasonOf(item.entry); !reason.isEmpty() && !output.quiet)
            output.warning(paths::display(item.entry.file).toStdString() + ": " +
                           reason.toStdString());
    }
    return table.text();
}

int list(Output &output) {
    const auto items = UKLoginItemRegistry::allLoginItems();
    if (!items) {
        output.warning("The login items cannot be read: " + items.error().message() + '.');
        return Failed;
    }
    const std::string text = output.json ? listAsJson(*items) : listAsTable(*items, output);
    return output.data(text) ? Done : Failed;
}

// The entry that the arguments name, or the exit status after a line that says why there is none.
std::variant<Choice, int> choose(const QCommandLineParser &parser, const std::string &path,
                                 Output &output) {
    const auto items = UKLoginItemRegistry::allLoginItems();
    if (!items) {
        output.warning("The login items cannot be read: " + items.error().message() + '.');
        return Failed;
    }
    const auto none = [&](const std::string &what) -> std::variant<Choice, int> {
        output.warning("There is no login item " + what + "; " + listing + " lists them.");
        return Failed;
    };
    if (parser.isSet(QStringLiteral("index"))) {
        const std::string text = argumentBytes(parser.value(QStringLiteral("index")));
        std::size_t index = 0;
        const auto read = std::from_chars(text.data(), text.data() + text.size(), index);
        if (read.ec != std::errc() || read.ptr != text.data() + text.size())
            return output.usage(std::string("Write --index with a number of the first column of ") +
                                listing + '.');
        if (index >= items->size())
            return none("of the number " + text);
        return Choice{(*items)[index].entry.file};
    }
    if (parser.isSet(QStringLiteral("file"))) {
        const auto name = pathOf(parser.value(QStringLiteral("file")), output);
        if (!name)
            return WrongUsage;
        const std::string file = name->native();
        const auto isIt = [&](const LoginItemEntry &entry) { return entry.file == file; };
        for (const LoginItem &item : *items) {
            if (isIt(item.entry))
                return Choice{file};
        }
        const auto system = systemItems();
        if (std::any_of(system.begin(), system.end(), isIt))
            return Choice{file, true};
        return none("in " + paths::display(file).toStdString());
    }
    std::vector<std::string> files;
    for (const LoginItem &item : *items) {
        if (item.entry.path == path)
            files.push_back(item.entry.file);
    }
    if (files.empty())
        return none("for " + paths::display(path).toStdString());
    if (files.size() > 1)
        return output.usage("Write --file NAME or --index N: " + std::to_string(files.size()) +
                            " login items start " + paths::display(path).toStdString() + '.');
    return Choice{files.front()};
}

std::error_code carryOut(Act act, const Choice &choice) {
    if (choice.isSystems && act != Act::Remove)
        return Platform::current().loginItems->setSystemItemStarted(choice.file, act == Act::Show);
    if (act != Act::Remove)
        return UKLoginItemRegistry::setHidden(choice.file, act == Act::Hide);
    const std::error_code error = UKLoginItemRegistry::removeLoginItemWithFile(choice.file);
    // The program's own entry and its flag go together.
    if (!error && choice.file == LaunchAtLogin::ownFile())
        LaunchAtLogin::writeFileOfLaunchAppWhenLogin(QStringLiteral("0"));
    return error;
}

// Why the entry in that file starts nothing, or not everywhere.
QString reasonOfFile(const std::string &file) {
    const auto items = UKLoginItemRegistry::allLoginItems();
    for (const LoginItem &item : items.value_or(std::vector<LoginItem>())) {
        if (item.entry.file == file)
            return reasonOf(item.entry);
    }
    return {};
}

int tell(const ActRow &act, const std::string &file, std::error_code error, Output &output) {
    const std::string shown = paths::display(file).toStdString();
    const char *done = act.done;
    if (error) {
        output.warning(shown + ": " + error.message());
    } else if (const QString reason = act.act == Act::Show ? reasonOfFile(file) : QString();
               !reason.isEmpty()) {
        output.warning(shown + ": " + reason.toStdString());
        done = " is shown\n";
    }
    if (!output.json)
        return !error && !output.data(shown + done) ? Failed : error ? Failed : Done;
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("login-items");
    json.key("action").value(act.name);
    json.bytes("file", file);
    json.key("error");
    if (error)
        json.value(error.message());
    else
        json.nullValue();
    json.endObject();
    return output.data(json.take()) && !error ? Done : Failed;
}

int run(const QCommandLineParser &parser, Output &output) {
    const QStringList arguments = parser.positionalArguments();
    const bool isNamed =
        parser.isSet(QStringLiteral("file")) || parser.isSet(QStringLiteral("index"));
    if (arguments.isEmpty() && !isNamed && !parser.isSet(QStringLiteral("hidden")))
        return list(output);
    const auto act = std::find_if(std::begin(acts), std::end(acts), [&](const ActRow &row) {
        return !arguments.isEmpty() && arguments.constFirst() == QLatin1String(row.name);
    });
    const bool isAdding = act != std::end(acts) && act->act == Act::Add;
    const bool isTwice =
        parser.isSet(QStringLiteral("file")) && parser.isSet(QStringLiteral("index"));
    if (act == std::end(acts) || isTwice || (isAdding && isNamed) ||
        (!isAdding && parser.isSet(QStringLiteral("hidden"))) ||
        arguments.size() != (isNamed ? 1 : 2))
        return output.usage("Write `brightsweep-cli login-items`, `login-items add PATH "
                            "[--hidden]`, or remove, hide or show with PATH, --file NAME or "
                            "--index N.");
    const std::string argument = isNamed ? std::string() : argumentBytes(arguments[1]);
    const auto given = isNamed ? std::filesystem::path() : pathOf(arguments[1], output);
    if (!given)
        return WrongUsage;
    std::filesystem::path path = *given;
    std::error_code error;
    if (!path.empty())
        path = paths::withoutTrailingSlashes(
            std::filesystem::absolute(path, error).lexically_normal().native());
    if (isAdding) {
        const auto file =
            UKLoginItemRegistry::addLoginItem(path, parser.isSet(QStringLiteral("hidden")));
        return tell(*act, file ? *file : argument, file.error(), output);
    }
    const auto choice = choose(parser, path.native(), output);
    if (const int *status = std::get_if<int>(&choice))
        return *status;
    const auto &chosen = std::get<Choice>(choice);
    return tell(*act, chosen.file, carryOut(act->act, chosen), output);
}

} // namespace

const Command loginItemsCommand = {"login-items", "What starts with the session, and changing it",
                                   configure, run};

} // namespace brightsweep::cli
