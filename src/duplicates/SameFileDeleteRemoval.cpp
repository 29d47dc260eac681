// The removal of the duplicates page.

#include "core/ThreadWorker.h"
#include "duplicates/DuplicateNodes.h"
#include "duplicates/HardLinks.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "foundation/Log.h"
#include "removal/RemovalReason.h"
#include "removal/RemovalRun.h"
#include "removal/TrashRecord.h"

#include <QMetaObject>

#include <utility>

namespace brightsweep {

namespace {

// Of all removals of this run of the program.
std::size_t removalsTold = 0;

} // namespace

void SameFileDeleteViewController::removeBtnClicked() {
    if (refuseUnless(m_state == State::Results && !m_selection.isEmpty(), "a removal"))
        return;
    if (!m_surroundings.licenceGate()) {
        DuplicateControls controls = m_controls;
        controls.remove = false;
        setControls(controls);
        return;
    }
    Q_EMIT askToRemove();
}

void SameFileDeleteViewController::askWhetherShareable() {
    if (m_sharingWorker || m_selection.isEmpty() || !m_root)
        return;
    const auto ticked = m_selection.allSelectNumArr();
    m_sharingWorker = ThreadWorker::workOn(this, &SameFileDeleteViewController::askSharing,
                                           {*m_root, membersOf(*ticked.front()->nodeParent())},
                                           &SameFileDeleteViewController::sharingAsked);
}

void SameFileDeleteViewController::askSharing(SearchedGroup group) {
    m_sharingRefusal = sharingRefusal(group.members);
    m_hasTrash = DuplicateRemoval(group.root, {.act = Act::Trash}).hasTrash(group.members.front());
}

void SameFileDeleteViewController::sharingAsked() {
    m_sharingWorker.reset();
    Q_EMIT trashAnswered(m_hasTrash);
    Q_EMIT sharingAnswered(m_sharingRefusal ? QString::fromStdString(m_sharingRefusal.message())
                                            : QString());
}

void SameFileDeleteViewController::removalAnswered(Act act) {
    if (refuseUnless(m_state == State::Results && !m_selection.isEmpty(), "a removal"))
        return;
    const auto begun = RemovalRun::begin("Duplicates");
    if (!begun.run) {
        Q_EMIT removalRefused(RemovalRun::refusal(begun));
        return;
    }
    m_run = begun.run;
    m_bStopDelTask = false;
    m_bSearchFinished = false;
    m_failures.clear();
    m_askedAbout.reset();
    m_report = {.act = act};
    m_jobs = jobs();
    DuplicateControls controls;
    controls.folderButton = false;
    controls.pathView = true;
    controls.stopRemove = true;
    controls.allSelectState = m_controls.allSelectState;
    setControls(controls);
    setState(State::Removing);
    m_twRemoveDupFiles =
        ThreadWorker::workOn(this, &SameFileDeleteViewController::deleteDupFiles, nullptr,
                             &SameFileDeleteViewController::deleteFinished);
}

// A copy of what the worker needs, so that the tree belongs to the main thread alone.
std::vector<SameFileDeleteViewController::Job> SameFileDeleteViewController::jobs() const {
    std::unordered_map<const TreeNode *,
                       std::shared_ptr<const std::vector<DuplicateRemoval::Member>>>
        groups;
    std::vector<Job> jobs;
    for (const auto &leaf : m_selection.allSelectNumArr()) {
        const TreeNode *group = leaf->nodeParent();
        auto &members = groups[group];
        if (!members) {
            auto made = membersOf(*group);
            for (std::size_t i = 0; i < made.size(); ++i)
                made[i].goes = dataOf(*group->childAtIndex(std::int32_t(i))).selectNum() == 1;
            members =
                std::make_shared<const std::vector<DuplicateRemoval::Member>>(std::move(made));
        }
        jobs.push_back({leaf, members, std::size_t(group->indexOfChildIdenticalTo(leaf.get())),
                        dataOf(*group).selectNum() == 1});
    }
    return jobs;
}

void SameFileDeleteViewController::deleteDupFiles(std::nullptr_t) {
    const RemovalRun::Busy busy(*m_run);
    const TrashBatch batch;
    if (!m_root)
        return;
    DuplicateRemoval removal(*m_root, {.act = m_report.act, .stop = &m_run->stopFlag()});
    for (const Job &job : m_jobs) {
        if (m_bStopDelTask || m_run->stopFlag())
            return;
        Result result{job.leaf, removal.act(*job.group, job.index, job.takesWholeGroup)};
        const std::lock_guard lock(m_mutex);
        m_results.push_back(std::move(result));
        // What came by the time that the main thread looks is taken together.
        if (!std::exchange(m_resultsTold, true))
            m_calls.post([this] { takeResults(); });
    }
}

void SameFileDeleteViewController::takeResults() {
    std::vector<Result> results;
    {
        const std::lock_guard lock(m_mutex);
        results.swap(m_results);
        m_resultsTold = false;
    }
    if (results.empty())
        return;
    TreeNode::List gone;
    for (const auto &[leaf, outcome] : results) {
        Q_EMIT baseNumberSetPrograssMax(m_jobs.size(), ++removalsTold);
        m_report.bytesFreed += outcome.bytesFreed;
        if (outcome.done) {
            ++m_report.done;
            if (m_report.act == Act::Share)
                m_selection.untickLeaf(leaf);
            else
                refreshOutlineView(leaf, gone);
            continue;
        }
        if (outcome.error == std::errc::operation_canceled)
            continue;
        ++m_report.failed;
        // The padlock helps a removal alone.
        m_report.neededRights += outcome.neededRights && m_report.act == Act::Remove ? 1 : 0;
        // What the system says has words of its own for the reader.
        const bool isSystems = outcome.error.category() == std::generic_category() ||
                               outcome.error.category() == std::system_category();
        m_failures[leaf.get()] = isSystems ? reasonKey(outcome.error) : outcome.error.message();
    }
    for (const auto &list : m_trees) {
        if (list && !gone.empty())
            list->_removeChildrenIdenticalTo(gone);
    }
    Q_EMIT pathShown(dataOf(*results.back().leaf).name());
    Q_EMIT sizesChanged();
    Q_EMIT rowsChanged();
}

// One leaf has gone. A group that only one file is left of is none any more.
void SameFileDeleteViewController::refreshOutlineView(const TreeNode::Pointer &leaf,
                                                      TreeNode::List &goneGroups) {
    TreeNode *parent = leaf->nodeParent();
    if (!parent)
        return;
    const auto group = parent->shared_from_this();
    SimpleNodeData &data = dataOf(*group);
    const bool hadSome = data.selectNum() == 2;
    std::uint64_t &classSize = m_sizes[std::size_t(data.fileType())];
    const auto subtract = [&](std::uint64_t bytes) {
        data.setFileSize(data.fileSize() - std::min(data.fileSize(), bytes));
        if (data.fileType() != 0)
            classSize -= std::min(classSize, bytes);
    };
    subtract(dataOf(*leaf).fileSize());
    m_selection.forget(leaf);
    group->_removeChildrenIdenticalTo({leaf});
    if (group->numberOfChildren() == 0) {
        goneGroups.push_back(group);
    } else if (hadSome && group->numberOfChildren() == 1) {
        const auto last = group->firstChild();
        subtract(dataOf(*last).fileSize());
        m_selection.forget(last);
        goneGroups.push_back(group);
    } else {
        DuplicateSelection::refreshGroup(*group);
        if (leafOf(*leaf).names() > 1)
            countNames(*group);
    }
}

void SameFileDeleteViewController::deleteFinished() {
    takeResults();
    m_twRemoveDupFiles.reset();
    m_run.reset();
    m_jobs.clear();
    m_report.stopped = m_bStopDelTask;
    m_bSearchFinished = true;
    DuplicateControls controls;
    controls.outline = true;
    setControls(controls);
    setState(State::Results);
    ticksChanged();
    Q_EMIT listChanged();
    Q_EMIT removalEnded();
    if (m_report.act == Act::Share && m_report.done > 0)
        beginBlocks();
    if (m_report.neededRights > 0)
        Q_EMIT unlockAnimation(true);
    if (m_report.failed > 0)
        Q_EMIT alertCanNotRemoveSome();
}

void SameFileDeleteViewController::stopRemoveBtnClicked() {
    if (refuseUnless(m_state == State::Removing, "a stop"))
        return;
    m_bStopDelTask = true;
    m_run->stop();
    DuplicateControls controls = m_controls;
    controls.stopRemove = false;
    setControls(controls);
}

} // namespace brightsweep
