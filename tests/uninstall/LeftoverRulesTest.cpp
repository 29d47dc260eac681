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
    struct Row {
        ApplicationNames application;
        LeftoverPlace place;
        std::vector<const char *> matching;
        std::vector<const char *> others;
    };
    const Row rows[] = {
        {gimp, Config, {"GIMP", "gimprc", "gimp.conf"}, {"gimp-2.8", "gimprc.bak"}},
        {gimp, Data, {"gimp", "gimp-2.10"}, {"gimprc"}},
        {gimp, Home, {".gimp"}, {".gimp-2.8", "gimp", ".gimprc"}},
        {text, Config, {"org.gnome.TextEditor.ini", "texteditor"}, {"org.gnome.TextEditor2"}},
        {text, State, {"org.gnome.TextEditor.Devel"}, {"org.gnome"}},
        {kate, Config, {"katerc"}, {"katepartrc"}},
        {kig, Data, {"org.kde.kig"}, {"org.kde.kigo"}},
        {telegram, Data, {"telegram-desktop"}, {"desktop"}},
        {tiny, Home, {}, {".st"}},
        {tiny, Config, {}, {"st"}},
        {script, Config, {"meld"}, {"python3", "shell"}},
        {{"ssh", {"profile", "bash_history"}, {"zshrc", "oh-my-zsh"}},
         Home,
         {},
         {".ssh", ".profile", ".bash_history", ".zshrc", ".oh-my-zsh"}},
        {{"QtProject", {"mimeapps.list", "QtProject.conf"}, {"user-dirs.dirs", "trolltech"}},
         Config,
         {},
         {"mimeapps.list", "QtProject.conf", "user-dirs.dirs", "Trolltech.conf"}},
        {{"fisherman", {"zshell-tool"}, {}}, Data, {"fisherman", "zshell-tool"}, {}},
        {{"x/../y", {".."}, {"../..", "a..b.c", ""}}, Config, {}, {"..", ""}},
    };
    for (const Row &row : rows) {
        const auto names = LeftoverNames::of(row.application);
        for (const char *entry : row.matching)
            EXPECT_TRUE(names.matches(row.place, entry)) << entry;
        for (const char *entry : row.others)
            EXPECT_FALSE(names.matches(row.place, entry)) << entry;
    }
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
    for (const char *name :
         {"places.SQLite", "Local Storage", "x.db", "thesis.odt", "keys.KDBX", "a.JPG", "song.mp3",
          "clip.mkv", "old.zip", "raw.flac", "IMG_1.CR2", "net.drawio", "part.stl"})
        EXPECT_TRUE(LeftoverRules::isDataName(name)) << name;
    for (const char *name : {"settings.json", "katerc", ".pdf", "db", "", "."})
        EXPECT_FALSE(LeftoverRules::isDataName(name)) << name;
}

} // namespace
} // namespace brightsweep
