// What reaches the administrator's process: any bytes, cut in any way, and any path.

#include "helper/Frame.h"
#include "helper/PathRules.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using namespace brightsweep::helper;

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

std::vector<std::string> payloadsOf(std::string_view stream, std::size_t step, bool &oversized) {
    FrameBuffer buffer;
    std::vector<std::string> payloads;
    for (std::size_t i = 0; i < stream.size(); i += step) {
        buffer.append(stream.substr(i, step));
        while (auto payload = buffer.next()) {
            require(payload->size() <= maximumPayload);
            payloads.push_back(std::move(*payload));
        }
    }
    oversized = buffer.isOversized();
    return payloads;
}

// An accepted way to an item is absolute and has two plain components at least.
void checkAccepted(const RemovePath &removal) {
    const std::string path = removal.path();
    require(path.starts_with('/') && !path.ends_with('/'));
    require(path.find('\0') == path.npos && componentCount(path) >= 2);
    for (const char *never : {"//", "/./", "/../"})
        require((path + '/').find(never) == path.npos);
}

// Whatever holds a protected place is protected too, up to the root.
void checkAncestors(const std::string &path) {
    static const ProtectedPlaces places("/prefix", {"/home/user"});
    bool isProtected = places.holds(path);
    for (auto slash = path.rfind('/'); slash != path.npos && slash > 0;
         slash = path.rfind('/', slash - 1)) {
        const bool above = places.holds(std::string_view(path).substr(0, slash));
        require(above || !isProtected);
        isProtected = above;
    }
}

void checkPayload(const std::string &payload) {
    Request request;
    if (decodeRequest(payload, request).empty()) {
        require(encodeRequest(request) == payload);
        if (request.verb == Verb::RemovePath && refusalOfWords(request.remove).empty()) {
            checkAccepted(request.remove);
            checkAncestors(request.remove.path());
        }
    }
    if (const auto reply = decodeReply(payload)) {
        require(reply->output.size() <= maximumOutput);
        const auto again = decodeReply(encodeReply(*reply));
        require(again && again->performed == reply->performed && again->gone == reply->gone &&
                again->output == reply->output);
    }
    if (const auto token = decodeHello(payload))
        require(encodeHello(*token) == payload);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    bool oversizedWhole = false;
    bool oversizedCut = false;
    const auto whole = payloadsOf(bytes, size + 1, oversizedWhole);
    require(payloadsOf(bytes, 1 + size % 7, oversizedCut) == whole);
    require(oversizedWhole == oversizedCut);
    for (const std::string &payload : whole)
        checkPayload(payload);

    // The same bytes as a payload, and as a path, so that neither waits for a lucky length.
    checkPayload(std::string(bytes));
    const auto middle = bytes.size() / 2;
    const RemovePath removal{'/' + std::string(bytes.substr(0, middle)), 0, 0,
                             std::string(bytes.substr(middle))};
    if (refusalOfWords(removal).empty()) {
        checkAccepted(removal);
        checkAncestors(removal.path());
    }
    return 0;
}
