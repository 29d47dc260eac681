#include "linux/MountTable.h"

#include "foundation/PathBytes.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>

namespace brightsweep {

namespace {

bool isOctal(char digit) {
    return digit >= '0' && digit <= '7';
}

template <typename Number>
bool readNumber(std::string_view text, Number &number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

std::vector<std::string_view> splitFields(std::string_view line) {
    std::vector<std::string_view> fields;
    while (!line.empty()) {
        const auto blank = std::min(line.find(' '), line.size());
        fields.push_back(line.substr(0, blank));
        line.remove_prefix(std::min(blank + 1, line.size()));
    }
    return fields;
}

bool parseLine(std::string_view line, Mount &mount) {
    const auto fields = splitFields(line);
    if (fields.size() < 6)
        return false;
    // Optional fields stand between the sixth and a lone "-".
    const auto separator = std::find(fields.begin() + 6, fields.end(), std::string_view("-"));
    if (fields.end() - separator < 3)
        return false;
    const auto colon = fields[2].find(':');
    if (colon == std::string_view::npos || !readNumber(fields[0], mount.id) ||
        !readNumber(fields[1], mount.parentId) ||
        !readNumber(fields[2].substr(0, colon), mount.deviceMajor) ||
        !readNumber(fields[2].substr(colon + 1), mount.deviceMinor))
        return false;
    mount.root = unescapeMountText(fields[3]);
    mount.mountPoint = unescapeMountText(fields[4]);
    mount.options = fields[5];
    mount.type = unescapeMountText(separator[1]);
    mount.source = unescapeMountText(separator[2]);
    if (fields.end() - separator > 3)
        mount.superOptions = separator[3];
    return mount.mountPoint.starts_with('/');
}

} // namespace

std::string unescapeMountText(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] <= '3' && isOctal(text[i + 1]) &&
            isOctal(text[i + 2]) && isOctal(text[i + 3])) {
            plain += char((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0'));
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

std::vector<Mount> parseMountTable(std::string_view text) {
    std::vector<Mount> mounts;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        Mount mount;
        if (parseLine(text.substr(0, end), mount))
            mounts.push_back(std::move(mount));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return mounts;
}

std::vector<Mount> currentMounts() {
    std::ifstream file("/proc/thread-self/mountinfo", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return parseMountTable(text);
}

bool holdsMountPoint(const std::vector<Mount> &mounts, std::string_view path) {
    return std::any_of(mounts.begin(), mounts.end(), [&](const Mount &mount) {
        return paths::isSameOrBelow(mount.mountPoint, path);
    });
}

} // namespace brightsweep
