#include "cli/JsonWriter.h"

#include "foundation/Paths.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace brightsweep::cli {

namespace {

constexpr bool standsAsItIs(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return (code >= 0x20) & (code != 0x7f) & (byte != '"') & (byte != '\\');
}

} // namespace

void JsonWriter::separate() {
    if (!m_first && !m_afterKey)
        m_text += ',';
    m_first = false;
    m_afterKey = false;
}

void JsonWriter::raw(std::string_view text) {
    separate();
    m_text += text;
}

void JsonWriter::beginObject() {
    raw("{");
    m_first = true;
}

void JsonWriter::endObject() {
    m_text += '}';
    m_first = false;
}

void JsonWriter::beginArray() {
    raw("[");
    m_first = true;
}

void JsonWriter::endArray() {
    m_text += ']';
    m_first = false;
}

JsonWriter &JsonWriter::key(std::string_view name) {
    separate();
    quoted(name);
    m_text += ':';
    m_afterKey = true;
    return *this;
}

void JsonWriter::value(double number) {
    if (!std::isfinite(number))
        return nullValue();
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
    raw(std::string_view(buffer, std::size_t(end - buffer)));
}

void JsonWriter::value(const QString &text) {
    separate();
    quoted(text.toStdString());
}

void JsonWriter::value(std::string_view text) {
    separate();
    quoted(text);
}

void JsonWriter::path(std::string_view name, const std::filesystem::path &path) {
    bytes(name, path.native());
}

void JsonWriter::bytes(std::string_view name, std::string_view bytes) {
    if (paths::isValidUtf8(bytes)) {
        key(name).value(bytes);
    } else {
        key(name).value(paths::text(bytes));
        const QByteArray exact = QByteArray(bytes.data(), qsizetype(bytes.size())).toBase64();
        key(std::string(name) + "Base64").value(exact.constData());
    }
}

void JsonWriter::pathValue(const std::filesystem::path &path) {
    value(paths::text(path.native()));
}

void JsonWriter::quoted(std::string_view utf8) {
    m_text += '"';
    // Nearly every text stands as it is, which a loop without a way out tells many bytes at a time.
    bool isPlain = true;
    for (const char byte : utf8)
        isPlain &= standsAsItIs(byte);
    if (isPlain) {
        m_text.append(utf8) += '"';
        return;
    }
    const char *plain = utf8.data(); // what stands as it is, up to the place looked at
    const char *const end = plain + utf8.size();
    for (const char *place = plain; place != end; ++place) {
        const char byte = *place;
        if (standsAsItIs(byte))
            continue;
        m_text.append(plain, place);
        plain = place + 1;
        if (byte == '"' || byte == '\\') {
            m_text += '\\';
            m_text += byte;
        } else if (byte == '\n') {
            m_text += "\\n";
        } else if (byte == '\t') {
            m_text += "\\t";
        } else {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", unsigned(byte));
            m_text += escaped;
        }
    }
    m_text.append(plain, end);
    m_text += '"';
}

std::string JsonWriter::take() {
    return takePart() + '\n';
}

std::string JsonWriter::takePart() {
    return std::exchange(m_text, {});
}

} // namespace brightsweep::cli
