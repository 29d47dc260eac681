#include "platform/DirectoryWalk.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace brightsweep {

namespace {

// Six walks at once, each with this many, stay below the customary limit of 1,024 descriptors.
constexpr std::size_t maximumOpen = 128;
// When a closed directory is found again, so many of its nearest ancestors are kept open with it:
// a walk that comes back up a deep tree needs them next.
constexpr std::size_t reopenedAncestors = 64;
// Directories that one thread reads before helpers are worth their start.
constexpr unsigned aloneFor = 32;

constexpr std::chrono::milliseconds callerPollInterval(20);

// Every mutex of a walk is held for a few instructions only: to sleep and to be woken costs many
// times as much as to try again.
constexpr int triesBeforeSleep = 200;

std::unique_lock<std::mutex> lockShortly(std::mutex &mutex) {
    std::unique_lock lock(mutex, std::defer_lock);
    for (int i = 0; i < triesBeforeSleep; ++i) {
        if (lock.try_lock())
            return lock;
    }
    lock.lock();
    return lock;
}

} // namespace

DirectoryWalk::Visitor::~Visitor() = default;
void DirectoryWalk::Visitor::read(Directory &, std::error_code) {}
void DirectoryWalk::Visitor::left(Directory &) {}
bool DirectoryWalk::Visitor::nextRoot(DirectoryWalk &) {
    return false;
}
void DirectoryWalk::Visitor::between() {}

struct DirectoryWalk::State {
    DirectoryWalk &walk;
    FileOperations &files;
    Visitor &visitor;
    Options options;
    unsigned maximumThreads = 1;

    // What waits to be read, the next one last.
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Directory *> waiting;
    unsigned working = 0;
    bool rootsEnded = false;
    bool askingForRoot = false;
    bool mayHaveHelpers = true;
    std::vector<std::thread> helpers;
    std::atomic<unsigned> directoriesRead{0};

    std::atomic<bool> failed{false};
    std::exception_ptr failure; // of the thread that set the flag

    // Which directories are open; the ends are the newest and the oldest.
    std::mutex openMutex;
    Directory *newestOpen = nullptr;
    Directory *oldestOpen = nullptr;
    std::size_t openCount = 0;

    State(DirectoryWalk &w, FileOperations &operations, Visitor &v, Options o)
        : walk(w), files(operations), visitor(v), options(o) {
        const unsigned processors = std::max(1u, std::thread::hardware_concurrency());
        maximumThreads = options.threads ? options.threads : processors;
    }

    bool stopped() const {
        return failed.load(std::memory_order_relaxed) ||
               (options.stop && options.stop->load(std::memory_order_relaxed)) ||
               (options.ownStop && options.ownStop->load(std::memory_order_relaxed));
    }

    // Runs the function; its exception is kept for run() and stops the walk.
    template <typename Function>
    void guarded(Function function) {
        try {
            function();
        } catch (...) {
            if (!failed.exchange(true))
                failure = std::current_exception();
        }
    }

    void work(bool isCaller);
    Directory *take(bool isCaller);
    void process(Directory &directory, DirectoryBlock &block, std::vector<Directory *> &entered);
    std::error_code readAll(Directory &directory, DirectoryBlock &block,
                            std::vector<Directory *> &entered, bool &isOpened);
    void finish(Directory &directory, bool isOpened);
    void push(std::vector<Directory *> &entered);
    void startHelpers();
    void leave(Directory *directory);

    Result<std::shared_ptr<const OpenDirectory>> open(Directory &directory);
    Result<std::shared_ptr<const OpenDirectory>> openLocked(Directory &directory);
    Result<std::shared_ptr<const OpenDirectory>> openOnce(Directory &directory,
                                                          const OpenDirectory &parent);
    void opened(Directory &directory);
    void noLongerNeeded(Directory *directory);
    void keepOpen(Directory &directory, std::shared_ptr<const OpenDirectory> open);
    std::shared_ptr<const OpenDirectory> close(Directory &directory);
};

namespace {

// What the running thread has entered since its last push; enter() is only called on the thread
// that reads the directory.
thread_local std::vector<DirectoryWalk::Directory *> *currentlyEntered = nullptr;

} // namespace

std::string DirectoryWalk::Directory::wayTo(std::string_view entry) const {
    std::string way(entry);
    for (const auto *level = this; level && !level->m_name.empty(); level = level->m_parent)
        way.insert(0, level->m_name + '/');
    return way;
}

DirectoryWalk::DirectoryWalk(FileOperations &files, Visitor &visitor, Options options)
    : m_state(std::make_unique<State>(*this, files, visitor, options)) {}

DirectoryWalk::~DirectoryWalk() {
    for (Directory *directory : m_state->waiting)
        delete directory;
}

void DirectoryWalk::addRoot(std::shared_ptr<const OpenDirectory> directory, void *context) {
    auto root = std::make_unique<Directory>();
    root->m_context = context;
    root->m_device = directory->device;
    root->m_inode = directory->inode;
    root->m_open = std::move(directory);
    const std::lock_guard lock(m_state->mutex);
    m_state->waiting.push_back(root.get());
    root.release();
}

void DirectoryWalk::addRoot(std::shared_ptr<const OpenDirectory> parent, std::string_view name,
                            void *context) {
    auto root = std::make_unique<Directory>();
    root->m_context = context;
    root->m_name = name;
    root->m_rootParent = std::move(parent);
    const std::lock_guard lock(m_state->mutex);
    m_state->waiting.push_back(root.get());
    root.release();
}

void DirectoryWalk::enter(Directory &directory, std::string_view name, void *context) {
    auto child = std::make_unique<Directory>();
    child->m_context = context;
    child->m_parent = &directory;
    child->m_name = name;
    currentlyEntered->push_back(child.get());
    child.release();
    directory.m_notLeft.fetch_add(1, std::memory_order_relaxed);
    directory.m_notOpened.fetch_add(1, std::memory_order_relaxed);
}

bool DirectoryWalk::run() {
    State &state = *m_state;
    // The first root added is the first one walked.
    std::reverse(state.waiting.begin(), state.waiting.end());
    state.work(true);
    for (std::thread &helper : state.helpers)
        helper.join();
    state.helpers.clear();
    state.guarded([&] { state.visitor.between(); });
    if (state.failed)
        std::rethrow_exception(state.failure);
    return !state.stopped();
}

void DirectoryWalk::State::work(bool isCaller) {
    DirectoryBlock block;
    std::vector<Directory *> entered;
    auto *const outer = std::exchange(currentlyEntered, &entered);
    while (Directory *directory = take(isCaller)) {
        process(*directory, block, entered);
        if (isCaller) {
            guarded([this] { visitor.between(); });
            if (mayHaveHelpers && directoriesRead.load(std::memory_order_relaxed) >= aloneFor)
                startHelpers();
        }
    }
    currentlyEntered = outer;
}

DirectoryWalk::Directory *DirectoryWalk::State::take(bool isCaller) {
    auto lock = lockShortly(mutex);
    for (;;) {
        if (!waiting.empty()) {
            Directory *directory = waiting.back();
            waiting.pop_back();
            ++working;
            return directory;
        }
        if (!rootsEnded && !askingForRoot) {
            askingForRoot = true;
            lock.unlock();
            bool more = false;
            guarded([&] { more = !stopped() && visitor.nextRoot(walk); });
            lock.lock();
            askingForRoot = false;
            rootsEnded = !more;
            changed.notify_all();
            continue;
        }
        if (working == 0 && rootsEnded) {
            changed.notify_all();
            return nullptr;
        }
        if (isCaller) {
            changed.wait_for(lock, callerPollInterval);
            lock.unlock();
            guarded([this] { visitor.between(); });
            lock.lock();
        } else {
            changed.wait(lock);
        }
    }
}

void DirectoryWalk::State::startHelpers() {
    mayHaveHelpers = false;
    try {
        helpers.reserve(maximumThreads);
        for (unsigned i = 1; i < maximumThreads; ++i)
            helpers.emplace_back([this] { work(false); });
    } catch (const std::exception &) {
        // Those that could be had do the work.
    }
}

void DirectoryWalk::State::process(Directory &directory, DirectoryBlock &block,
                                   std::vector<Directory *> &entered) {
    directoriesRead.fetch_add(1, std::memory_order_relaxed);
    bool isOpened = false;
    guarded([&] {
        if (stopped())
            return;
        const std::error_code error = readAll(directory, block, entered, isOpened);
        visitor.read(directory, error);
    });
    // An exception came before they could be handed on.
    for (Directory *unread : entered)
        finish(*unread, false);
    entered.clear();
    finish(directory, isOpened);
    const auto lock = lockShortly(mutex);
    if (--working == 0 && waiting.empty())
        changed.notify_all();
}

// What follows the reading of a directory, or takes its place.
void DirectoryWalk::State::finish(Directory &directory, bool isOpened) {
    if (!isOpened)
        opened(directory);
    noLongerNeeded(&directory);
    leave(&directory);
}

std::error_code DirectoryWalk::State::readAll(Directory &directory, DirectoryBlock &block,
                                              std::vector<Directory *> &entered, bool &isOpened) {
    const auto open = this->open(directory);
    opened(directory);
    isOpened = true;
    if (!open)
        return open.error();
    do {
        if (const auto error = files.readBlock(**open, block, options.wanted))
            return error;
        if (!block.entries().empty())
            visitor.entries(directory, block);
        push(entered);
    } while (!block.atEnd() && !stopped());
    return {};
}

void DirectoryWalk::State::push(std::vector<Directory *> &entered) {
    if (entered.empty())
        return;
    const auto lock = lockShortly(mutex);
    waiting.insert(waiting.end(), entered.rbegin(), entered.rend());
    if (entered.size() == 1)
        changed.notify_one();
    else
        changed.notify_all();
    entered.clear();
}

void DirectoryWalk::State::leave(Directory *directory) {
    while (directory && directory->m_notLeft.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        guarded([&] { visitor.left(*directory); });
        Directory *const parent = directory->m_parent;
        delete directory;
        directory = parent;
    }
}

// -- Open directories

Result<std::shared_ptr<const OpenDirectory>> DirectoryWalk::State::open(Directory &directory) {
    std::shared_ptr<const OpenDirectory> parent;
    {
        const auto lock = lockShortly(openMutex);
        if (directory.m_open)
            return directory.m_open;
        if (directory.m_parent)
            parent = directory.m_parent->m_open;
        else
            parent = directory.m_rootParent;
        if (!parent) {
            auto reopened = openLocked(*directory.m_parent);
            if (!reopened)
                return reopened;
            parent = *reopened;
        }
    }
    auto open = openOnce(directory, *parent);
    if (open) {
        const auto lock = lockShortly(openMutex);
        keepOpen(directory, *open);
    }
    return open;
}

// Finds a closed directory again: up to the nearest open ancestor, then down from there.
Result<std::shared_ptr<const OpenDirectory>>
DirectoryWalk::State::openLocked(Directory &directory) {
    std::vector<Directory *> chain;
    Directory *ancestor = &directory;
    while (!ancestor->m_open && ancestor->m_parent) {
        chain.push_back(ancestor);
        ancestor = ancestor->m_parent;
    }
    std::shared_ptr<const OpenDirectory> open = ancestor->m_open;
    if (!open) {
        chain.push_back(ancestor);
        open = ancestor->m_rootParent;
    }
    while (!chain.empty()) {
        Directory &next = *chain.back();
        chain.pop_back();
        auto child = files.openDirectoryAt(*open, next.m_name.c_str());
        if (!child)
            return child.error();
        if (child->device != next.m_device || child->inode != next.m_inode)
            return std::errc::no_such_file_or_directory;
        open = std::make_shared<const OpenDirectory>(std::move(*child));
        if (chain.size() < reopenedAncestors)
            keepOpen(next, open);
    }
    return open;
}

Result<std::shared_ptr<const OpenDirectory>>
DirectoryWalk::State::openOnce(Directory &directory, const OpenDirectory &parent) {
    auto child = files.openDirectoryAt(parent, directory.m_name.c_str());
    if (!child && child.error() == std::errc::too_many_files_open) {
        {
            const auto lock = lockShortly(openMutex);
            while (oldestOpen)
                close(*oldestOpen);
        }
        child = files.openDirectoryAt(parent, directory.m_name.c_str());
    }
    if (!child)
        return child.error();
    directory.m_device = child->device;
    directory.m_inode = child->inode;
    return std::make_shared<const OpenDirectory>(std::move(*child));
}

void DirectoryWalk::State::opened(Directory &directory) {
    noLongerNeeded(directory.m_parent);
}

void DirectoryWalk::State::noLongerNeeded(Directory *directory) {
    if (!directory || directory->m_notOpened.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    // Destroyed after the lock is released, as closing may take long.
    std::shared_ptr<const OpenDirectory> closed;
    const auto lock = lockShortly(openMutex);
    if (directory->m_listed)
        closed = close(*directory);
}

void DirectoryWalk::State::keepOpen(Directory &directory,
                                    std::shared_ptr<const OpenDirectory> open) {
    directory.m_open = std::move(open);
    if (!directory.m_listed) {
        directory.m_listed = true;
        directory.m_older = newestOpen;
        directory.m_newer = nullptr;
        (newestOpen ? newestOpen->m_newer : oldestOpen) = &directory;
        newestOpen = &directory;
        ++openCount;
    }
    while (openCount > maximumOpen)
        close(*oldestOpen);
}

// The descriptor closes with what is returned, or with the last thread that still uses it.
std::shared_ptr<const OpenDirectory> DirectoryWalk::State::close(Directory &directory) {
    auto closed = std::exchange(directory.m_open, nullptr);
    directory.m_listed = false;
    (directory.m_newer ? directory.m_newer->m_older : newestOpen) = directory.m_older;
    (directory.m_older ? directory.m_older->m_newer : oldestOpen) = directory.m_newer;
    directory.m_newer = directory.m_older = nullptr;
    --openCount;
    return closed;
}

} // namespace brightsweep
