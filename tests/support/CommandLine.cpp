#include "support/CommandLine.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace brightsweep::test {

using nlohmann::json;

json documentOf(const std::string &output, const std::string &command) {
    json document = json::parse(output, nullptr, false);
    const bool whole = document.is_object() &&
                       output.starts_with(R"({"schema":1,"command":")" + command + "\",") &&
                       output.find('\n') == output.size() - 1;
    EXPECT_TRUE(whole) << output;
    return whole ? document : json::object();
}

std::string exactPath(const json &item) {
    return item.contains("pathBase64")
               ? QByteArray::fromBase64(QByteArray::fromStdString(item["pathBase64"])).toStdString()
               : item.at("path").get<std::string>();
}

std::vector<std::string> pathsIn(const json &document, const char *list) {
    std::vector<std::string> found;
    for (const json &category : document.at("categories")) {
        for (const json &item : category.at(list))
            found.push_back(exactPath(item));
    }
    return found;
}

} // namespace brightsweep::test
