#pragma once

#include "platform/ApplicationSource.h"
#include "removal/ItemRemoval.h"
#include "removal/RemovalRun.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep {

/// Carries removal plans out as they were shown, one after the other. An application goes first and
/// its ticked leftovers after it, so that a removal that fails costs nobody the settings of what is
/// still there; a bundle goes after its leftovers. One that fails does not stop the others.
///
/// For one worker of a run. Failures are kept and logged, never shown.
class Uninstallation {
public:
    /// How one file or folder went.
    struct Item {
        std::filesystem::path path;
        std::uint64_t bytes = 0;
        bool removed = false;
        std::string error; ///< why it stays, in English
        bool neededRights = false;
    };
    /// How one plan went.
    struct Record {
        RemovalPlan plan;
        /// Of the application itself.
        UninstallOutcome outcome = UninstallOutcome::Failed;
        std::string message;     ///< why it stays, a line in English
        std::string output;      ///< all that a tool printed of it, where one did
        std::string wayOut;      ///< what puts it right, a sentence in English
        std::vector<Item> items; ///< the ticked leftovers that were tried, and files of its own
        bool isTried = false;

        /// The application and all that was ticked have gone.
        bool isWhole() const;
        /// It was called off before its turn, or lacks nothing but rights.
        bool isOpen() const;
    };

    explicit Uninstallation(std::vector<RemovalPlan> plans);

    /// Carries out what is open, with the rights that are held. True when everything has gone. A
    /// stop of the run ends it before the next application; what a package manager does is never
    /// cut short. A second call makes sense after rights were newly got, and tries nothing that
    /// failed for another reason.
    bool run(RemovalRun &run);
    /// True where a second run with rights could take away more.
    bool isOpen() const;
    const std::vector<Record> &records() const { return m_records; }

    /// Removes one file or folder as it was shown, as a part of the run under way.
    static Item removeItem(const Leftover &shown, const std::atomic<bool> &stop);

    /// The entries of an application's own folder that go where something in it is kept; no value
    /// where nothing is. An empty list means that the removal fails with whyNothingGoes().
    static std::optional<std::vector<std::filesystem::path>> partsGoing(const RemovalPlan &plan);
    /// A line in English. Where its program would stay for what is kept, the rest does, too.
    static const char *whyNothingGoes(const RemovalPlan &plan);

    /// Told of each application before its turn, on the worker.
    void setProgress(std::function<void(const InstalledApplication &)> told) {
        m_progress = std::move(told);
    }

private:
    void removeApplication(Record &record);
    void removeFiles(Record &record);
    void removeBundle(Record &record);
    bool removeFolder(Record &record, const std::vector<std::filesystem::path> &kept);
    void removeLeftovers(Record &record);
    void lookForSystemSettings(Record &record);
    bool removeItem(Record &record, const Leftover &shown);

    void mergeSets();
    RemovalResult removeSet(std::size_t leader);

    std::vector<Record> m_records;
    std::vector<std::size_t> m_leaders;             ///< by record: the one that its set goes with
    std::map<std::size_t, RemovalPlan> m_sets;      ///< by leader
    std::map<std::size_t, RemovalResult> m_results; ///< likewise, of this run
    std::function<void(const InstalledApplication &)> m_progress;
    const std::atomic<bool> *m_stop = nullptr;
};

} // namespace brightsweep
