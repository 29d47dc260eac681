#pragma once

#include "platform/ApplicationSource.h"

#include <string>
#include <string_view>
#include <vector>

namespace brightsweep::cli {

class JsonWriter;
class Output;

/// Everything on the machine that can be uninstalled, with the keys by which commands name it.
struct Catalogue {
    struct Application {
        InstalledApplication application;
        bool isRunning = false;
        std::string key; ///< "package:gimp", "flatpak:user:ID"
    };

    std::vector<Application> applications;
    /// Kinds that could not be listed, and why.
    std::vector<std::pair<ApplicationKind, std::string>> failures;

    /// Asks the machine; blocks.
    static Catalogue list();

    std::vector<InstalledApplication> installed() const;
    std::vector<ApplicationKind> unknownKinds() const;
    /// A line for each kind that could not be listed.
    void warn(Output &output) const;
    /// What a key or a bare name stands for: one application, several that it could mean, or none.
    std::vector<const Application *> find(const std::string &given) const;
};

/// "bundle", "package", …
const char *kindWord(ApplicationKind kind);
/// "config", "cache", …
const char *kindWord(LeftoverKind kind);

/// What there is to say of a leftover, as members of an object that has begun.
void writeLeftover(JsonWriter &json, const Leftover &leftover);
/// Why it would stay, in a few words; empty where nothing keeps it.
std::string obstacleOf(const Leftover &leftover, bool asksForRights);

} // namespace brightsweep::cli
