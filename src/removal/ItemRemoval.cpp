#include "removal/ItemRemoval.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "linux/RemovalError.h"
#include "platform/Platform.h"
#include "removal/NvAuthorization.h"

namespace brightsweep {

namespace {

FileOperations &files() {
    return *Platform::current().files;
}

// Silence of the tool is success and one byte from it is failure; the name must be gone as well.
bool isSuccess(const PrivilegedReply &reply) {
    return reply.performed && reply.gone && reply.output.empty();
}

std::filesystem::path wayOf(const RemovalTarget &target) {
    const std::string &relative = target.relative.native();
    const auto slash = relative.rfind('/');
    return slash == relative.npos ? std::string() : relative.substr(0, slash);
}

std::vector<PrivilegedReply> ask(const PrivilegedRemoval &removal, const std::atomic<bool> *stop) {
    const auto reference = NvAuthorization::shareNvAuthorization().getAuthorizationRet();
    return Platform::current().rights->removeItems(
        reference.value_or(AuthorizationReference{}).token, removal, stop);
}

} // namespace

bool isForWantOfPermission(std::error_code error) {
    return error == std::errc::permission_denied || error == std::errc::operation_not_permitted;
}

Result<OpenItem> ItemRemoval::reach(const RemovalTarget &target) {
    auto item = files().openItem(target, m_previous.folder ? &m_previous : nullptr);
    if (item)
        m_previous = *item;
    return item;
}

const std::optional<TrashRecord> &ItemRemoval::trashOf(const RemovalTarget &target,
                                                       const OpenItem &item) {
    if (m_trashFolder != item.folder) {
        m_trash = TrashRecord::of(*item.folder, target);
        m_trashFolder = item.folder;
    }
    return m_trash;
}

void ItemRemoval::forget(const RemovalTarget &target, const OpenItem &item) {
    const auto &trash = trashOf(target, item);
    if (!trash || trash->forget(item.name))
        return;
    const auto info = trash->trashInfo(item.name);
    if (!info)
        return;
    // Its record is no trash's item, so that this ends here.
    if (const auto record = files().openItem(*info, nullptr))
        ask({info->root, {}, {{record->name, record->attributes}}}, m_stop);
}

RemovalOutcome ItemRemoval::removeWithoutRights(const RemovalTarget &target, const OpenItem &item) {
    RemovalOutcome outcome;
    // While the item is still there: it tells which trash it is in.
    trashOf(target, item);
    outcome.error = files().removeItem(item, {m_stop, &outcome.modeStayed});
    outcome.removed = !outcome.error;
    outcome.neededRights = isForWantOfPermission(outcome.error);
    if (outcome.removed)
        forget(target, item);
    return outcome;
}

PrivilegedReply ItemRemoval::removeWithRights(const RemovalTarget &target, const OpenItem &item) {
    trashOf(target, item);
    auto replies = ask({target.root, wayOf(target), {{item.name, item.attributes}}}, m_stop);
    if (replies.empty())
        return {};
    if (isSuccess(replies.front()))
        forget(target, item);
    return std::move(replies.front());
}

RemovalOutcome ItemRemoval::remove(const RemovalTarget &target) {
    return remove(target, reach(target));
}

RemovalOutcome ItemRemoval::remove(const RemovalTarget &target, const Result<OpenItem> &item) {
    RemovalOutcome result;
    const Told told = [&](std::size_t, const RemovalOutcome &outcome) { result = outcome; };
    removeInTurn(0, target, item, told);
    finish(told);
    return result;
}

void ItemRemoval::removeInTurn(std::size_t index, const RemovalTarget &target,
                               const Result<OpenItem> &item, const Told &told) {
    RemovalOutcome outcome;
    if (item)
        outcome = removeWithoutRights(target, *item);
    else
        outcome = {false, item.error(), {}, isForWantOfPermission(item.error()), false};
    // What is in use or protected stays so for an administrator too.
    const bool mayHelp = item && !item->refusal && !outcome.removed &&
                         !isKeptByFlag(outcome.error) &&
                         outcome.error != std::errc::device_or_resource_busy &&
                         outcome.error != std::errc::operation_canceled;
    if (!mayHelp) {
        if (!outcome.removed)
            NSLog("Clean deletable file failed: %@-%@", target.path(), outcome.error);
        told(index, outcome);
        return;
    }
    if (!m_waiting.empty() && m_waiting.front().item.folder != item->folder)
        finish(told);
    // The first attempt may have changed it; what goes along is what it is now.
    const auto again = files().openItem(target, &*item);
    const bool isSame = again && again->attributes.device == item->attributes.device &&
                        again->attributes.inode == item->attributes.inode;
    if (!isSame) {
        outcome.error = again ? make_error_code(RemovalError::Changed) : again.error();
        NSLog("Clean deletable file failed: %@-%@", target.path(), outcome.error);
        told(index, outcome);
        return;
    }
    m_waiting.push_back({index, target, *again, std::move(outcome)});
    if (m_waiting.size() == PrivilegedRemoval::mostItems)
        finish(told);
}

void ItemRemoval::finish(const Told &told) {
    if (m_waiting.empty())
        return;
    const std::vector<Waiting> waiting = std::exchange(m_waiting, {});
    PrivilegedRemoval removal{waiting.front().target.root, wayOf(waiting.front().target), {}};
    for (const Waiting &one : waiting)
        removal.items.push_back({one.item.name, one.item.attributes});
    auto replies = ask(removal, m_stop);
    replies.resize(waiting.size());
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        RemovalOutcome outcome = waiting[i].outcome;
        outcome.removed = isSuccess(replies[i]);
        outcome.words = replies[i].output;
        if (outcome.removed)
            forget(waiting[i].target, waiting[i].item);
        // Logged whichever way the second attempt ended.
        NSLog("Clean deletable file failed: %@-%@", waiting[i].target.path(), outcome.error);
        told(waiting[i].index, outcome);
    }
}

} // namespace brightsweep
