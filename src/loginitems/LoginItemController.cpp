#include "loginitems/LoginItemController.h"

#include "core/FunctionOperation.h"
#include "core/Texts.h"
#include "foundation/Identity.h"
#include "foundation/Paths.h"
#include "platform/LoginItemError.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "platform/Workspace.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brightsweep {

namespace {

// What an item whose file is gone is called in some lists.
constexpr QLatin1String missingName("msng");

LoginItemSource &source() {
    return *Platform::current().loginItems;
}

QString wordsOf(std::error_code error) {
    return error ? localizedText(QString::fromStdString(error.message())) : QString();
}

// What could not be added has a row until the next reading, and no file.
std::set<std::string> filesOf(const std::vector<LoginItemRow::Pointer> &rows) {
    std::set<std::string> files;
    for (const auto &row : rows) {
        if (!row->entry.file.empty())
            files.insert(row->entry.file);
    }
    return files;
}

bool isSame(const LoginItemRow &one, const LoginItemRow &other) {
    return one.entry == other.entry && one.name == other.name;
}

} // namespace

/// What a worker has read, until the main thread takes it.
struct LoginItemController::Listing {
    std::error_code error;
    std::vector<LoginItem> items;
    std::vector<LoginItemRow::Pointer> rows;
    std::vector<LoginItemEntry> systemItems;
};

LoginItemController::LoginItemController(QObject *parent)
    : LoginItemController(Surroundings(), parent) {}

LoginItemController::LoginItemController(Surroundings surroundings, QObject *parent)
    : QObject(parent), m_surroundings(std::move(surroundings)) {
    m_watch = source().watch([this] { m_calls.post([this] { updateLoginItemsList(); }); });
    updateLoginItemsList();
}

LoginItemController::~LoginItemController() = default;

void LoginItemController::run(std::function<void()> work, std::function<void()> then) {
    if (m_waiting++ == 0)
        Q_EMIT waitingChanged(true);
    auto ended = [this, then = std::move(then)] {
        then();
        if (--m_waiting == 0)
            Q_EMIT waitingChanged(false);
    };
    m_queue.addOperation(std::make_shared<FunctionOperation>(
        [this, work = std::move(work), ended = std::move(ended)]() mutable {
            work();
            // No copy is left: what it holds goes on the main thread.
            m_calls.post(std::move(ended));
        }));
}

// -- The list

bool LoginItemController::readList(Listing &listing) {
    auto items = UKLoginItemRegistry::allLoginItems();
    listing.error = items.error();
    if (!items)
        return false;
    listing.items = *std::move(items);
    AppInformation().getAppInfo(&listing.rows, listing.items);
    std::erase_if(listing.rows, [](const auto &row) { return row->name == missingName; });
    if (auto system = source().systemItems())
        listing.systemItems = *std::move(system);
    return true;
}

void LoginItemController::updateLoginItemsList() {
    // What was asked for and has not begun sees all that has happened until now.
    if (m_isListingWanted.exchange(true))
        return;
    const auto listing = std::make_shared<Listing>();
    run(
        [this, listing] {
            m_isListingWanted = false;
            readList(*listing);
        },
        [this, listing] { show(std::move(*listing)); });
}

// A list that cannot be read is shown as an empty one.
void LoginItemController::show(Listing listing) {
    const bool isSameList =
        m_isListed &&
        std::equal(m_rows.begin(), m_rows.end(), listing.rows.begin(), listing.rows.end(),
                   [](const auto &one, const auto &other) { return isSame(*one, *other); });
    // The echo of an own change finds its rows here already.
    if (m_isListed && filesOf(m_rows) != filesOf(listing.rows))
        Q_EMIT failureIsOver();
    m_isListed = true;
    m_readProblem = wordsOf(listing.error);
    if (!isSameList) {
        const std::string selected =
            m_selectRow >= 0 ? m_rows[std::size_t(m_selectRow)]->entry.file : std::string();
        m_model.beginChange();
        m_rows = std::move(listing.rows);
        m_selectRow = selected.empty() ? -1 : rowOfFile(selected);
        m_model.endChange();
    }
    Q_EMIT listChanged();
    if (m_systemItems != listing.systemItems) {
        m_systemItems = std::move(listing.systemItems);
        Q_EMIT systemItemsChanged();
    }
}

int LoginItemController::rowOfFile(const std::string &file) const {
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [&](const auto &row) { return row->entry.file == file; });
    return found == m_rows.end() ? -1 : int(found - m_rows.begin());
}

void LoginItemController::tell(const QString &name, std::error_code error) {
    Q_EMIT failed(localizedText("LOGIN_FAILED").arg(nameInSentence(name), wordsOf(error)));
}

// -- Adding

void LoginItemController::addLoginItems() {
    if (!m_surroundings.licenceGate())
        return;
    Q_EMIT askForLoginItems(
        localizedText("Choose a login item"), localizedText("Choose"),
        Platform::current().directories->first(StandardDirectory::Applications));
}

void LoginItemController::addLoginFolder() {
    if (m_surroundings.licenceGate())
        Q_EMIT askForLoginFolder(localizedText("Choose a login item"));
}

void LoginItemController::addPaths(std::vector<std::filesystem::path> paths) {
    if (paths.empty())
        return;
    struct Added {
        LoginItemRow::Pointer row;
        std::error_code error;
    };
    const auto added = std::make_shared<std::vector<Added>>();
    run(
        [added, chosen = std::move(paths)] {
            for (const auto &path : chosen) {
                const auto file = UKLoginItemRegistry::addLoginItem(path, false);
                const auto row = AppInformation().constructAppItem(path, false);
                if (file)
                    row->entry.file = *file;
                added->push_back({row, file.error()});
            }
        },
        [this, added] {
            m_model.beginChange();
            for (const Added &each : *added)
                m_rows.push_back(each.row);
            m_model.endChange();
            Q_EMIT failureIsOver();
            for (const Added &each : *added) {
                if (each.error)
                    tell(each.row->name, each.error);
            }
            updateLoginItemsList();
        });
}

// -- Removing

void LoginItemController::delLoginItem(int row) {
    if (row < 0 || std::size_t(row) >= m_rows.size() || !m_surroundings.licenceGate())
        return;
    changeLoginVaule(m_rows[std::size_t(row)]);
}

void LoginItemController::changeLoginVaule(const LoginItemRow::Pointer &row) {
    const auto error = std::make_shared<std::error_code>();
    run([file = row->entry.file,
         error] { *error = UKLoginItemRegistry::removeLoginItemWithFile(file); },
        [this, row, error] {
            if (*error) {
                tell(row->name, *error);
                updateLoginItemsList();
                return;
            }
            Q_EMIT failureIsOver();
            if (const int place = rowOfFile(row->entry.file); place >= 0) {
                m_model.beginChange();
                m_rows.erase(m_rows.begin() + place);
                if (m_selectRow >= place)
                    --m_selectRow;
                m_model.endChange();
                Q_EMIT listChanged();
            }
            if (row->bundleID == QLatin1String(bundleIdentifier))
                AppInformation::writeFileOfLaunchAppWhenLogin(0);
        });
}

// -- The hidden flag

void LoginItemController::changeHideState(int row) {
    if (row < 0 || std::size_t(row) >= m_rows.size())
        return;
    struct Outcome {
        std::error_code error;
        bool hasChanged = false;
        bool hidden = false;
        std::optional<Listing> listing;
    };
    const auto outcome = std::make_shared<Outcome>();
    const LoginItemRow::Pointer changed = m_rows[std::size_t(row)];
    const std::string file = changed->entry.file;
    run(
        [this, outcome, file, isMissing = changed->entry.missing, count = m_rows.size()] {
            Listing listing;
            if (!readList(listing))
                return;
            const auto found =
                std::find_if(listing.items.begin(), listing.items.end(),
                             [&](const LoginItem &item) { return item.entry.file == file; });
            const bool isThere = found != listing.items.end();
            const bool wasHidden = isThere && found->hidden;
            const bool hasOtherCount = listing.rows.size() != count;
            // An item without its program may be one of several that went with it.
            if (!isThere || isMissing)
                outcome->listing = std::move(listing);
            if (!isThere || (isMissing && hasOtherCount))
                return;
            outcome->hidden = !wasHidden;
            outcome->error = UKLoginItemRegistry::setHidden(file, outcome->hidden);
            outcome->hasChanged = !outcome->error;
        },
        [this, outcome, changed, file] {
            if (outcome->listing)
                show(*std::move(outcome->listing));
            const int place = rowOfFile(file);
            if (outcome->error)
                tell(changed->name, outcome->error);
            else if (outcome->hasChanged)
                Q_EMIT failureIsOver();
            if (place < 0)
                return;
            LoginItemRow &now = *m_rows[std::size_t(place)];
            if (outcome->hasChanged)
                now.bIsSelected = now.entry.hidden = outcome->hidden;
            m_model.rowChanged(place);
        });
}

void LoginItemController::setSystemItemStarted(const std::string &file, bool started) {
    const auto error = std::make_shared<std::error_code>();
    run([file, started, error] { *error = source().setSystemItemStarted(file, started); },
        [this, file, error] {
            if (*error)
                tell(paths::display(file), *error);
            else
                Q_EMIT failureIsOver();
            // A switch that did not move the entry shows the old state again.
            m_systemItems.clear();
            updateLoginItemsList();
        });
}

// -- Looking at it

void LoginItemController::openButtonAction(int row) {
    if (row < 0 || std::size_t(row) >= m_rows.size())
        return;
    const auto error = std::make_shared<std::error_code>();
    const LoginItemRow::Pointer opened = m_rows[std::size_t(row)];
    run([file = opened->entry.file, error] { *error = source().start(file); },
        [this, opened, error] {
            if (!*error)
                return Q_EMIT failureIsOver();
            const auto place = source().pathOf(opened->entry.file);
            if (*error != LoginItemError::NothingToStart ||
                !Platform::current().workspace->reveal(place))
                tell(opened->name, *error);
        });
}

void LoginItemController::viewButtonAction(int row) {
    if (row < 0 || std::size_t(row) >= m_rows.size())
        return;
    const LoginItemRow &viewed = *m_rows[std::size_t(row)];
    Workspace &workspace = *Platform::current().workspace;
    if (workspace.reveal(viewed.path) || workspace.reveal(source().pathOf(viewed.entry.file)))
        Q_EMIT failureIsOver();
}

bool LoginItemController::shouldSelectRow(int row) {
    const int before = m_selectRow;
    m_selectRow = row >= 0 && std::size_t(row) < m_rows.size() ? row : -1;
    for (const int changed : {before, m_selectRow}) {
        if (changed >= 0)
            m_model.rowChanged(changed);
    }
    return true;
}

void LoginItemController::moveRows(const std::set<int> &rows, int place) {
    std::vector<LoginItemRow::Pointer> before, moved, after;
    for (int row = 0; std::size_t(row) < m_rows.size(); ++row) {
        auto &group = rows.count(row) > 0 ? moved : row < place ? before : after;
        group.push_back(m_rows[std::size_t(row)]);
    }
    m_model.beginChange();
    m_rows = std::move(before);
    m_rows.insert(m_rows.end(), moved.begin(), moved.end());
    m_rows.insert(m_rows.end(), after.begin(), after.end());
    m_selectRow = -1;
    m_model.endChange();
}

} // namespace brightsweep
