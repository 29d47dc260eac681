#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brightsweep::cli {

class JsonWriter;

/// What a command removed, moved or shared, or would, and how it went.
struct ActedItem {
    std::string path;
    std::uint64_t bytes = 0;
    std::string error; ///< why it stays; empty: it went
};

/// The array `key` of those that went, or of those that stay.
void writeActed(JsonWriter &json, const char *key, const std::vector<ActedItem> &items, bool stays);
/// A line for each and one for the sum. `went` is the word for those that did.
std::string actedText(const std::vector<ActedItem> &items, const std::string &went,
                      std::uint64_t bytesFreed, bool applies);
/// Of what went.
std::uint64_t bytesOf(const std::vector<ActedItem> &items);
bool anyStays(const std::vector<ActedItem> &items);

} // namespace brightsweep::cli
