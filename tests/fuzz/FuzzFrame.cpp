// What reaches the administrator's process: any bytes, cut in any way, and any path.

#include "helper/Frame.h"
#include "helper/PathRules.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using namespace brightsweep;
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

// What is accepted leads from an absolute root down to plain names, and nowhere else.
void checkAccepted(const RemoveItems &removal) {
    require(removal.root.starts_with('/') && !removal.items.empty() &&
            removal.items.size() <= maximumItems);
    for (const RemoveItems::Item &item : removal.items) {
        const std::string path = removal.root + '/' + removal.way + '/' + item.name + '/';
        require(path.find('\0') == path.npos && !item.name.empty() &&
                item.name.find('/') == item.name.npos);
        for (const char *never : {"/./", "/../"})
            require(path.find(never) == path.npos);
    }
}

// Names that no tool takes for an option, a path, a pattern or two words.
void checkAccepted(const PackageRemoval &removal) {
    require(!removal.names.empty() && removal.names.size() <= maximumPackages);
    for (const auto *list : {&removal.names, &removal.purge}) {
        for (const std::string &name : *list)
            require(!name.empty() && name.front() != '-' &&
                    name.find_first_of(std::string_view("/*?=~^ \t\n'\"\\;&|$`<>(){}[]!#\0", 33)) ==
                        name.npos);
    }
}

void checkPayload(const std::string &payload) {
    Request request;
    if (decodeRequest(payload, request).empty()) {
        require(encodeRequest(request) == payload);
        if (request.verb == Verb::RemoveItems && refusalOfWords(request.remove).empty())
            checkAccepted(request.remove);
        if (request.verb == Verb::RemovePackages && refusalOfPackages(request.packages).empty())
            checkAccepted(request.packages);
    }
    if (const auto reply = decodePackagesReply(payload)) {
        require(reply->gone.size() <= maximumPackages && reply->words.size() <= maximumWords);
        require(encodePackagesReply(*reply) == payload);
    }
    if (const auto replies = decodeReplies(payload)) {
        for (const Reply &reply : *replies)
            require(reply.output.size() <= maximumOutput);
        require(decodeReplies(encodeReplies(*replies)) == replies);
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

    // The same bytes as a payload, and as words, so that neither waits for a lucky length.
    checkPayload(std::string(bytes));
    const auto third = bytes.size() / 3;
    RemoveItems removal;
    removal.root = '/' + std::string(bytes.substr(0, third));
    removal.way = bytes.substr(third, third);
    removal.items.emplace_back().name = bytes.substr(2 * third);
    if (refusalOfWords(removal).empty())
        checkAccepted(removal);
    return 0;
}
