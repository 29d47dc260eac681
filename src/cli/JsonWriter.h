#pragma once

#include <QString>

#include <concepts>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace brightsweep::cli {

/// Writes one JSON document with its members in the order in which they are given, which the
/// documents of this program promise ("schema" and "command" first) and Qt's sorted objects cannot
/// keep. Integers are exact to 64 bits. The caller balances begin and end.
class JsonWriter {
public:
    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    /// The name of the next value, within an object.
    JsonWriter &key(std::string_view name);

    template <std::integral Number>
    void value(Number number) {
        if constexpr (std::is_same_v<Number, bool>)
            raw(number ? "true" : "false");
        else
            raw(std::to_string(number));
    }
    /// Finite numbers; anything else becomes null. The shortest form that reads back the same.
    void value(double number);
    void value(const QString &text);
    void value(const char *text) { value(std::string_view(text)); }
    /// UTF-8.
    void value(std::string_view text);
    void nullValue() { raw("null"); }

    /// Members for a path: `name` with its text, and `nameBase64` with the exact bytes where the
    /// text cannot show them.
    void path(std::string_view name, const std::filesystem::path &path);
    void path(std::string_view name, const std::string &path) { bytes(name, path); }
    /// The same for a single name.
    void bytes(std::string_view name, std::string_view bytes);
    /// An element of an array of paths: its text.
    void pathValue(const std::filesystem::path &path);

    /// The document with one line end at its end.
    std::string take();
    /// What has been written so far, to be put out early; the rest follows.
    std::string takePart();
    /// Bytes written and not taken yet.
    std::size_t size() const { return m_text.size(); }

private:
    void separate();
    void raw(std::string_view text);
    void quoted(std::string_view utf8);

    std::string m_text;
    bool m_first = true;
    bool m_afterKey = false;
};

} // namespace brightsweep::cli
