#include "cli/UsageDocument.h"

#include "foundation/Paths.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace brightsweep::cli {

namespace {

using Json = nlohmann::json;

constexpr std::uint64_t knownSchema = 1;
constexpr std::uint64_t largestSize = std::numeric_limits<std::int64_t>::max();
constexpr char noDocument[] = "is no document of `usage`";

// A folder's path and size come before what is in it.
class Reader final : public nlohmann::json_sax<Json> {
public:
    explicit Reader(UsageDocument &document) : m_document(document) {}

    const std::string &problem() const { return m_problem; }

    bool null() override { return other(); }
    bool boolean(bool value) override {
        if (isTop() && m_key == "interrupted" && value)
            return wrong("was written by a run that was interrupted");
        return other();
    }
    bool number_integer(number_integer_t) override { return other(); }
    bool number_unsigned(number_unsigned_t value) override {
        if (isTop() && m_key == "schema") {
            ++m_headSeen;
            return value == knownSchema || wrong("is of another version");
        }
        if (isFolder() && m_key == "bytes" && value <= largestSize)
            m_levels.back().bytes = value;
        return other();
    }
    bool number_float(number_float_t, const string_t &) override { return other(); }
    bool string(string_t &value) override {
        if (isTop() && m_key == "command") {
            ++m_headSeen;
            return value == "usage" || wrong(noDocument);
        }
        if (isFolder() && m_key == "path" && m_levels.back().path.empty())
            m_levels.back().path = std::move(value);
        else if (isFolder() && m_key == "pathBase64") {
            m_levels.back().path = paths::fromOption("base64:" + value).native();
            if (m_levels.back().path.empty())
                return wrong(noDocument);
        }
        return other();
    }
    bool binary(binary_t &) override { return other(); }

    bool start_object(std::size_t) override {
        if (m_within > 0 || (isFolder() && !m_key.empty()))
            return enter();
        m_levels.emplace_back();
        m_isInChildren = false;
        m_key.clear();
        return true;
    }
    bool key(string_t &name) override {
        if (m_within == 0)
            m_key = std::move(name);
        return true;
    }
    bool end_object() override {
        if (m_within > 0)
            return leave();
        if (!m_levels.back().isListed)
            return wrong(noDocument);
        m_levels.pop_back();
        // Behind an object is the next one of the same array, or its end.
        m_isInChildren = !m_levels.empty();
        return true;
    }
    bool start_array(std::size_t) override {
        if (m_within > 0 || !isFolder() || m_key != "children") {
            if (isTop() && m_key == "items")
                return wrong("was written with --list; leave that out");
            return enter();
        }
        m_isInChildren = true;
        return note();
    }
    bool end_array() override {
        if (m_within > 0)
            return leave();
        m_isInChildren = false;
        m_key = "children";
        return true;
    }
    bool parse_error(std::size_t at, const std::string &, const Json::exception &) override {
        m_problem = "is no whole JSON document, from byte " + std::to_string(at);
        return false;
    }

private:
    struct Level {
        std::string path;
        std::optional<std::uint64_t> bytes;
        bool isListed = false; // its children were begun
    };

    bool wrong(const char *words) {
        m_problem = words;
        return false;
    }
    // The members of a folder, no array of them and nothing within a value of another kind.
    bool isFolder() const { return m_within == 0 && !m_levels.empty() && !m_isInChildren; }
    bool isTop() const { return isFolder() && m_levels.size() == 1; }
    bool other() { return (!m_isInChildren && !m_levels.empty()) || wrong(noDocument); }
    bool enter() {
        ++m_within;
        return other();
    }
    bool leave() {
        --m_within;
        return true;
    }
    // The innermost folder, which has to lie directly in the one around it.
    bool note() {
        Level &folder = m_levels.back();
        const std::size_t depth = m_levels.size() - 1;
        bool isRight = !folder.isListed && folder.bytes && folder.path.ends_with('/');
        if (depth == 0)
            isRight = isRight && m_headSeen == 2;
        else {
            const std::string &around = m_levels[depth - 1].path;
            isRight = isRight && folder.path.size() > around.size() + 1 &&
                      folder.path.starts_with(around) &&
                      folder.path.find('/', around.size()) == folder.path.size() - 1;
        }
        if (!isRight || !m_document.bytes.emplace(folder.path, *folder.bytes).second)
            return wrong(noDocument);
        if (depth == 0)
            m_document.folder = folder.path;
        m_document.depth = std::max(m_document.depth, depth);
        folder.isListed = true;
        return true;
    }

    UsageDocument &m_document;
    std::string m_problem;
    std::vector<Level> m_levels; // the folders on the way down
    std::string m_key;           // of the innermost one, the member that comes now
    std::size_t m_within = 0;    // arrays and objects of no interest, one in the other
    bool m_isInChildren = false; // an array of folders is the innermost thing
    int m_headSeen = 0;          // of the two members that say what document it is
};

} // namespace

std::string UsageDocument::read(std::string_view text) {
    Reader reader(*this);
    return Json::sax_parse(text, &reader) ? std::string() : reader.problem();
}

} // namespace brightsweep::cli
