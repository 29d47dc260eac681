#include "foundation/Log.h"

#include <locale.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <set>
#include <thread>

namespace brightsweep {

namespace {

constexpr std::size_t batchSize = 64 * 1024;
constexpr std::int64_t batchMilliseconds = 100;
// Between a line that waits and its writing, when no other line follows it.
constexpr std::chrono::milliseconds flusherPause{80};

std::atomic<int> logDescriptor{STDERR_FILENO};
std::atomic<bool> limitTold{false};
std::atomic<void (*)()> renewal{nullptr};
std::atomic<std::int64_t> nextLook{0}; // for whether the file is still there, in milliseconds
constexpr std::int64_t lookPause = 1000;

void appendEscaped(std::string &text, std::string_view bytes) {
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code >= 0x20 && code != 0x7f) {
            text += byte;
        } else if (byte == '\n') {
            text += "\\n";
        } else if (byte == '\t') {
            text += "\\t";
        } else {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02x", code);
            text += escaped;
        }
    }
}

// One conversion of a format: "%", flags and width as they stand, and its letter.
struct Conversion {
    std::string flags;
    char letter = '\0';
    const char *end = nullptr;
};

Conversion readConversion(const char *position) {
    Conversion conversion;
    while (*position && std::strchr("-+ #0123456789.", *position))
        conversion.flags += *position++;
    while (*position && std::strchr("hlqjzt", *position))
        ++position;
    conversion.letter = *position;
    conversion.end = *position ? position + 1 : position;
    return conversion;
}

// Numbers look the same whatever locale Qt has set.
class PlainNumbers {
public:
    PlainNumbers() : m_before(::uselocale(plain())) {}
    ~PlainNumbers() { ::uselocale(m_before); }
    PlainNumbers(const PlainNumbers &) = delete;
    PlainNumbers &operator=(const PlainNumbers &) = delete;

private:
    static locale_t plain() {
        static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }
    locale_t m_before;
};

template <typename Number>
void appendNumber(std::string &text, const Conversion &conversion, const char *length,
                  Number number) {
    const std::string format = "%" + conversion.flags + length + conversion.letter;
    char buffer[512];
    const PlainNumbers plain;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    const int written = std::snprintf(buffer, sizeof buffer, format.c_str(), number);
#pragma GCC diagnostic pop
    if (written > 0)
        text.append(buffer, std::min<std::size_t>(std::size_t(written), sizeof buffer - 1));
}

void appendArgument(std::string &text, const Conversion &conversion, const LogArgument &argument) {
    const auto &value = argument.value();
    if (const auto *bytes = std::get_if<std::string>(&value)) {
        appendEscaped(text, *bytes);
        return;
    }
    const bool real = std::strchr("fFeEgG", conversion.letter) != nullptr;
    Conversion shown = conversion;
    if (const auto *number = std::get_if<double>(&value)) {
        if (!real)
            shown.letter = 'f';
        appendNumber(text, shown, "", *number);
    } else if (const auto *integer = std::get_if<std::int64_t>(&value)) {
        if (real)
            return appendNumber(text, shown, "", double(*integer));
        if (!std::strchr("diuxXoc", shown.letter))
            shown.letter = 'd';
        appendNumber(text, shown, shown.letter == 'c' ? "" : "ll",
                     static_cast<long long>(*integer));
    } else if (const auto *natural = std::get_if<std::uint64_t>(&value)) {
        if (real)
            return appendNumber(text, shown, "", double(*natural));
        if (!std::strchr("uxXo", shown.letter))
            shown.letter = 'u';
        appendNumber(text, shown, "ll", static_cast<unsigned long long>(*natural));
    }
}

std::int64_t nowMilliseconds() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// One line in a second looks.
void renewRemovedFile() {
    void (*const renew)() = renewal;
    std::int64_t due = nextLook;
    const std::int64_t now = renew ? nowMilliseconds() : 0;
    struct stat status {};
    if (renew && now >= due && nextLook.compare_exchange_strong(due, now + lookPause) &&
        ::fstat(logDescriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 0)
        renew();
}

// The object logs that there are. Never destroyed, as jobs may outlive everything.
struct AllLogs {
    std::mutex mutex;
    std::set<ObjectLog *> logs;
    std::condition_variable wake;
    bool linesWait = false;
};

AllLogs &allLogs() {
    static auto *const all = new AllLogs;
    return *all;
}

// Writes what waits in the logs of jobs that meet nothing more for a while.
[[noreturn]] void flushForEver() {
    AllLogs &all = allLogs();
    for (;;) {
        {
            std::unique_lock lock(all.mutex);
            all.wake.wait(lock, [&] { return all.linesWait; });
            all.linesWait = false;
        }
        std::this_thread::sleep_for(flusherPause);
        ObjectLog::flushAll();
    }
}

// Without a thread for it lines wait for the next one, as they would for a full batch.
void startFlusher() {
    sigset_t every;
    sigset_t before;
    ::sigfillset(&every);
    ::pthread_sigmask(SIG_BLOCK, &every, &before); // signals are for the program's own threads
    try {
        std::thread(flushForEver).detach();
    } catch (const std::system_error &error) {
        NSLog("Lines for single objects may be late: %@", error.code());
    }
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void wakeFlusher() {
    static std::once_flag started;
    std::call_once(started, startFlusher);
    const std::lock_guard lock(allLogs().mutex);
    allLogs().linesWait = true;
    allLogs().wake.notify_one();
}

// Threads are numbered in the order in which they first log.
unsigned threadNumber() {
    static std::atomic<unsigned> last{0};
    thread_local const unsigned number = ++last;
    return number;
}

const char *processName() {
#ifdef __GLIBC__
    return program_invocation_short_name;
#else
    return "brightsweep";
#endif
}

} // namespace

namespace Log {

std::string format(const char *format, std::span<const LogArgument> arguments) {
    std::string text;
    std::size_t next = 0;
    for (const char *position = format; *position;) {
        if (*position != '%') {
            text += *position++;
            continue;
        }
        if (position[1] == '%') {
            text += '%';
            position += 2;
            continue;
        }
        const Conversion conversion = readConversion(position + 1);
        if (next < arguments.size() && conversion.letter)
            appendArgument(text, conversion, arguments[next++]);
        else
            text.append(position, conversion.end);
        position = conversion.end;
    }
    return text;
}

std::string line(std::string_view message) {
    std::timespec now{};
    std::timespec_get(&now, TIME_UTC);
    std::tm local{};
    ::localtime_r(&now.tv_sec, &local);
    char stamp[32];
    std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S", &local);
    char head[128];
    std::snprintf(head, sizeof head, "%s.%03ld %.60s[%ld:%u] ", stamp, now.tv_nsec / 1'000'000,
                  processName(), long(::getpid()), threadNumber());
    std::string whole = head;
    whole += message;
    whole += '\n';
    return whole;
}

void setDescriptor(int descriptor) {
    logDescriptor = descriptor;
}

int descriptor() {
    return logDescriptor;
}

void setRenewal(void (*renew)()) {
    renewal = renew;
    nextLook = 0;
}

void write(std::string_view lines) {
    renewRemovedFile();
    const int descriptor = logDescriptor;
    if (descriptor >= 0) [[maybe_unused]]
        const auto written = ::write(descriptor, lines.data(), lines.size());
}

} // namespace Log

ObjectLog::ObjectLog() {
    const std::lock_guard lock(allLogs().mutex);
    allLogs().logs.insert(this);
}

ObjectLog::~ObjectLog() {
    {
        const std::lock_guard lock(allLogs().mutex);
        allLogs().logs.erase(this);
    }
    flush();
}

void ObjectLog::flush() {
    const std::lock_guard lock(m_mutex);
    handOver();
}

void ObjectLog::flushAll() {
    const std::lock_guard lock(allLogs().mutex);
    for (ObjectLog *log : allLogs().logs) {
        // One that its thread is just using may be held up by a log file that does not answer.
        const std::unique_lock own(log->m_mutex, std::try_to_lock);
        if (own)
            log->handOver();
        else
            allLogs().linesWait = true;
    }
}

void ObjectLog::add(std::string_view message) {
    const std::string line = Log::line(message);
    bool isFirst = false;
    {
        const std::lock_guard lock(m_mutex);
        isFirst = m_lines.empty();
        if (isFirst)
            m_firstLineTime = nowMilliseconds();
        m_lines += line;
        if (m_lines.size() >= batchSize || nowMilliseconds() - m_firstLineTime >= batchMilliseconds)
            handOver();
    }
    if (isFirst)
        wakeFlusher();
}

void ObjectLog::handOver() {
    if (m_lines.empty())
        return;
    struct stat status {};
    const bool full = ::fstat(Log::descriptor(), &status) == 0 && S_ISREG(status.st_mode) &&
                      std::uint64_t(status.st_size) > Log::sizeLimit;
    if (!full)
        Log::write(m_lines);
    else if (!limitTold.exchange(true))
        NSLog("The log has passed %llu bytes: lines for single objects are left out from here on",
              Log::sizeLimit);
    m_lines.clear();
}

} // namespace brightsweep
