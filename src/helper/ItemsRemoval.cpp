#include "helper/ItemsRemoval.h"

#include "helper/PathRules.h"
#include "helper/RemovalTool.h"
#include "linux/RemovalError.h"
#include "linux/RemovalWay.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace brightsweep::helper {

namespace {

constexpr char stoppedWords[] = "stopped";

Reply refused(std::string reason) {
    reason.resize(std::min(reason.size(), maximumOutput));
    return {false, false, std::move(reason)};
}

std::int64_t nanoseconds(const timespec &time) {
    return std::int64_t(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

bool isAsItWas(const RemoveItems::Item &item, const struct stat &now) {
    return item.device == now.st_dev && item.inode == now.st_ino &&
           item.type == (now.st_mode & S_IFMT) && item.size == std::uint64_t(now.st_size) &&
           item.changed == nanoseconds(now.st_ctim);
}

// The items of one request in their directory.
class Batch {
public:
    Batch(const RemoveItems &removal, int directory, const HoldingPlace &place,
          const SystemPlaces &places)
        : m_removal(removal), m_directory(directory), m_place(place), m_places(places) {}

    Replies run(const std::function<bool(int output)> &wait) {
        m_replies.resize(m_removal.items.size());
        std::vector<std::size_t> accepted;
        for (std::size_t i = 0; i < m_replies.size(); ++i) {
            if (check(i))
                accepted.push_back(i);
        }
        const bool wasQuiet = !accepted.empty() && remove(accepted, wait);
        for (const std::size_t i : accepted) {
            // After a word of the tool nobody knows whom it concerned: what is left goes alone.
            if (!m_replies[i].gone && !wasQuiet && accepted.size() > 1 && !m_stopped && check(i))
                remove({i}, wait);
        }
        return std::move(m_replies);
    }

private:
    bool check(std::size_t index) {
        const RemoveItems::Item &item = m_removal.items[index];
        Reply &reply = m_replies[index];
        struct stat now;
        if (const auto error = lookAt(m_directory, m_place, item.name, now)) {
            const bool isGone = error == std::errc::no_such_file_or_directory;
            reply = isGone ? Reply{true, true, {}} : refused(error.message());
            return false;
        }
        std::error_code error = m_places.refusalForRoot(m_place.chain, item.name, now);
        if (!error && !isAsItWas(item, now))
            error = RemovalError::Changed;
        if (!error && isAptAtWork(m_places.aptArchivesOf(m_place.chain)))
            error = std::make_error_code(std::errc::device_or_resource_busy);
        if (error)
            reply = refused(error.message());
        return !error;
    }

    // True when the tool said nothing and was not ended.
    bool remove(const std::vector<std::size_t> &indices,
                const std::function<bool(int output)> &wait) {
        std::vector<std::string> names;
        for (const std::size_t i : indices)
            names.push_back(m_removal.items[i].name);
        const ToolEnd end = runRemovalTool(m_directory, names, wait);
        m_stopped = m_stopped || end.stopped;
        for (const std::size_t i : indices) {
            Reply &reply = m_replies[i];
            reply = {end.started, isGone(m_removal.items[i].name), {}};
            if (end.stopped && !reply.gone)
                reply.output = stoppedWords;
            else if (indices.size() == 1 || !end.started)
                reply.output = end.output;
        }
        return end.started && !end.stopped && end.output.empty();
    }

    bool isGone(const std::string &name) const {
        struct stat status;
        return ::fstatat(m_directory, name.c_str(), &status,
                         AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0 &&
               errno == ENOENT;
    }

    const RemoveItems &m_removal;
    const int m_directory;
    const HoldingPlace &m_place;
    const SystemPlaces &m_places;
    Replies m_replies;
    bool m_stopped = false;
};

} // namespace

Replies ItemsRemoval::run(const RemoveItems &removal, const std::function<bool(int output)> &wait) {
    if (const auto reason = refusalOfWords(removal); !reason.empty())
        return {refused(std::string(reason))};
    HoldingPlace place;
    const auto directory =
        openHoldingPlace(removal.root, removal.device, removal.inode, removal.way, place);
    if (!directory)
        return {refused(directory.error().message())};
    const auto places = m_places.get([this] { return m_caller; }, place.mounts);
    return Batch(removal, directory->get(), place, *places).run(wait);
}

} // namespace brightsweep::helper
