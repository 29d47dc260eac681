// What stands in a file that anybody may put into a folder of desktop entries.

#include "foundation/DesktopEntry.h"
#include "foundation/DesktopEntryText.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace brightsweep;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);
    for (const std::string &whole : {text, "[Desktop Entry]\nExec=" + text}) {
        const DesktopEntry entry(whole);
        entry.isShownIn(entry.list("Categories"));
        for (const char *key : {"Name", "Exec", "OnlyShowIn"}) {
            const std::string value = entry.string(key);
            if (value.size() > whole.size() || value.find('\0') != value.npos)
                std::abort();
            entry.localeString(key, {"de", value});
        }
        // A change reads back, and taking it back leaves every other byte as it was.
        const auto shown = withEntryValue(whole, "Hidden", "false");
        if (shown.has_value() != entry.isValid())
            std::abort();
        if (shown &&
            (DesktopEntry(*shown).raw("Hidden") != "false" ||
             withEntryValue(*withEntryValue(*shown, "Hidden", "true"), "Hidden", "false") != shown))
            std::abort();
        const std::string exec = entry.string("Exec");
        const auto command = execCommand(exec, {"name", "icon", "path"});
        if (command && (command->empty() || command->front().empty()))
            std::abort();
        if (execProgram(exec).size() > exec.size())
            std::abort();
    }
    return 0;
}
