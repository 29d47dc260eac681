#include "cli/Commands.h"
#include "cli/JsonWriter.h"
#include "core/LaunchAtLogin.h"
#include "core/SettingKeys.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "preferences/PreferenceViewController.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace brightsweep::cli {

namespace {

const char *typeName(SettingType type) {
    switch (type) {
    case SettingType::Integer:
        return "integer";
    case SettingType::Float:
        return "float";
    case SettingType::Bool:
        return "bool";
    case SettingType::Text:
        break;
    }
    return "string";
}

QString shortest(float number) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
    return QString::fromLatin1(buffer, end - buffer);
}

// How a value of the setting is written for people and read back by `set`.
QString textOf(const SettingKey &setting, const QVariant &value) {
    switch (setting.type) {
    case SettingType::Integer:
        return QString::number(value.toLongLong());
    case SettingType::Float:
        return shortest(value.toFloat());
    case SettingType::Bool:
        return value.toBool() ? QStringLiteral("YES") : QStringLiteral("NO");
    case SettingType::Text:
        break;
    }
    return value.toString();
}

// What the program sees when it reads the setting.
QVariant currentValue(const SettingKey &setting) {
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    switch (setting.type) {
    case SettingType::Integer:
        return qlonglong(defaults.integerForKey(setting.key));
    case SettingType::Float:
        return defaults.floatForKey(setting.key);
    case SettingType::Bool:
        return defaults.boolForKey(setting.key);
    case SettingType::Text:
        break;
    }
    return defaults.stringForKey(setting.key);
}

void writeValue(JsonWriter &json, const SettingKey &setting, const QVariant &value) {
    if (!value.isValid())
        return json.nullValue();
    switch (setting.type) {
    case SettingType::Integer:
        return json.value(value.toLongLong());
    case SettingType::Float:
        return json.value(shortest(value.toFloat()).toDouble());
    case SettingType::Bool:
        return json.value(value.toBool());
    case SettingType::Text:
        return json.value(value.toString());
    }
}

void writeSetting(JsonWriter &json, const SettingKey &setting) {
    json.key("key").value(QString(setting.key));
    writeValue(json.key("value"), setting, currentValue(setting));
    writeValue(json.key("default"), setting, setting.defaultValue());
    json.key("type").value(typeName(setting.type));
}

void beginDocument(JsonWriter &json) {
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("settings");
}

int finish(JsonWriter &json, Output &output) {
    json.endObject();
    return output.data(json.take()) ? Done : Failed;
}

int list(Output &output) {
    if (output.json) {
        JsonWriter json;
        beginDocument(json);
        json.key("settings").beginArray();
        for (const SettingKey &setting : settingKeys) {
            json.beginObject();
            writeSetting(json, setting);
            json.endObject();
        }
        json.endArray();
        return finish(json, output);
    }
    Table table({false, true, true, false});
    table.row({"KEY", "VALUE", "DEFAULT", "TYPE"});
    for (const SettingKey &setting : settingKeys) {
        const QVariant standard = setting.defaultValue();
        table.row({QString(setting.key).toStdString(),
                   textOf(setting, currentValue(setting)).toStdString(),
                   standard.isValid() ? textOf(setting, standard).toStdString() : "none",
                   typeName(setting.type)});
    }
    return output.data(table.text()) ? Done : Failed;
}

int show(const SettingKey &setting, Output &output) {
    if (output.json) {
        JsonWriter json;
        beginDocument(json);
        writeSetting(json, setting);
        return finish(json, output);
    }
    return output.data(textOf(setting, currentValue(setting)).toStdString() + "\n") ? Done : Failed;
}

std::optional<bool> boolFromWord(const std::string &word) {
    constexpr struct {
        const char *word;
        bool value;
    } words[] = {{"YES", true}, {"yes", true}, {"true", true},   {"1", true},
                 {"NO", false}, {"no", false}, {"false", false}, {"0", false}};
    for (const auto &known : words) {
        if (word == known.word)
            return known.value;
    }
    return std::nullopt;
}

template <typename Number>
bool readWhole(const std::string &text, Number &number) {
    const char *const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    return read.ec == std::errc() && read.ptr == end;
}

// The value to store, or nothing where the text is not of the setting's type.
QVariant valueFromText(const SettingKey &setting, const std::string &text) {
    switch (setting.type) {
    case SettingType::Integer: {
        std::int64_t number = 0;
        if (readWhole(text, number) && number >= setting.least && number <= setting.most)
            return qlonglong(number);
        return {};
    }
    case SettingType::Float: {
        float number = 0;
        if (readWhole(text, number) && number >= float(setting.least) &&
            number <= float(setting.most))
            return number;
        return {};
    }
    case SettingType::Bool: {
        const auto value = boolFromWord(text);
        return value ? QVariant(*value) : QVariant();
    }
    case SettingType::Text:
        break;
    }
    const auto value = QString::fromUtf8(text.data(), qsizetype(text.size()));
    if (setting.key == languageKey && std::none_of(windowLanguages.begin(), windowLanguages.end(),
                                                   [&](const WindowLanguage &language) {
                                                       return value ==
                                                              QLatin1String(language.locale);
                                                   }))
        return {};
    return value;
}

std::string wantedText(const SettingKey &setting) {
    switch (setting.type) {
    case SettingType::Integer: {
        const std::string wanted = "a whole number from " + std::to_string(setting.least);
        if (setting.most == std::numeric_limits<std::int64_t>::max())
            return wanted + " up";
        return wanted + " to " + std::to_string(setting.most);
    }
    case SettingType::Float:
        return "a number from " + std::to_string(setting.least) + " to " +
               std::to_string(setting.most) + " such as 0.1";
    case SettingType::Bool:
        return "YES or NO";
    case SettingType::Text:
        break;
    }
    if (setting.key == languageKey) {
        std::string names;
        for (const WindowLanguage &language : windowLanguages)
            names += *language.locale ? std::string(language.locale) + ", " : std::string();
        return names + "or an empty text";
    }
    return "a text";
}

int saved(Output &output) {
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (defaults.synchronize())
        return Done;
    output.warning("The settings could not be written to " +
                   paths::display(defaults.file()).toStdString() + ": " + defaults.problem() + ".");
    return Failed;
}

// Stores what was set; a setting that something else goes with has that follow.
int settle(const SettingKey &setting, Output &output) {
    const int status = saved(output);
    if (setting.key != DSLoginCheckKey || status != Done)
        return status;
    const bool wanted = UserDefaults::standardUserDefaults().integerForKey(setting.key) == 1;
    const auto error = LaunchAtLogin::renewEntry(wanted, LaunchAtLogin::ownProgram());
    if (!error)
        return Done;
    output.warning("The login item of the program could not be " +
                   std::string(wanted ? "made: " : "removed: ") + error.message() + '.');
    return Failed;
}

struct Action {
    const char *name;
    int arguments; // behind the name
    const char *usage;
};

constexpr Action actions[] = {
    {"get", 1, "Write `settings get KEY`."},
    {"set", 2, "Write `settings set KEY VALUE`."},
    {"reset", 1, "Write `settings reset KEY`."},
};

const Action *findAction(const std::string &name) {
    for (const Action &action : actions) {
        if (name == action.name)
            return &action;
    }
    return nullptr;
}

void configure(QCommandLineParser &parser) {
    parser.addPositionalArgument(QStringLiteral("action"),
                                 QStringLiteral("get KEY, set KEY VALUE or reset KEY; all settings "
                                                "are listed without one."),
                                 QStringLiteral("[get|set|reset KEY [VALUE]]"));
}

int run(const QCommandLineParser &parser, Output &output) {
    const QStringList arguments = parser.positionalArguments();
    if (arguments.isEmpty())
        return settingsAreReadable(output) ? list(output) : Failed;
    const Action *action = findAction(argumentBytes(arguments[0]));
    if (!action)
        return output.usage("Write `settings`, or get, set or reset behind it.");
    if (arguments.size() != 1 + action->arguments)
        return output.usage(action->usage);
    const std::string key = argumentBytes(arguments[1]);
    const SettingKey *setting = findSettingKey(QString::fromStdString(key));
    if (!setting)
        return output.usage("There is no setting \"" + key + "\"; `settings` lists them.");

    const std::string name = action->name;
    if (name == "get")
        return settingsAreReadable(output) ? show(*setting, output) : Failed;
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (name == "reset") {
        defaults.removeObject(setting->key);
        return settle(*setting, output);
    }
    const QVariant value = valueFromText(*setting, argumentBytes(arguments[2]));
    if (!value.isValid())
        return output.usage("Write " + wantedText(*setting) + " for " + key + ".");
    defaults.setObject(setting->key, value);
    return settle(*setting, output);
}

} // namespace

const Command settingsCommand = {.name = "settings",
                                 .summary = "Shows and changes the settings",
                                 .configure = configure,
                                 .run = run,
                                 .takesNegativeNumbers = true};

} // namespace brightsweep::cli
