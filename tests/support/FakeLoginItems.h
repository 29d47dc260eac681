#pragma once

#include "platform/LoginItemSource.h"
#include "platform/Platform.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>

namespace brightsweep::test {

/// A list of login items in memory. It notes the calls that change it, and a call fails that the
/// test names an error for: the next times that many, or always.
class FakeLoginItems final : public LoginItemSource {
public:
    static FakeLoginItems &install() {
        auto *const items = new FakeLoginItems;
        Platform::current().loginItems.reset(items);
        return *items;
    }

    Result<std::vector<LoginItemEntry>> items() override {
        const std::lock_guard lock(m_mutex);
        if (const auto error = failing("items"))
            return error;
        return m_entries;
    }
    Result<std::vector<LoginItemEntry>> systemItems() override {
        const std::lock_guard lock(m_mutex);
        if (const auto error = failing("systemItems"))
            return error;
        return m_system;
    }
    Result<std::string> add(const std::filesystem::path &path, bool hidden) override {
        const std::string file = path.filename().native() + ".desktop";
        const auto error = change("add " + path.native() + (hidden ? " hidden" : ""), "add", [&] {
            m_entries.push_back({.file = file, .path = path, .hidden = hidden});
        });
        return error ? Result<std::string>(error) : file;
    }
    std::error_code remove(const std::string &file) override {
        return change("remove " + file, "remove", [&] {
            std::erase_if(m_entries, [&](const auto &entry) { return entry.file == file; });
        });
    }
    std::error_code setHidden(const std::string &file, bool hidden) override {
        return change((hidden ? "hide " : "show ") + file, "setHidden",
                      [&] { flag(m_entries, file, hidden); });
    }
    std::error_code setSystemItemStarted(const std::string &file, bool started) override {
        return change((started ? "on " : "off ") + file, "setSystemItemStarted",
                      [&] { flag(m_system, file, !started); });
    }
    std::error_code start(const std::string &file) override {
        return change("start " + file, "start", [] {});
    }
    std::filesystem::path pathOf(const std::string &file) override { return "/autostart/" + file; }
    std::shared_ptr<void> watch(std::function<void()> changed) override {
        const auto watch = std::make_shared<std::function<void()>>(std::move(changed));
        m_watches.push_back(watch);
        return watch;
    }

    /// The next `times` calls of that function fail.
    void fail(const std::string &function, std::errc error, int times = 1'000'000) {
        failWith(function, std::make_error_code(error), times);
    }
    void failWith(const std::string &function, std::error_code error, int times = 1'000'000) {
        const std::lock_guard lock(m_mutex);
        m_failing[function] = {error, times};
    }
    /// What another program makes of the list.
    void become(std::vector<LoginItemEntry> entries, std::vector<LoginItemEntry> system = {}) {
        {
            const std::lock_guard lock(m_mutex);
            m_entries = std::move(entries);
            m_system = std::move(system);
        }
        for (const auto &each : m_watches) {
            if (const auto watch = each.lock())
                (*watch)();
        }
    }
    std::vector<std::filesystem::path> paths() const {
        const std::lock_guard lock(m_mutex);
        std::vector<std::filesystem::path> paths;
        for (const LoginItemEntry &entry : m_entries)
            paths.push_back(entry.path);
        return paths;
    }
    std::vector<std::string> calls() const {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }

private:
    struct Failure {
        std::error_code error;
        int times = 0;
    };

    std::error_code failing(const std::string &function) {
        Failure &failure = m_failing[function];
        return failure.times > 0 && failure.times-- > 0 ? failure.error : std::error_code();
    }
    template <typename Change>
    std::error_code change(std::string call, const std::string &function, Change change) {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(std::move(call));
        const std::error_code error = failing(function);
        if (!error)
            change();
        return error;
    }
    static void flag(std::vector<LoginItemEntry> &entries, const std::string &file, bool hidden) {
        for (LoginItemEntry &entry : entries) {
            if (entry.file == file)
                entry.hidden = hidden;
        }
    }

    mutable std::mutex m_mutex;
    std::vector<LoginItemEntry> m_entries;
    std::vector<LoginItemEntry> m_system;
    std::vector<std::string> m_calls;
    std::map<std::string, Failure> m_failing;
    std::vector<std::weak_ptr<std::function<void()>>> m_watches;
};

} // namespace brightsweep::test
