#pragma once

#include <QString>

#include <concepts>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <mutex>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>

namespace brightsweep {

/// One value for a message. Texts, paths and errors are shown by %@ and %s, numbers by the
/// conversions of printf; lengths such as "ll" are accepted and ignored. A number given to %@ is
/// shown in decimal. Line ends and other control characters in a text are shown escaped, so that a
/// hostile name cannot forge a line.
class LogArgument {
public:
    template <std::integral T>
    LogArgument(T value) {
        if constexpr (std::is_signed_v<T>)
            m_value = std::int64_t(value);
        else
            m_value = std::uint64_t(value);
    }
    LogArgument(double value) : m_value(value) {}
    LogArgument(const char *text) : m_value(text ? std::string(text) : std::string("(null)")) {}
    LogArgument(std::string_view text) : m_value(std::string(text)) {}
    LogArgument(const std::string &text) : m_value(text) {}
    LogArgument(const QString &text) : m_value(text.toStdString()) {}
    LogArgument(const std::filesystem::path &path) : m_value(path.native()) {}
    LogArgument(std::error_code error) : m_value(error ? error.message() : std::string("(null)")) {}

    const std::variant<std::int64_t, std::uint64_t, double, std::string> &value() const {
        return m_value;
    }

private:
    std::variant<std::int64_t, std::uint64_t, double, std::string> m_value;
};

/// The program's one diagnostics stream. All calls are safe from every thread and never fail
/// visibly: a line that cannot be written, or for which there is no memory, is lost.
namespace Log {

/// The message that a format and its arguments give. A conversion without an argument stays as it
/// stands; arguments without a conversion are ignored.
std::string format(const char *format, std::span<const LogArgument> arguments);

/// A whole line for the message: "2026-01-31 10:00:00.123 brightsweep[12:3] message\n", in local
/// time, with the numbers of the process and of the thread in it.
std::string line(std::string_view message);

/// Where lines go: standard error unless set, nowhere with -1. The descriptor stays the caller's.
void setDescriptor(int descriptor);
int descriptor();

/// Called before a line is written to a file that has been removed, at most once a second and on
/// any thread, so that the file can be made anew and take the descriptor's number. Null for
/// nothing.
void setRenewal(void (*renew)());

/// Hands whole lines to the stream in one write.
void write(std::string_view lines);

/// Size in bytes past which lines per object are left out; the file itself is trimmed at start.
inline constexpr std::uint64_t sizeLimit = 20'971'520;

} // namespace Log

/// Logs one message as one line, with one write.
template <typename... Arguments>
void NSLog(const char *format, const Arguments &...arguments) {
    try {
        const std::initializer_list<LogArgument> list{LogArgument(arguments)...};
        Log::write(Log::line(Log::format(format, std::span(list.begin(), list.size()))));
    } catch (const std::bad_alloc &) {
    }
}

/// Lines that a job writes for every object it meets, handed over in batches: at 64 KiB, after
/// 100 ms also when none follows, at flush() and at the end. When the log file has passed
/// Log::sizeLimit they are left out, after one line of the process that says so. Belongs to one
/// thread but for flushAll().
class ObjectLog {
public:
    ObjectLog();
    ~ObjectLog();
    ObjectLog(const ObjectLog &) = delete;
    ObjectLog &operator=(const ObjectLog &) = delete;

    template <typename... Arguments>
    void log(const char *format, const Arguments &...arguments) {
        try {
            const std::initializer_list<LogArgument> list{LogArgument(arguments)...};
            add(Log::format(format, std::span(list.begin(), list.size())));
        } catch (const std::bad_alloc &) {
        }
    }
    void flush();
    /// Hands over what every one has, for an end of the process that no job lives to see. Any
    /// thread, but no signal handler.
    static void flushAll();

private:
    void add(std::string_view message);
    void handOver();

    std::mutex m_mutex; // guards the fields below
    std::string m_lines;
    std::int64_t m_firstLineTime = 0;
};

} // namespace brightsweep
