#include "cli/ActedItem.h"

#include "cli/Command.h"
#include "cli/JsonWriter.h"
#include "core/UtilityFunction.h"
#include "foundation/SaturatingSum.h"

#include <algorithm>

namespace brightsweep::cli {

void writeActed(JsonWriter &json, const char *key, const std::vector<ActedItem> &items,
                bool stays) {
    json.key(key).beginArray();
    for (const ActedItem &item : items) {
        if (item.error.empty() == stays)
            continue;
        json.beginObject();
        json.path("path", item.path);
        if (stays)
            json.key("error").value(item.error);
        else
            json.key("bytes").value(item.bytes);
        json.endObject();
    }
    json.endArray();
}

std::string actedText(const std::vector<ActedItem> &items, const std::string &went,
                      std::uint64_t bytesFreed, bool applies) {
    Table table({false, true, false});
    for (const ActedItem &item : items) {
        table.row({item.error.empty() ? went : "stays",
                   UtilityFunction::convertVolSpace(item.bytes).toStdString(),
                   item.error.empty() ? item.path : item.path + ": " + item.error});
    }
    return table.text() + UtilityFunction::convertVolSpace(bytesFreed).toStdString() +
           (applies ? " freed\n" : " would be freed; --apply does it\n");
}

std::uint64_t bytesOf(const std::vector<ActedItem> &items) {
    std::uint64_t bytes = 0;
    for (const ActedItem &item : items)
        bytes = addSaturating(bytes, item.error.empty() ? item.bytes : 0);
    return bytes;
}

bool anyStays(const std::vector<ActedItem> &items) {
    return std::any_of(items.begin(), items.end(),
                       [](const ActedItem &item) { return !item.error.empty(); });
}

} // namespace brightsweep::cli
