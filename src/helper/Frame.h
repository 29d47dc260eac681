#pragma once

#include "linux/PackageRemoval.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the program and the process that acts as administrator say to each other: frames of a
/// length (four bytes, lowest first) and a payload, over one stream in each direction. The helper
/// begins with a hello that carries the token; then each request is answered by one reply.
namespace brightsweep::helper {

/// The longest payload. Above any path that a user could have made, and far below what hurts.
inline constexpr std::size_t maximumPayload = std::size_t(1) << 20;
/// So much of a tool's output is sent back.
inline constexpr std::size_t maximumOutput = 128;
/// And of a package manager's, the end: it says last what went wrong.
inline constexpr std::size_t maximumWords = 4096;

using Token = std::array<std::uint8_t, 32>;

enum class Verb : std::uint8_t {
    RemoveItems = 1,
    DropCaches = 2,
    /// Ends the request under way, which is then answered; not answered itself.
    Stop = 3,
    RemovePackages = 4,
};

/// Items of one directory. What the root and each item were when they were looked at goes along.
struct RemoveItems {
    struct Item {
        std::string name;
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::uint32_t type = 0; ///< the S_IFMT bits of its mode
        std::uint64_t size = 0;
        std::int64_t changed = 0; ///< nanoseconds since the epoch

        bool operator==(const Item &) const = default;
    };

    std::string root; ///< absolute path of the directory that the way starts from
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::string way; ///< from the root to the directory of the items; may be empty
    std::vector<Item> items;

    bool operator==(const RemoveItems &) const = default;
};

/// So many items at most in one request. A check of the whole way and a tool of its own come with
/// each, so that more of them cost less; even with the longest names they fill a tenth of a frame.
inline constexpr std::size_t maximumItems = 256;

struct Request {
    Token token{};
    Verb verb = Verb::RemoveItems;
    RemoveItems remove;        ///< only with Verb::RemoveItems
    PackageRemoval packages{}; ///< only with Verb::RemovePackages
};

/// How it went with one item, or with the whole request where it names none.
struct Reply {
    bool performed = false; ///< false: refused, and `output` says why
    bool gone = false;
    std::string output; ///< at most maximumOutput bytes

    bool operator==(const Reply &) const = default;
};

/// One for each item in their order; a single one for what has no items or was refused as a whole.
using Replies = std::vector<Reply>;

/// The payload with its length before it. An empty string for a payload above the limit.
std::string frame(std::string_view payload);

std::string encodeHello(const Token &token);
std::string encodeRequest(const Request &request);
std::string encodeReplies(const Replies &replies);
std::string encodePackagesReply(const PackagesReply &reply);

std::optional<Token> decodeHello(std::string_view payload);
/// Empty, or what is wrong with the payload. The token is filled in whenever it is there.
std::string_view decodeRequest(std::string_view payload, Request &request);
std::optional<Replies> decodeReplies(std::string_view payload);
std::optional<PackagesReply> decodePackagesReply(std::string_view payload);

/// Equal without telling by its duration where the first difference lies.
bool sameToken(const Token &one, const Token &other);

/// Cuts a stream into payloads, however its bytes arrive.
class FrameBuffer {
public:
    void append(std::string_view bytes) { m_bytes += bytes; }
    /// The next payload that has arrived whole. Nothing while bytes are missing, and never again
    /// once the stream has announced a payload above the limit.
    std::optional<std::string> next();
    bool isOversized() const;
    /// True between two frames.
    bool isEmpty() const { return m_bytes.empty(); }

private:
    std::string m_bytes;
};

} // namespace brightsweep::helper
