#include "uninstall/PropertyList.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace brightsweep {

namespace {

using Texts = std::map<std::string, QString>;

struct FreePlist {
    void operator()(void *node) const { ::plist_free(node); }
};
struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

Texts textsOfJson(std::string_view bytes) {
    Texts texts;
    const QJsonObject object =
        QJsonDocument::fromJson(QByteArray(bytes.data(), qsizetype(bytes.size()))).object();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (entry.value().isString())
            texts[entry.key().toStdString()] = entry.value().toString();
    }
    return texts;
}

Texts textsOfPlist(std::string_view bytes) {
    const auto size = std::uint32_t(bytes.size());
    plist_t parsed = nullptr;
    if (bytes.starts_with("bplist"))
        ::plist_from_bin(bytes.data(), size, &parsed);
    else
        ::plist_from_xml(bytes.data(), size, &parsed);
    const std::unique_ptr<void, FreePlist> list(parsed);
    Texts texts;
    if (!list || ::plist_get_node_type(list.get()) != PLIST_DICT)
        return texts;
    plist_dict_iter position = nullptr;
    ::plist_dict_new_iter(list.get(), &position);
    const std::unique_ptr<void, Free> ownsPosition(position);
    while (true) {
        char *key = nullptr;
        plist_t value = nullptr;
        ::plist_dict_next_item(list.get(), position, &key, &value);
        const std::unique_ptr<char, Free> ownsKey(key);
        if (!key || !value)
            return texts;
        if (::plist_get_node_type(value) != PLIST_STRING)
            continue;
        char *text = nullptr;
        ::plist_get_string_val(value, &text);
        const std::unique_ptr<char, Free> ownsText(text);
        if (text)
            texts[key] = QString::fromUtf8(text);
    }
}

} // namespace

Texts readPropertyList(std::string_view bytes) {
    const auto first = bytes.find_first_not_of(" \t\r\n");
    if (first == bytes.npos)
        return {};
    return bytes[first] == '{' ? textsOfJson(bytes) : textsOfPlist(bytes);
}

} // namespace brightsweep
