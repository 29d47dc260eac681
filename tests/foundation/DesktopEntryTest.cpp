#include "foundation/DesktopEntry.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace brightsweep {
namespace {

using testing::ElementsAre;

TEST(DesktopEntry, ReadsTheMainGroupAsOtherDesktopsDo) {
    std::string text = "\xef\xbb\xbf# made by hand\r\nName=outside\n[Desktop Entry]\r\n"
                       " Name = Plain \r\nName[de]=Deutsch\nName[de_AT@euro]=Wien\n=x\njunk\n"
                       "Name[zh_CN]=\xe4\xb8\xad\nComment=a\\sb\\\\n\\x\\\nTerminal=false\n"
                       "Nul=a@b\nKeywords=one;two\\;three;;\\sfour\nEmpty[de]=\nEmpty=not\n"
                       "[Desktop Action New]\nName=An action\n[Desktop Entry]\nTerminal=true\n";
    text[text.find('@', text.find("Nul="))] = '\0';
    const DesktopEntry entry(text);
    EXPECT_FALSE(entry.has("Nul"));
    ASSERT_TRUE(entry.isValid());
    const std::pair<std::vector<std::string>, std::string> names[] = {
        {{}, "Plain"},
        {{"de_AT@euro", "de"}, "Wien"},
        {{"fr", "de"}, "Deutsch"},
        {{"zh"}, "Plain"}};
    for (const auto &[locales, name] : names)
        EXPECT_EQ(entry.localeString("Name", locales), name);
    EXPECT_EQ(entry.localeString("Empty", {"de"}), "not");
    EXPECT_EQ(entry.string("Comment"), "a b\\n\\x\\");
    EXPECT_TRUE(entry.boolean("Terminal"));
    EXPECT_THAT(entry.list("Keywords"), ElementsAre("one", "two;three", "", " four"));
    EXPECT_FALSE(entry.has("Missing"));
    EXPECT_FALSE(DesktopEntry("[desktop entry]\nName=x\n").isValid());
    EXPECT_FALSE(DesktopEntry("").isValid());
}

TEST(DesktopEntry, IsShownByTheFirstDesktopThatIsNamed) {
    const std::tuple<const char *, std::vector<std::string>, bool> rows[] = {
        {"OnlyShowIn=GNOME;\n", {"ubuntu", "GNOME"}, true},
        {"OnlyShowIn=GNOME;\n", {"KDE"}, false},
        {"OnlyShowIn=\n", {"KDE"}, false},
        {"NotShowIn=KDE;XFCE\n", {"XFCE"}, false},
        {"NotShowIn=KDE;\n", {}, true},
        {"OnlyShowIn=A;\nNotShowIn=B;\n", {"B", "A"}, false},
        {"OnlyShowIn=A;\nNotShowIn=B;\n", {"A", "B"}, true}};
    for (const auto &[keys, desktops, shown] : rows)
        EXPECT_EQ(DesktopEntry("[Desktop Entry]\n" + std::string(keys)).isShownIn(desktops), shown)
            << keys;
}

TEST(DesktopEntry, ListsTheLanguagesOfMessages) {
    ::setenv("LANGUAGE", "fr:de_DE", 1);
    ::setenv("LC_ALL", "de_AT.UTF-8@euro", 1);
    EXPECT_THAT(messageLocales(),
                ElementsAre("fr", "de_DE", "de", "de_AT@euro", "de_AT", "de@euro"));
    ::setenv("LC_ALL", "C.UTF-8", 1);
    EXPECT_THAT(messageLocales(), ElementsAre());
    ::unsetenv("LANGUAGE");
    ::unsetenv("LC_ALL");
}

TEST(DesktopEntry, TellsTheProgramOfAnExecLine) {
    const std::pair<const char *, const char *> rows[] = {
        {"gimp-2.10 %U", "gimp-2.10"},
        {"\"/opt/a b/run\" --x", "/opt/a b/run"},
        {"env A=1 -u B LANG=C soffice %F", "soffice"},
        {"/usr/bin/env -i -- prog", "prog"},
        {"env -S \"A=1 prog -x\" y", "prog"},
        {"A=1 prog", "prog"},
        {"sh -c 'exec /opt/x/run \"$@\"' sh %f", "/opt/x/run"},
        {"bash -lc \"A=1 tool; x\"", "tool"},
        {"sh -c \"cd /opt/x && ./run\"", "sh"},
        {"sh -c '`x`'", "sh"},
        {"sh script.sh", "sh"},
        {"/opt/100%%/run", "/opt/100%/run"},
        {"%f", ""},
        {"", ""},
        {"\"open", ""},
        {"end\\", "end"},
        {"sh -c 'sh -c \"sh -c \\\"sh -c x\\\"\"'", ""},
        {"env", ""},
        {"\"\"", ""}};
    for (const auto &[exec, program] : rows)
        EXPECT_EQ(execProgram(exec), program) << exec;
    EXPECT_THAT(*execCommand("a %i \"%c\" %U 5%% %k \"\" \"\\$x\\n\"", {"N m", "ic", ""}),
                ElementsAre("a", "--icon", "ic", "N m", "5%", "", "$x\\n"));
}

} // namespace
} // namespace brightsweep
