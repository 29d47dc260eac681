#include "uninstall/UninstallAppsController.h"

#include "cleaning/FolderUtilities.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "core/ThreadWorker.h"
#include "core/UtilityFunction.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "removal/RemovalRun.h"
#include "uninstall/RemovalPlanner.h"
#include "uninstall/Uninstallation.h"

#include <QCollator>

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace brightsweep {

namespace {

using Items = UninstallAppsController::Items;

constexpr qsizetype longestName = 28; // before it is cut
constexpr qsizetype longestPath = 70;

QString cut(const QString &text, qsizetype longest) {
    return text.size() > longest ? text.left(longest) + QStringLiteral("...") : text;
}

bool isTicked(const AppItems::Pointer &item) {
    return item->bIsSelected;
}

bool isOfRow(const AppItems &item, int row) {
    using Page = UninstallAppsController;
    return row == Page::AllApplications ||
           row == (item.isSystemApp ? Page::SystemApplications : Page::OtherApplications);
}

bool matches(const AppItems &item, const QString &filter) {
    const auto has = [&](const QString &text) {
        return text.contains(filter, Qt::CaseInsensitive);
    };
    return has(item.name) || has(item.bundleID) ||
           // Of a path only its name: everything of a user lies below that user's.
           (item.application && has(paths::display(paths::lastComponent(item.application->key))));
}

// What makes it the same application in two listings.
std::tuple<ApplicationKind, std::string, bool> identityOf(const AppItems &item) {
    return {item.application->kind, item.application->key, item.application->userOwned};
}

} // namespace

UninstallAppsController::UninstallAppsController(Surroundings surroundings, QObject *parent)
    : QObject(parent),
      m_surroundings(std::move(surroundings)),
      m_clock(m_surroundings.clock ? *m_surroundings.clock : Clock::eventLoop()),
      m_watch(m_clock),
      m_leftBehind(surroundingsOfLeftBehind(), m_padlock) {
    auto &center = NotificationCenter::defaultCenter();
    center.addObserver(this, uninstallShowSelectNumInBottomNotification,
                       [this](const Notification &told) {
                           uninstallShowSelectNumInBottom(
                               told.userInfo.value(QStringLiteral("object")).toString() ==
                               QLatin1String("uninstalled"));
                       });
    center.addObserver(this, changeSelectCellNotification, [this](const Notification &told) {
        changeSelectCell(told.userInfo.value(QStringLiteral("UninstallRowNumber")).toInt());
    });
    connect(&m_padlock, &PadlockController::lockStateChanged, this,
            &UninstallAppsController::rightsAnswered);
    connect(&m_leftBehind, &LeftBehindController::stateChanged, this,
            &UninstallAppsController::stateChanged);
    connect(&m_leftBehind, &LeftBehindController::itemsChanged, this,
            &UninstallAppsController::countsChanged);
    connect(&m_watch, &CatalogueWatch::changed, this, &UninstallAppsController::listAgain);
}

UninstallAppsController::~UninstallAppsController() {
    NotificationCenter::defaultCenter().removeObserver(this);
    m_stopsPlanning = true;
    if (m_run)
        m_run->stop();
    if (m_worker)
        m_worker->abandon();
}

bool UninstallAppsController::refuseUnless(bool allowed, const char *what) const {
    if (!allowed)
        NSLog("The uninstall page is asked for %@ in state %d", what, int(m_state));
    return !allowed;
}

void UninstallAppsController::setState(State state) {
    m_state = state;
    Q_EMIT stateChanged();
}

// -- Jobs

void UninstallAppsController::enqueue(Job job) {
    m_jobs.push_back(std::move(job));
    if (m_jobs.size() == 1)
        startNextJob();
}

void UninstallAppsController::startNextJob() {
    m_worker = ThreadWorker::workOn(this, &UninstallAppsController::doJob, nullptr,
                                    &UninstallAppsController::jobDone);
}

void UninstallAppsController::doJob(std::nullptr_t) {
    m_jobs.front().work();
}

void UninstallAppsController::jobDone() {
    m_worker.reset();
    const auto done = std::move(m_jobs.front().done);
    m_jobs.pop_front();
    if (!m_jobs.empty())
        startNextJob();
    done();
}

// -- The list

void UninstallAppsController::beginSearchApps() {
    if (std::exchange(m_alreadyListApps, true))
        return;
    m_selectButton = false;
    setState(State::Listing);
    listAgain();
}

void UninstallAppsController::cancelSearchApps() {
    if (m_state == State::Listing)
        setState(State::NotListed);
}

void UninstallAppsController::listAgain() {
    // One that waits already will see what is new now.
    if (!m_alreadyListApps || std::exchange(m_wantsListing, true))
        return;
    enqueue({[this] { searchApplications(nullptr, nullptr); }, [this] { searchAppsFinished(); }});
}

void UninstallAppsController::searchApplications(std::nullptr_t, ThreadWorker *) {
    m_found = std::make_unique<UninstallAppInfo>();
    m_watched = Platform::current().directories->paths(StandardDirectory::Applications);
    for (const auto &source : Platform::current().applications) {
        for (auto &place : source->watched())
            m_watched.push_back(std::move(place));
    }
    NSLog("*******************Refresh uninstall table view*******************");
}

void UninstallAppsController::searchAppsFinished() {
    m_wantsListing = false;
    const bool isFirst = !std::exchange(m_isScaned, true);
    if (m_found) // else the worker failed
        mergeFound();
    m_searchFinished = true;
    if (isFirst && UtilityFunction::isBelowSystemVer(10, 6, 0)) {
        for (auto &item : m_allApplications)
            item = item->copyWithZone();
    }
    if (isFirst)
        setState(State::Ready);
    if (m_isShown)
        m_watch.watch(m_watched);
    if (m_state == State::Ready)
        postSelectNum(!m_uninstallTextField.isCount && !m_uninstallTextField.text.isEmpty());
}

// Records that are there already stay the same ones, with their ticks.
void UninstallAppsController::mergeFound() {
    std::map<std::tuple<ApplicationKind, std::string, bool>, AppItems::Pointer> known;
    for (const auto &item : m_searchAllAppArr)
        known.emplace(identityOf(*item), item);
    Items items;
    for (const auto &found : m_found->allAppsInfo()) {
        const auto old = known.find(identityOf(*found));
        if (old == known.end()) {
            items.push_back(found);
            continue;
        }
        old->second->takeFacts(*found);
        items.push_back(old->second);
        known.erase(old);
    }
    for (const auto &[identity, gone] : known)
        m_failures.erase(gone.get());
    m_searchAllAppArr = std::move(items);
    m_listFailures = m_found->failures();
    m_found.reset();
    renewList();
}

void UninstallAppsController::setShown(bool isShown) {
    m_isShown = isShown;
    if (!isShown)
        return m_watch.watch({});
    if (m_isScaned)
        listAgain();
}

Items UninstallAppsController::itemsOfRow(int row) const {
    Items items;
    std::copy_if(m_searchAllAppArr.begin(), m_searchAllAppArr.end(), std::back_inserter(items),
                 [row](const auto &item) { return isOfRow(*item, row); });
    return items;
}

std::vector<InstalledApplication> UninstallAppsController::installed() const {
    std::vector<InstalledApplication> installed;
    for (const auto &item : m_searchAllAppArr)
        installed.push_back(*item->application);
    return installed;
}

LeftBehindController::Surroundings UninstallAppsController::surroundingsOfLeftBehind() {
    return {[this](std::function<void()> work, std::function<void()> done) {
                enqueue({std::move(work), std::move(done)});
            },
            [this] { return installed(); },
            [this] {
                std::vector<ApplicationKind> kinds;
                for (const auto &failure : m_listFailures)
                    kinds.push_back(failure.kind);
                return kinds;
            }};
}

std::size_t UninstallAppsController::countOfRow(int row) const {
    if (row == LeftBehindRow)
        return m_leftBehind.items().size();
    return std::size_t(std::count_if(m_searchAllAppArr.begin(), m_searchAllAppArr.end(),
                                     [row](const auto &item) { return isOfRow(*item, row); }));
}

// What is highlighted stays so as long as it is shown.
void UninstallAppsController::renewList() {
    const auto row = std::size_t(m_selectRow);
    const auto selected = row < m_allApplications.size() ? m_allApplications[row] : nullptr;
    m_allApplications = itemsOfRow(m_nowSelectRow);
    if (!m_filter.isEmpty())
        std::erase_if(m_allApplications,
                      [this](const auto &item) { return !matches(*item, m_filter); });
    sortList();
    const auto found = std::find(m_allApplications.begin(), m_allApplications.end(), selected);
    if (found != m_allApplications.end())
        m_selectRow = int(found - m_allApplications.begin());
    m_selectRow = std::clamp(m_selectRow, 0, std::max(0, int(m_allApplications.size()) - 1));
    getSelectAllOrNull();
    Q_EMIT allApplicationsChanged();
    Q_EMIT countsChanged();
}

void UninstallAppsController::sortList() {
    QCollator collator(reader());
    collator.setNumericMode(true);
    std::map<const AppItems *, QCollatorSortKey> names;
    for (const auto &item : m_allApplications)
        names.emplace(item.get(), collator.sortKey(item->name.toCaseFolded()));
    const auto isBefore = [&](const AppItems::Pointer &one, const AppItems::Pointer &other) {
        const AppItems &a = m_sortDescending ? *other : *one;
        const AppItems &b = m_sortDescending ? *one : *other;
        switch (m_sortKey) {
        case SortKey::Size:
            if (a.fileSizeNum != b.fileSizeNum)
                return a.fileSizeNum < b.fileSizeNum;
            break;
        case SortKey::Date:
            if (a.date != b.date)
                return a.date < b.date;
            break;
        case SortKey::Kind:
            if (a.application->kind != b.application->kind)
                return a.application->kind < b.application->kind;
            break;
        case SortKey::Name:
            return names.at(&a).compare(names.at(&b)) < 0;
        }
        return names.at(one.get()).compare(names.at(other.get())) < 0;
    };
    std::stable_sort(m_allApplications.begin(), m_allApplications.end(), isBefore);
}

void UninstallAppsController::sort(SortKey key, bool descending) {
    m_sortKey = key;
    m_sortDescending = descending;
    renewList();
}

void UninstallAppsController::setFilter(const QString &text) {
    if (std::exchange(m_filter, text) == text || !m_isScaned)
        return;
    renewList();
    postSelectNum();
}

void UninstallAppsController::changeSelectCell(int row) {
    if (!m_isScaned || !isIdle() || row < 0 || row >= rows)
        return;
    m_nowSelectRow = row;
    m_allApplications.clear(); // nothing of the last row stays highlighted
    m_selectRow = 0;
    renewList();
    if (row == LeftBehindRow)
        m_leftBehind.search();
    postSelectNum();
}

// -- Ticks

void UninstallAppsController::tick(int row) {
    if (refuseUnless(isIdle() && row >= 0 && std::size_t(row) < m_allApplications.size(), "a tick"))
        return;
    AppItems &item = *m_allApplications[std::size_t(row)];
    item.bIsSelected = !item.bIsSelected;
    getSelectAllOrNull();
    postSelectNum();
    Q_EMIT rowsChanged();
    if (item.bIsSelected)
        Q_EMIT ticked(row);
}

void UninstallAppsController::tick(const std::vector<int> &rowNumbers, bool isTicked) {
    if (refuseUnless(isIdle(), "ticks"))
        return;
    for (const int row : rowNumbers)
        m_allApplications.at(std::size_t(row))->bIsSelected = isTicked;
    getSelectAllOrNull();
    postSelectNum();
    Q_EMIT rowsChanged();
}

void UninstallAppsController::selectAllList(bool isTicked) {
    if (refuseUnless(isIdle(), "all ticks"))
        return;
    for (const auto &item : m_allApplications)
        item->bIsSelected = isTicked;
    getSelectAllOrNull();
    postSelectNum();
    Q_EMIT rowsChanged();
}

void UninstallAppsController::getSelectAllOrNull() {
    const std::size_t count = selectedCount();
    m_uninstallButton = count > 0;
    m_selectButton = count > 0 && count == m_allApplications.size();
}

std::size_t UninstallAppsController::selectedCount() const {
    return std::size_t(std::count_if(m_allApplications.begin(), m_allApplications.end(), isTicked));
}

std::size_t UninstallAppsController::hiddenSelectedCount() const {
    const auto all = std::count_if(m_searchAllAppArr.begin(), m_searchAllAppArr.end(), isTicked);
    return std::size_t(all) - std::min(std::size_t(all), selectedCount());
}

Items UninstallAppsController::getAllSelectApp() const {
    Items items;
    std::copy_if(m_allApplications.begin(), m_allApplications.end(), std::back_inserter(items),
                 isTicked);
    return items;
}

const char *UninstallAppsController::uninstallImage() const {
    return m_uninstallButton ? "uninstallButton.png" : "uninstall_d.png";
}

void UninstallAppsController::postSelectNum(bool isUninstalled) {
    QVariantMap userInfo;
    if (isUninstalled)
        userInfo[QStringLiteral("object")] = QStringLiteral("uninstalled");
    NotificationCenter::defaultCenter().post(uninstallShowSelectNumInBottomNotification, nullptr,
                                             userInfo);
}

void UninstallAppsController::uninstallShowSelectNumInBottom(bool isUninstalled) {
    getSelectAllOrNull();
    if (!isUninstalled)
        m_uninstallTextField = {localizedText("%d of %d selected."),
                                {},
                                true,
                                selectedCount(),
                                m_allApplications.size(),
                                false};
    Q_EMIT messageChanged();
}

QString UninstallAppsController::failureOf(const AppItems &item) const {
    const auto found = m_failures.find(&item);
    return found == m_failures.end() ? QString() : found->second;
}

void UninstallAppsController::unlockRigths(bool open) {
    m_padlock.unlockRigths(open);
}

// -- A closer look

void UninstallAppsController::cellClickOfView(int row) {
    if (refuseUnless(isIdle() && row >= 0 && std::size_t(row) < m_allApplications.size(),
                     "details"))
        return;
    const AppItems::Pointer item = m_allApplications[std::size_t(row)];
    const QString path = paths::display(item->path);
    m_details = {
        item,
        cut(item->name, longestName),
        item->name,
        {},
        item->date.isValid()
            ? localizedText("Created: %@").arg(reader().toString(item->date, QLocale::ShortFormat))
            : QString(),
        cut(path, longestPath)};
    Q_EMIT detailsAsked();
    const auto application = item->application;
    enqueue({[this, application] {
                 ApplicationSource *const source = sourceOf(application->kind);
                 m_measured = source ? source->sizeOf(*application)
                                     : FolderUtilities::sizeOfItemAtPath(application->path);
             },
             [this, item] {
                 if (m_details.item != item)
                     return;
                 const QString size = UtilityFunction::convertVolSpace(m_measured);
                 m_details.size = size.isEmpty() ? QStringLiteral("--") : size;
                 Q_EMIT detailsChanged();
             }});
}

void UninstallAppsController::alertWindowOkAction() {
    m_details = {};
}

} // namespace brightsweep
