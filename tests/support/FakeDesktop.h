#pragma once

#include "foundation/Paths.h"
#include "platform/DesktopNotifier.h"
#include "platform/MemorySource.h"
#include "platform/Platform.h"
#include "platform/SingleInstance.h"
#include "platform/StatusItem.h"
#include "platform/SystemFacts.h"
#include "platform/Workspace.h"

#include <filesystem>
#include <map>
#include <utility>
#include <vector>

// The desktop's facilities as a test says; each notes what it is told.
namespace brightsweep::test {

class FakeStatusItem final : public StatusItem {
public:
    bool hostPresent() const override { return host; }
    void setShown(bool value) override { note(shown, value); }
    void setImages(std::vector<StatusImage> value) override { note(images, std::move(value)); }
    void setTitle(const QString &value) override { note(title, value); }
    void setToolTip(const QString &first, const QString &text) override {
        note(toolTip, first + QLatin1Char('\n') + text);
    }
    void setActivatedHandler(std::function<void(const StatusActivation &)> handler) override {
        activated = std::move(handler);
    }
    void setHostHandler(std::function<void(bool)> handler) override {
        hostHandler = std::move(handler);
    }

    void setHost(bool present) {
        host = present;
        hostHandler(present);
    }

    bool host = true;
    bool shown = false;
    std::vector<StatusImage> images;
    QString title;
    QString toolTip;
    int changes = 0; ///< calls that a desktop would have to be told of or not
    std::function<void(const StatusActivation &)> activated;
    std::function<void(bool)> hostHandler;

private:
    template <typename Value>
    void note(Value &field, Value value) {
        field = std::move(value);
        ++changes;
    }
};

class FakeNotifier final : public DesktopNotifier {
public:
    bool available() override { return true; }
    void show(const DesktopNotification &notification) override { shown.push_back(notification); }

    std::vector<DesktopNotification> shown;
};

class FakeInstance final : public SingleInstance {
public:
    InstanceOutcome claim(bool, const InstanceRequest &) override { return InstanceOutcome::First; }
    void setActivateHandler(std::function<void(const InstanceRequest &)> handler) override {
        activate = std::move(handler);
    }

    std::function<void(const InstanceRequest &)> activate;
};

class FakeFacts final : public SystemFacts {
public:
    static FakeFacts &install() {
        auto *const facts = new FakeFacts;
        Platform::current().facts.reset(facts);
        return *facts;
    }
    Result<SystemVersion> version() override { return running; }
    Result<std::string> kernelValue(std::string_view name) override { return value(name); }

    Result<SystemVersion> running = SystemVersion{10, 7, 1};
    std::function<Result<std::string>(std::string_view name)> value;
};

class FakeMemory final : public MemorySource {
public:
    Result<MemoryCounts> counts() override {
        ++readings;
        return figures;
    }
    Result<std::uint64_t> availableBytes() override { return available; }
    Result<MemoryDetails> details() override {
        MemoryDetails all = more;
        all.available = available;
        return all;
    }
    std::vector<ProcessMemory> processes(ProcessReading reading,
                                         const std::atomic<bool> *) override {
        return reading == ProcessReading::Exact ? exact : quick;
    }

    MemoryDetails more;
    std::vector<ProcessMemory> quick;
    std::vector<ProcessMemory> exact; ///< read on a worker
    Result<MemoryCounts> figures = MemoryCounts{100, 50, 30, 20, 7, 8, 9};
    std::uint64_t available = 2'147'483'648;
    int readings = 0;
};

class FakeWorkspace final : public Workspace {
public:
    QString displayName(const std::filesystem::path &path) override { return paths::display(path); }
    bool isPackage(const std::filesystem::path &) override { return false; }
    QString typeOf(const std::filesystem::path &) override { return {}; }
    Result<FileTime> created(const std::filesystem::path &path) override {
        const auto found = births.find(path.filename());
        return found == births.end() ? FileTime() : found->second;
    }
    bool isMissing(const std::string &) override { return false; }
    bool mayLieOnAbsentVolume(const std::filesystem::path &) override { return false; }
    bool open(const std::filesystem::path &path) override {
        opened.push_back(path);
        return works;
    }
    bool reveal(const std::filesystem::path &path) override {
        revealed.push_back(path);
        return works;
    }

    bool works = true;
    std::map<std::filesystem::path, FileTime> births; ///< by name
    std::vector<std::filesystem::path> opened;
    std::vector<std::filesystem::path> revealed;
};

} // namespace brightsweep::test
