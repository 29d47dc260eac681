#include "helper/PathRules.h"

#include "helper/Frame.h"

#include <gtest/gtest.h>

namespace brightsweep::helper {
namespace {

TEST(PathRules, ProtectsPlacesAndWhatHoldsThemAndNothingElse) {
    const ProtectedPlaces places("", {"/home/ada", "/", ""});
    const struct {
        const char *path;
        bool isProtected;
    } cases[] = {
        {"/usr/bin", true},
        {"/usr/share", true},
        {"/usr/share/applications", true},
        {"/usr/share/applications/old.desktop", false},
        {"/var/lib", true},
        {"/var/lib/dpkg", true},
        {"/var/lib/systemd", true}, // holds the core dumps' folder
        {"/var/cache", true},
        {"/var/cache/apt", true},
        {"/var/cache/apt/archives", true},
        {"/var/cache/apt/archives/lock", true},
        {"/var/cache/apt/archives/one.deb", false},
        {"/var/cache/apt-other", false},
        {"/var/log", true},
        {"/var/log/apt/term.log.1.gz", false},
        {"/boot/grub", true},
        {"/boot/grub/old", false},
        {"/home", true},
        {"/home/ada", true},
        {"/home/ada/.cache", true},
        {"/home/ada/.cache/thumbnails", false},
        {"/home/ada/.local/share/Trash", true},
        {"/home/ada/.local/share/Trash/files/item", false},
        {"/home/adam/.cache", false},
        {"/srv/data/.cache", false},
        {"/opt/program", false},
    };
    for (const auto &row : cases)
        EXPECT_EQ(places.holds(row.path), row.isProtected) << row.path;
    EXPECT_FALSE(places.holds("/prefix/usr/bin"));
    const ProtectedPlaces prefixed("/prefix/", {});
    EXPECT_TRUE(prefixed.holds("/prefix/usr/bin"));
    EXPECT_TRUE(prefixed.holds("/usr/bin"));
    EXPECT_EQ(prefixed.aptArchives().back(), "/prefix/var/cache/apt/archives");
}

TEST(PathRules, CountsComponentsOfTheWholePath) {
    EXPECT_EQ(refusalOfWords({"/", 0, 0, "usr/bin"}), "");
    EXPECT_EQ(refusalOfWords({"/srv", 0, 0, "x"}), "");
    EXPECT_NE(refusalOfWords({"/", 0, 0, "usr"}), "");
    EXPECT_NE(refusalOfWords({"", 0, 0, "usr/bin"}), "");
    EXPECT_NE(refusalOfWords({"/srv//x", 0, 0, "y"}), "");
}

TEST(Frames, SurviveAnyCutting) {
    const Request request{{1, 2, 3}, Verb::RemovePath, {"/a\nb", ~0ull, 1ull << 63, "\xff/--"}};
    const std::string stream = frame(encodeRequest(request)) + frame("") +
                               frame(encodeReply({true, false, std::string(200, 'x')}));
    for (std::size_t step = 1; step <= stream.size(); ++step) {
        FrameBuffer buffer;
        std::vector<std::string> payloads;
        for (std::size_t i = 0; i < stream.size(); i += step) {
            buffer.append(std::string_view(stream).substr(i, step));
            while (auto payload = buffer.next())
                payloads.push_back(*payload);
        }
        ASSERT_EQ(payloads.size(), 3u);
        EXPECT_TRUE(buffer.isEmpty());
        Request read;
        EXPECT_EQ(decodeRequest(payloads[0], read), "");
        EXPECT_EQ(read.token, request.token);
        EXPECT_EQ(read.remove.device, request.remove.device);
        EXPECT_EQ(read.remove.inode, request.remove.inode);
        EXPECT_EQ(read.remove.path(), request.remove.path());
        EXPECT_EQ(decodeReply(payloads[2]).value_or(Reply{}).output, std::string(128, 'x'));
    }
    EXPECT_EQ(frame(std::string(maximumPayload + 1, 'x')), "");
}

} // namespace
} // namespace brightsweep::helper
