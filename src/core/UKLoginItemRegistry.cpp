#include "core/UKLoginItemRegistry.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <thread>

namespace brightsweep {

namespace {

constexpr int maximumPauses = 60;
constexpr std::string_view host = "localhost";

std::function<void()> &pauseInUse() {
    static std::function<void()> pause;
    return pause;
}

void pause() {
    if (pauseInUse())
        pauseInUse()();
    else
        std::this_thread::sleep_for(std::chrono::seconds(1));
}

LoginItemSource &source() {
    return *Platform::current().loginItems;
}

bool isTimeOut(std::error_code error) {
    return error == std::errc::timed_out || error == std::errc::device_or_resource_busy;
}

} // namespace

void UKLoginItemRegistry::setPause(std::function<void()> pause) {
    pauseInUse() = std::move(pause);
}

std::string UKLoginItemRegistry::urlOfPath(const std::filesystem::path &path) {
    return "file://" + std::string(host) + paths::percentEncoded(path.native());
}

std::filesystem::path UKLoginItemRegistry::pathOfURL(const std::string &url) {
    const std::string plain = paths::percentDecoded(url);
    const std::size_t found = plain.find(host);
    if (found == std::string::npos)
        return {};
    return plain.substr(found + host.size());
}

Result<std::vector<LoginItem>> UKLoginItemRegistry::allLoginItems() {
    auto entries = source().items();
    for (int pauses = 0; !entries && isTimeOut(entries.error()); entries = source().items()) {
        NSLog("Get login items error -1712 occur.");
        if (++pauses > maximumPauses) {
            NSLog("Get login items error -1712 and timeout.");
            return entries.error();
        }
        pause();
    }
    if (!entries) {
        NSLog("Couldn't list login items error %@", entries.error().value());
        return entries.error();
    }
    std::vector<LoginItem> items;
    items.reserve(entries->size());
    for (LoginItemEntry &entry : *entries)
        items.push_back({urlOfPath(entry.path), entry.hidden, std::move(entry)});
    return items;
}

Result<std::string> UKLoginItemRegistry::addLoginItem(const std::filesystem::path &path,
                                                      bool hideIt) {
    auto file = source().add(path, hideIt);
    if (!file)
        NSLog("Couldn't add login item error %@", file.error().value());
    return file;
}

bool UKLoginItemRegistry::addLoginItemWithURL(const std::string &url, bool hideIt) {
    return addLoginItemWithPath(pathOfURL(url), hideIt);
}

bool UKLoginItemRegistry::addLoginItemWithPath(const std::filesystem::path &path, bool hideIt) {
    return bool(addLoginItem(path, hideIt));
}

std::error_code UKLoginItemRegistry::removeLoginItemWithFile(const std::string &file) {
    const std::error_code error = source().remove(file);
    if (error)
        NSLog("Couldn't remove login item error %@", error.value());
    return error;
}

std::error_code UKLoginItemRegistry::setHidden(const std::string &file, bool hidden) {
    const std::error_code error = source().setHidden(file, hidden);
    if (error)
        NSLog("Couldn't change login item error %@", error.value());
    return error;
}

bool UKLoginItemRegistry::removeLoginItemAtIndex(int index) {
    const auto items = allLoginItems();
    if (!items)
        return false;
    if (index < 0 || std::size_t(index) >= items->size()) {
        NSLog("There is no login item %@", index);
        return false;
    }
    return !removeLoginItemWithFile((*items)[std::size_t(index)].entry.file);
}

int UKLoginItemRegistry::indexForLoginItemWithURL(const std::string &url) {
    const auto items = allLoginItems();
    if (!items)
        return -1;
    const auto found = std::find_if(items->begin(), items->end(),
                                    [&](const LoginItem &item) { return item.url == url; });
    return found == items->end() ? -1 : int(found - items->begin());
}

int UKLoginItemRegistry::indexForLoginItemWithPath(const std::filesystem::path &path) {
    return indexForLoginItemWithURL(urlOfPath(path));
}

bool UKLoginItemRegistry::removeLoginItemWithURL(const std::string &url) {
    // One listing for both steps: what was found is what goes.
    const auto items = allLoginItems();
    if (!items)
        return false;
    for (const LoginItem &item : *items) {
        if (item.url == url)
            return !removeLoginItemWithFile(item.entry.file);
    }
    return false;
}

bool UKLoginItemRegistry::removeLoginItemWithPath(const std::filesystem::path &path) {
    return removeLoginItemWithURL(urlOfPath(path));
}

} // namespace brightsweep
