#include "uninstall/LeftBehindController.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "removal/NvAuthorization.h"
#include "uninstall/LeftBehind.h"
#include "uninstall/UninstallTexts.h"

#include <algorithm>
#include <set>
#include <utility>

namespace brightsweep {

LeftBehindController::LeftBehindController(Surroundings surroundings, PadlockController &padlock,
                                           QObject *parent)
    : QObject(parent), m_surroundings(std::move(surroundings)), m_padlock(padlock) {
    connect(&m_padlock, &PadlockController::lockStateChanged, this,
            &LeftBehindController::rightsAnswered);
}

LeftBehindController::~LeftBehindController() {
    if (m_run)
        m_run->stop();
}

void LeftBehindController::setState(State state) {
    m_state = state;
    Q_EMIT stateChanged();
}

void LeftBehindController::search() {
    if (m_state == State::Searching || isBusy())
        return;
    setState(State::Searching);
    m_surroundings.enqueue(
        [this, installed = m_surroundings.installed(), unknown = m_surroundings.unknown()] {
            m_found = LeftBehind(installed, unknown).find();
        },
        [this] {
            take(std::move(m_found));
            setState(State::Ready);
        });
}

void LeftBehindController::take(std::vector<Leftover> items) {
    std::set<std::filesystem::path> ticked;
    for (const Leftover &item : m_items) {
        if (item.ticked)
            ticked.insert(item.path);
    }
    m_items = std::move(items);
    for (Leftover &item : m_items)
        item.ticked = ticked.contains(item.path) && !item.refusal;
    m_failures.assign(m_items.size(), {});
    m_isSearched = true;
    Q_EMIT itemsChanged();
}

std::size_t LeftBehindController::tickedCount() const {
    return std::size_t(std::count_if(m_items.begin(), m_items.end(),
                                     [](const Leftover &item) { return item.ticked; }));
}

std::uint64_t LeftBehindController::tickedBytes() const {
    std::uint64_t bytes = 0;
    for (const Leftover &item : m_items)
        bytes += item.ticked ? item.bytes : 0;
    return bytes;
}

void LeftBehindController::tick(const std::vector<int> &rows, bool isTicked) {
    if (!isReady())
        return;
    for (const int row : rows) {
        Leftover &item = m_items.at(std::size_t(row));
        item.ticked = isTicked && !item.refusal;
    }
    m_message.clear();
    m_refusal.clear();
    Q_EMIT ticksChanged();
}

void LeftBehindController::removeButtonAction() {
    if (!isReady() || tickedCount() == 0)
        return;
    setState(State::Asking);
    Q_EMIT askToRemove();
}

void LeftBehindController::alertEnded(bool remove) {
    if (m_state != State::Asking)
        return;
    if (!remove)
        return setState(State::Ready);
    const auto begun = RemovalRun::begin(QT_TRID_NOOP("Uninstall"));
    if (!begun.run) {
        setState(State::Ready);
        Q_EMIT removalRefused(RemovalRun::refusal(begun));
        return;
    }
    m_run = begun.run;
    m_removed = 0;
    m_bytes = 0;
    m_refusal.clear();
    m_isSecondAttempt = false;
    attempt();
}

void LeftBehindController::attempt() {
    setState(State::Removing);
    m_surroundings.enqueue([this] { m_results = LeftBehind::remove(*m_run, m_items); },
                           [this] { attemptEnded(); });
}

void LeftBehindController::attemptEnded() {
    bool needsRights = false;
    for (const auto &result : m_results) {
        const auto item = std::find_if(m_items.begin(), m_items.end(), [&](const Leftover &each) {
            return each.path == result.path;
        });
        if (item == m_items.end())
            continue;
        const auto row = item - m_items.begin();
        if (!result.removed) {
            needsRights = needsRights || result.neededRights;
            m_failures[std::size_t(row)] = QString::fromStdString(result.error);
            continue;
        }
        ++m_removed;
        m_bytes += result.bytes;
        m_items.erase(item);
        m_failures.erase(m_failures.begin() + row);
    }
    Q_EMIT itemsChanged();
    const bool lacksRights = !NvAuthorization::shareNvAuthorization().isHeld(RightsPurpose::Files);
    if (needsRights && lacksRights && !std::exchange(m_isSecondAttempt, true)) {
        setState(State::AskingRights);
        m_padlock.unlockRigths(true);
        return;
    }
    finish();
}

void LeftBehindController::rightsAnswered() {
    if (m_state != State::AskingRights || m_padlock.isAsking())
        return;
    if (m_padlock.isOpen())
        return attempt();
    m_refusal = m_padlock.refusal();
    finish();
}

void LeftBehindController::finish() {
    m_run.reset();
    QStringList words = {countWords(QT_TRID_NOOP("LEFT_BEHIND_REMOVED"), m_removed, m_bytes)};
    if (const std::size_t stayed = tickedCount(); stayed > 0)
        words += localizedText("LEFT_BEHIND_STAYED", stayed);
    m_message = words.join(u' ');
    setState(State::Ready);
}

} // namespace brightsweep
