// A name, an id and an entry, on a line each: what matches must be that name, but for what the
// rules allow around it.
#include "uninstall/LeftoverRules.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

using namespace brightsweep;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char *>(data), size);
    std::string lines[3];
    for (std::string &line : lines) {
        const auto end = std::min(text.find('\n'), text.size());
        line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    const auto &[name, id, entry] = lines;
    const auto names = LeftoverNames::of({name, {}, {id}});
    const auto lower = [](std::string text) {
        for (char &letter : text)
            letter = letter >= 'A' && letter <= 'Z' ? char(letter + 32) : letter;
        return text;
    };
    const std::string key = lower(entry);
    for (const auto place : {LeftoverPlace::Config, LeftoverPlace::Cache, LeftoverPlace::Home}) {
        const bool holds = key.find(lower(name)) != key.npos || key.find(lower(id)) != key.npos ||
                           key.find(lower(id.substr(id.rfind('.') + 1))) != key.npos;
        if (names.matches(place, entry) && (!holds || entry.size() < 3))
            std::abort();
        if (names.matches(LeftoverPlace::Home, entry) && entry.front() != '.')
            std::abort();
    }
    if (LeftoverRules::isTickedForBundle(entry, id) && !LeftoverRules::isListedForBundle(entry, id))
        std::abort();
    LeftoverRules::isDataName(entry);
    return 0;
}
