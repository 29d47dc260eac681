#include "linux/PackageNames.h"

#include <algorithm>

namespace brightsweep {

namespace {

constexpr std::size_t longestName = 200;

bool isOneOf(char letter, std::string_view further, bool withCapitals) {
    return (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') ||
           (withCapitals && letter >= 'A' && letter <= 'Z') || further.find(letter) != further.npos;
}

bool consistsOf(std::string_view name, std::string_view further, bool withCapitals) {
    return std::all_of(name.begin(), name.end(),
                       [&](char letter) { return isOneOf(letter, further, withCapitals); });
}

} // namespace

bool isPackageName(PackageFamily family, std::string_view name) {
    if (name.empty() || name.size() > longestName)
        return false;
    switch (family) {
    case PackageFamily::Dpkg: {
        const auto colon = name.find(':');
        const std::string_view plain = name.substr(0, colon);
        if (plain.empty() || !isOneOf(plain.front(), "", false) || !consistsOf(plain, "+.-", false))
            return false;
        const std::string_view architecture =
            colon == name.npos ? std::string_view("all") : name.substr(colon + 1);
        return !architecture.empty() && consistsOf(architecture, "-", false);
    }
    case PackageFamily::Rpm:
        return isOneOf(name.front(), "", true) && consistsOf(name, "+._-", true);
    case PackageFamily::Pacman:
        return isOneOf(name.front(), "@_+", false) && consistsOf(name, "@._+-", false);
    }
    return false;
}

} // namespace brightsweep
