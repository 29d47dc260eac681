#include "helper/Frame.h"

#include <algorithm>

namespace brightsweep::helper {

namespace {

constexpr std::size_t lengthSize = 4;
constexpr char helloMark = 'H';
constexpr char replyMark = 'R';
constexpr char packagesMark = 'P';

template <typename Number>
void put(std::string &payload, Number number) {
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        payload += char((number >> (8 * i)) & 0xff);
}

void putText(std::string &payload, std::string_view text) {
    put(payload, std::uint32_t(text.size()));
    payload += text;
}

void putTexts(std::string &payload, const std::vector<std::string> &texts) {
    put(payload, std::uint32_t(texts.size()));
    for (const std::string &text : texts)
        putText(payload, text);
}

// Takes one field after the other; the first that is not there makes all later ones fail too.
class Fields {
public:
    explicit Fields(std::string_view payload) : m_rest(payload) {}

    template <typename Number>
    Number number() {
        const std::string_view bytes = take(sizeof(Number));
        Number value = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i)
            value = Number(value | Number(Number(static_cast<unsigned char>(bytes[i])) << (8 * i)));
        return value;
    }
    std::string text() { return std::string(take(number<std::uint32_t>())); }
    /// At most `limit`; more of them are none.
    std::vector<std::string> texts(std::size_t limit) {
        const auto count = number<std::uint32_t>();
        m_valid = m_valid && count <= limit;
        std::vector<std::string> texts;
        for (std::size_t i = 0; m_valid && i < count; ++i)
            texts.push_back(text());
        return texts;
    }
    Token token() {
        Token token{};
        const std::string_view bytes = take(token.size());
        for (std::size_t i = 0; i < bytes.size(); ++i)
            token[i] = static_cast<std::uint8_t>(bytes[i]);
        return token;
    }
    /// True when every field was there and nothing is left.
    bool complete() const { return m_valid && m_rest.empty(); }

private:
    std::string_view take(std::size_t size) {
        m_valid = m_valid && size <= m_rest.size();
        if (!m_valid)
            return {};
        const std::string_view bytes = m_rest.substr(0, size);
        m_rest.remove_prefix(size);
        return bytes;
    }

    std::string_view m_rest;
    bool m_valid = true;
};

std::string_view bytesOf(const Token &token) {
    return {reinterpret_cast<const char *>(token.data()), token.size()};
}

std::size_t announcedLength(std::string_view bytes) {
    return Fields(bytes.substr(0, lengthSize)).number<std::uint32_t>();
}

} // namespace

std::string frame(std::string_view payload) {
    std::string framed;
    if (payload.size() <= maximumPayload)
        putText(framed, payload);
    return framed;
}

std::string encodeHello(const Token &token) {
    return helloMark + std::string(bytesOf(token));
}

std::string encodeRequest(const Request &request) {
    std::string payload(bytesOf(request.token));
    put(payload, std::uint8_t(request.verb));
    if (request.verb == Verb::RemovePackages) {
        put(payload, std::uint8_t(request.packages.family));
        put(payload, request.packages.lockSeconds);
        putTexts(payload, request.packages.names);
        putTexts(payload, request.packages.purge);
    }
    if (request.verb != Verb::RemoveItems)
        return payload;
    put(payload, request.remove.device);
    put(payload, request.remove.inode);
    putText(payload, request.remove.root);
    putText(payload, request.remove.way);
    put(payload, std::uint32_t(request.remove.items.size()));
    for (const RemoveItems::Item &item : request.remove.items) {
        putText(payload, item.name);
        put(payload, item.device);
        put(payload, item.inode);
        put(payload, item.type);
        put(payload, item.size);
        put(payload, std::uint64_t(item.changed));
    }
    return payload;
}

std::string encodeReplies(const Replies &replies) {
    std::string payload(1, replyMark);
    put(payload, std::uint32_t(replies.size()));
    for (const Reply &reply : replies) {
        put(payload, std::uint8_t(reply.performed));
        put(payload, std::uint8_t(reply.gone));
        putText(payload, std::string_view(reply.output).substr(0, maximumOutput));
    }
    return payload;
}

std::string encodePackagesReply(const PackagesReply &reply) {
    std::string payload(1, packagesMark);
    put(payload, std::uint8_t(reply.outcome));
    putTexts(payload, reply.gone);
    const std::string_view words = reply.words;
    putText(payload, words.substr(words.size() - std::min(words.size(), maximumWords)));
    return payload;
}

std::optional<Token> decodeHello(std::string_view payload) {
    if (!payload.starts_with(helloMark))
        return std::nullopt;
    Fields fields(payload.substr(1));
    const Token token = fields.token();
    return fields.complete() ? std::optional(token) : std::nullopt;
}

std::string_view decodeRequest(std::string_view payload, Request &request) {
    Fields fields(payload);
    request.token = fields.token();
    request.verb = Verb(fields.number<std::uint8_t>());
    switch (request.verb) {
    case Verb::RemoveItems: {
        request.remove.device = fields.number<std::uint64_t>();
        request.remove.inode = fields.number<std::uint64_t>();
        request.remove.root = fields.text();
        request.remove.way = fields.text();
        const auto count = fields.number<std::uint32_t>();
        if (count == 0 || count > maximumItems)
            return "malformed request";
        request.remove.items.resize(count);
        for (RemoveItems::Item &item : request.remove.items) {
            item.name = fields.text();
            item.device = fields.number<std::uint64_t>();
            item.inode = fields.number<std::uint64_t>();
            item.type = fields.number<std::uint32_t>();
            item.size = fields.number<std::uint64_t>();
            item.changed = std::int64_t(fields.number<std::uint64_t>());
        }
        break;
    }
    case Verb::RemovePackages:
        request.packages.family = PackageFamily(fields.number<std::uint8_t>());
        request.packages.lockSeconds = fields.number<std::uint32_t>();
        request.packages.names = fields.texts(maximumPackages);
        request.packages.purge = fields.texts(maximumPackages);
        break;
    case Verb::DropCaches:
    case Verb::Stop:
        break;
    default:
        return "unknown verb";
    }
    return fields.complete() ? std::string_view() : "malformed request";
}

std::optional<Replies> decodeReplies(std::string_view payload) {
    if (!payload.starts_with(replyMark))
        return std::nullopt;
    Fields fields(payload.substr(1));
    const auto count = fields.number<std::uint32_t>();
    if (count == 0 || count > maximumItems)
        return std::nullopt;
    Replies replies(count);
    for (Reply &reply : replies) {
        reply.performed = fields.number<std::uint8_t>() != 0;
        reply.gone = fields.number<std::uint8_t>() != 0;
        reply.output = fields.text();
        if (reply.output.size() > maximumOutput)
            return std::nullopt;
    }
    return fields.complete() ? std::optional(std::move(replies)) : std::nullopt;
}

std::optional<PackagesReply> decodePackagesReply(std::string_view payload) {
    if (!payload.starts_with(packagesMark))
        return std::nullopt;
    Fields fields(payload.substr(1));
    PackagesReply reply;
    reply.outcome = PackagesOutcome(fields.number<std::uint8_t>());
    reply.gone = fields.texts(maximumPackages);
    reply.words = fields.text();
    if (reply.outcome > PackagesOutcome::Broken || reply.words.size() > maximumWords ||
        !fields.complete())
        return std::nullopt;
    return reply;
}

bool sameToken(const Token &one, const Token &other) {
    unsigned difference = 0;
    for (std::size_t i = 0; i < one.size(); ++i)
        difference |= unsigned(one[i] ^ other[i]);
    return difference == 0;
}

std::optional<std::string> FrameBuffer::next() {
    if (m_bytes.size() < lengthSize || isOversized())
        return std::nullopt;
    const std::size_t length = announcedLength(m_bytes);
    if (m_bytes.size() - lengthSize < length)
        return std::nullopt;
    std::string payload = m_bytes.substr(lengthSize, length);
    m_bytes.erase(0, lengthSize + length);
    return payload;
}

bool FrameBuffer::isOversized() const {
    return m_bytes.size() >= lengthSize && announcedLength(m_bytes) > maximumPayload;
}

} // namespace brightsweep::helper
