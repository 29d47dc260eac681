#include "helper/PathRules.h"

#include "helper/Frame.h"

#include <gtest/gtest.h>

namespace brightsweep::helper {
namespace {

TEST(PathRules, CountsComponentsOfTheWholePath) {
    const auto refused = [](const char *root, const char *way, const char *name) {
        return !refusalOfWords({root, 0, 0, way, {{name, 0, 0, 0, 0, 0}}}).empty();
    };
    EXPECT_FALSE(refused("/", "usr", "bin"));
    EXPECT_FALSE(refused("/srv", "", "x"));
    EXPECT_TRUE(refused("/", "", "usr"));
    EXPECT_TRUE(refused("", "usr", "bin"));
    EXPECT_TRUE(refused("/srv//x", "", "y"));
    EXPECT_TRUE(refused("/srv/", "", "y"));
    EXPECT_TRUE(refused("/srv", "", "a/b"));
}

TEST(Frames, SurviveAnyCutting) {
    const Request request{{1, 2, 3},
                          Verb::RemoveItems,
                          {"/a\nb",
                           ~0ull,
                           1ull << 63,
                           "\xff/--",
                           {{"n\n", 1, ~0ull, 0100000, 1ull << 40, -5}, {"m", 0, 0, 0, 0, 0}}}};
    const std::string stream = frame(encodeRequest(request)) + frame("") +
                               frame(encodeReplies({{true, false, std::string(200, 'x')}, {}}));
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
        EXPECT_EQ(read.remove, request.remove);
        EXPECT_EQ(decodeReplies(payloads[2]), Replies({{true, false, std::string(128, 'x')}, {}}));
    }
    EXPECT_EQ(frame(std::string(maximumPayload + 1, 'x')), "");
}

} // namespace
} // namespace brightsweep::helper
