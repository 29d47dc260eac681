#include "uninstall/RemovalPlanner.h"

#include "foundation/Identity.h"
#include "foundation/PathBytes.h"
#include "linux/RemovalError.h"
#include "platform/FileHolders.h"
#include "platform/Platform.h"
#include "removal/NvAuthorization.h"
#include "uninstall/LeftoverLook.h"

#include <algorithm>
#include <set>

namespace brightsweep {

namespace {

void block(RemovalPlan &plan, Blocker blocker, std::string reason) {
    plan.blocker = blocker;
    plan.reason = std::move(reason);
}

// What one that is nothing but files is, and whether it could go.
void lookAtItself(RemovalPlan &plan, const std::atomic<bool> *stop) {
    const auto target = NvAuthorization::targetOf(plan.application.path);
    if (!target)
        return block(plan, Blocker::Gone, target.error().message());
    auto itself = lookAtLeftover(*target, LeftoverKind::Data, {}, {stop});
    if (itself) {
        plan.itself = *std::move(itself);
        if (plan.itself.refusal)
            block(plan, Blocker::Unsupported, plan.itself.refusal.message());
        return;
    }
    const auto item = Platform::current().files->openItem(*target);
    if (!item)
        block(plan, Blocker::Gone, item.error().message());
    else if (item->refusal)
        block(plan, Blocker::Unsupported, item->refusal.message());
    else
        block(plan, Blocker::Gone, {});
}

std::vector<std::string> programsRunningIn(const std::filesystem::path &folder) {
    std::set<std::string> programs;
    for (const HeldFile &held : Platform::current().holders->heldFiles()) {
        if (paths::isSameOrBelow(held.path, folder.native()))
            programs.insert(held.program);
    }
    return {programs.begin(), programs.end()};
}

// How much of an item at the application's path goes with it: without what lies in it and is listed
// as a leftover, with a tick of its own.
std::uint64_t ownBytes(const RemovalPlan &plan) {
    std::uint64_t bytes = plan.itself.bytes;
    for (const Leftover &leftover : plan.leftovers) {
        if (paths::isSameOrBelow(leftover.path.native(), plan.application.path.native()))
            bytes -= std::min(bytes, leftover.bytes);
    }
    return bytes;
}

} // namespace

ApplicationSource *sourceOf(ApplicationKind kind) {
    for (const auto &source : Platform::current().applications) {
        if (source->kind() == kind)
            return source.get();
    }
    return nullptr;
}

bool isPlainFiles(const InstalledApplication &application) {
    const ApplicationSource *source = sourceOf(application.kind);
    return source ? source->isPlainFiles() : application.kind == ApplicationKind::Bundle;
}

std::uint64_t sizeOf(const RemovalPlan &plan) {
    ApplicationSource *source = sourceOf(plan.application.kind);
    return isPlainFiles(plan.application) || !source ? ownBytes(plan)
                                                     : source->sizeOf(plan.application);
}

std::vector<std::filesystem::path> keptIn(const RemovalPlan &plan) {
    const std::filesystem::path &folder = plan.application.path;
    std::vector<std::filesystem::path> kept;
    for (const Leftover &leftover : plan.leftovers) {
        if (isPlainFiles(plan.application) && !leftover.ticked && leftover.path != folder &&
            paths::isSameOrBelow(leftover.path.native(), folder.native()))
            kept.push_back(leftover.path);
    }
    return kept;
}

bool takesRights(const RemovalPlan &plan) {
    return plan.blocker == Blocker::None && plan.application.kind == ApplicationKind::Package &&
           !plan.application.userOwned;
}

bool needsRights(const RemovalPlan &plan) {
    const auto stays = [](const Leftover &leftover) {
        return leftover.ticked && leftover.needsRights;
    };
    // A bundle goes after its leftovers, and not without them.
    const bool isKept = plan.application.kind == ApplicationKind::Bundle &&
                        std::any_of(plan.leftovers.begin(), plan.leftovers.end(), stays);
    return takesRights(plan) ||
           (plan.blocker == Blocker::None && (plan.itself.needsRights || isKept));
}

RemovalPlanner::RemovalPlanner(std::vector<InstalledApplication> installed)
    : m_leftovers(std::move(installed)) {}

RemovalPlan RemovalPlanner::planOf(const InstalledApplication &application,
                                   const std::atomic<bool> *stop) const {
    RemovalPlan plan;
    if (ApplicationSource *source = sourceOf(application.kind))
        plan = source->plan(application);
    else if (application.kind != ApplicationKind::Bundle)
        block(plan, Blocker::Unsupported, "nothing on this machine can remove it");
    plan.application = application;
    // This program refuses to take its own version away; any other one goes like any application.
    if (application.desktopId() == bundleIdentifier && application.version == programVersion)
        block(plan, Blocker::NeededByUs, "this is the program that you are using");
    if (isPlainFiles(application)) {
        if (plan.running.empty())
            plan.running = programsRunningIn(application.path);
        if (plan.blocker == Blocker::None)
            lookAtItself(plan, stop);
    }
    plan.leftovers = m_leftovers.of(plan, stop);
    return plan;
}

} // namespace brightsweep
