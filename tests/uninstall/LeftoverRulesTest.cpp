#include "uninstall/LeftoverRules.h"

#include <gtest/gtest.h>

#include <tuple>

namespace brightsweep {
namespace {

using enum LeftoverPlace;

TEST(LeftoverRules, ApplicationsAreKnownByExactNamesOnly) {
    const ApplicationNames gimp{"gimp", {"/usr/bin/gimp-2.10"}, {"gimp"}};
    const ApplicationNames text{
        "gnome-text-editor", {"gnome-text-editor"}, {"org.gnome.TextEditor"}};
    const ApplicationNames kate{"kate", {"kate"}, {"org.kde.kate"}};
    const ApplicationNames kig{"kig", {"kig"}, {"org.kde.kig"}};
    const ApplicationNames telegram{
        "telegram-desktop", {"telegram-desktop"}, {"org.telegram.desktop"}};
    const ApplicationNames tiny{"st", {"st"}, {"st"}};
    const ApplicationNames script{"meld", {"python3"}, {"org.gnome.shell"}};
    const std::tuple<ApplicationNames, LeftoverPlace, const char *, bool> rows[] = {
        {gimp, Config, "GIMP", true},
        {gimp, Cache, "gimp-2.10", true},
        {gimp, Config, "gimp-2.8", false},
        {gimp, Config, "gimprc", true},
        {gimp, Data, "gimprc", false},
        {gimp, Home, ".gimp", true},
        {gimp, Home, ".gimp-2.8", false},
        {gimp, Home, "gimp", false},
        {text, Config, "org.gnome.TextEditor.ini", true},
        {text, State, "org.gnome.TextEditor.Devel", true},
        {text, Data, "org.gnome.TextEditor2", false},
        {text, Data, "org.gnome", false},
        {text, Data, "texteditor", true},
        {kate, Config, "katerc", true},
        {kate, Config, "katepartrc", false},
        {kig, Data, "org.kde.kigo", false},
        {telegram, Data, "desktop", false},
        {telegram, Data, "telegram-desktop", true},
        {tiny, Config, "st", false},
        {tiny, Home, ".st", false},
        {script, Config, "python3", false},
        {script, Config, "shell", false},
        {{"ssh", {"ssh"}, {}}, Home, ".ssh", false},
        {{"x/../y", {".."}, {"../..", "a..b.c", ""}}, Config, "..", false},
    };
    for (const auto &[application, place, entry, matches] : rows) {
        EXPECT_EQ(LeftoverNames::of(application).matches(place, entry), matches)
            << application.package << " " << entry;
    }
}

TEST(LeftoverRules, WhatStaysClaimsAllOfItsNames) {
    const std::string names[] = {
        "libreoffice-calc", "/usr/bin/libreoffice", "st", "ubuntu", "GNOME", "net.suckless.st"};
    const auto claims = LeftoverNames::claimedBy(names);
    const std::tuple<LeftoverPlace, const char *, bool> rows[] = {
        {Config, "libreoffice", true}, {Config, "LibreOfficerc", true},
        {Config, "st", true},          {Home, ".st", true},
        {Config, "gnome", true},       {Data, "net.suckless.st.old", true},
        {Config, "ubuntu", true},      {Config, "libreoffice-writer", false},
    };
    for (const auto &[place, entry, claimed] : rows)
        EXPECT_EQ(claims.matches(place, entry), claimed) << entry;
}

TEST(LeftoverRules, BundlesListByPrefixAndTickWhatNoOtherCanOwn) {
    const std::tuple<const char *, const char *, bool, bool> rows[] = {
        {"com.example.editor", "com.example.editor", true, true},
        {"com.example.editor.plist", "com.example.editor", true, true},
        {"com.example.editor2.plist", "com.example.editor", true, false},
        {"com.example.Editor", "com.example.editor", false, false},
        {"vendor", "vendor", true, true},
        {"vendor.app", "vendor", true, false},
        {"a.b.c", "a.b", true, false},
        {"st", "st", true, false},
        {"systemd", "systemd", true, false},
        {"anything", "", false, false},
    };
    for (const auto &[entry, id, listed, ticked] : rows) {
        EXPECT_EQ(LeftoverRules::isListedForBundle(entry, id), listed) << entry;
        EXPECT_EQ(LeftoverRules::isTickedForBundle(entry, id), ticked) << entry;
    }
}

TEST(LeftoverRules, DatabasesProfilesAndDocumentsAreData) {
    for (const char *name : {"places.SQLite", "Local Storage", "x.db", "thesis.odt", "keys.KDBX"})
        EXPECT_TRUE(LeftoverRules::isDataName(name)) << name;
    for (const char *name : {"settings.json", "katerc", ".pdf", "db", "", "."})
        EXPECT_FALSE(LeftoverRules::isDataName(name)) << name;
}

} // namespace
} // namespace brightsweep
