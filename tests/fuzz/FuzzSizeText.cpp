#include "core/UtilityFunction.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

using U = brightsweep::UtilityFunction;

namespace {

// Half a hundredth of the unit is lost in the text, and single precision loses a little more on
// the way there and back.
bool isCloseTo(std::uint64_t read, std::uint64_t bytes) {
    const double unit = bytes < 1'000'000 ? 1e3 : bytes < 1'000'000'000 ? 1e6 : 1e9;
    const double difference = std::abs(double(read) - double(bytes));
    return difference <= 0.005 * unit + double(bytes) * 5e-7 + 1;
}

void checkNumber(std::uint64_t bytes) {
    for (const QString &text : {U::convertVolSpace(bytes), U::covertCleanMemory(bytes),
                                U::formatValue(bytes, 1024), U::formatValue(bytes, 1000)}) {
        U::getVolSpaceFromString(text);
        U::returnParserFromVolSpace(text);
    }
    const std::uint64_t read = U::getVolSpaceFromString(U::convertVolSpace(bytes));
    if (!isCloseTo(read, bytes))
        std::abort();
    // Larger numbers never read as much smaller ones.
    const std::uint64_t larger = bytes + bytes / 50 + 20'000;
    if (larger > bytes && U::getVolSpaceFromString(U::convertVolSpace(larger)) < read)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, data, std::min(size, sizeof bytes));
    for (int shift : {0, 8, 16, 24, 32, 40, 48})
        checkNumber(bytes >> shift);
    std::int32_t base = 0;
    if (size >= sizeof bytes + sizeof base)
        std::memcpy(&base, data + sizeof bytes, sizeof base);
    U::formatValue(bytes, base);

    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    try {
        U::getVolSpaceFromString(text);
        if (text.size() < 2)
            std::abort();
    } catch (const std::out_of_range &) {
        if (text.size() >= 2)
            std::abort();
    }
    try {
        U::returnParserFromVolSpace(text);
        U::parseDateTime(text);
    } catch (const std::out_of_range &) {
    }
    return 0;
}
