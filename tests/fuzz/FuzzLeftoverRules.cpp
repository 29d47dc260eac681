// A name, an id and an entry, on a line each: what matches must have one of them in it.
#include "uninstall/LeftoverRules.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>

using namespace brightsweep;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::istringstream lines(std::string(reinterpret_cast<const char *>(data), size));
    std::string name, id, entry;
    std::getline(lines, name) && std::getline(lines, id) && std::getline(lines, entry);
    const auto lower = [](std::string text) {
        for (char &letter : text)
            letter = letter >= 'A' && letter <= 'Z' ? char(letter + 32) : letter;
        return text;
    };
    const auto names = LeftoverNames::of({name, {}, {id}});
    for (const auto place : {LeftoverPlace::Config, LeftoverPlace::Cache, LeftoverPlace::Home}) {
        const bool holds = lower(entry).find(lower(name)) != entry.npos ||
                           lower(entry).find(lower(id.substr(id.rfind('.') + 1))) != entry.npos;
        if (names.matches(place, entry) && (!holds || entry.size() < 3))
            std::abort();
    }
    LeftoverRules::isTickedForBundle(entry, id);
    LeftoverRules::isDataName(entry);
    return 0;
}
