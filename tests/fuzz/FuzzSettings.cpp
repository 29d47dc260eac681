#include "foundation/UserDefaults.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using brightsweep::UserDefaults;

// Whatever stands in the file: what was read composes to a text that reads back the same, and the
// coercions take any value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    const UserDefaults::Values values = UserDefaults::parse(text);
    const std::string composed = UserDefaults::compose(values);
    if (UserDefaults::parse(composed) != values)
        std::abort();
    if (UserDefaults::compose(UserDefaults::parse(composed)) != composed)
        std::abort();
    for (const QString &value : values) {
        brightsweep::integerFromText(value);
        brightsweep::boolFromText(value);
        const float number = brightsweep::floatFromText(value);
        if (number != number)
            std::abort();
    }
    return 0;
}
