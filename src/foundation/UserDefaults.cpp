#include "foundation/UserDefaults.h"

#include "foundation/FileDescriptor.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <thread>
#include <utility>

namespace brightsweep {

namespace {

constexpr std::chrono::milliseconds lockPatience(2000);
// Short, as those who write without a pause let go for no longer than that.
constexpr std::chrono::microseconds lockPause(200);

std::filesystem::path standardFile() {
    std::filesystem::path folder = environmentFolder("XDG_CONFIG_HOME", ".config");
    return paths::join(folder, std::string(bundleIdentifier) + ".conf");
}

std::mutex standardMutex;
std::unique_ptr<UserDefaults> standardDefaults;

QString textOf(const QVariant &value) {
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    if (value.typeId() == QMetaType::Float)
        return QString::number(value.toFloat(), 'g', std::numeric_limits<float>::max_digits10);
    if (value.typeId() == QMetaType::Double)
        return QString::number(value.toDouble(), 'g', std::numeric_limits<double>::max_digits10);
    return value.toString();
}

void tellChange(const QString &key, bool elsewhere = false) {
    NotificationCenter::defaultCenter().post(
        UserDefaultsDidChangeNotification, nullptr,
        {{QStringLiteral("key"), key}, {QStringLiteral("elsewhere"), elsewhere}});
}

void appendEscaped(std::string &line, const QString &text, bool isKey) {
    for (const char byte : text.toUtf8()) {
        if (byte == '\\')
            line += "\\\\";
        else if (byte == '\n')
            line += "\\n";
        else if (byte == '\r')
            line += "\\r";
        else if (byte == '\0')
            line += "\\0";
        else if (byte == '=' && isKey)
            line += "\\e";
        else
            line += byte;
    }
}

bool unescape(std::string_view bytes, QString &text) {
    std::string plain;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\0')
            return false;
        if (bytes[i] != '\\') {
            plain += bytes[i];
            continue;
        }
        if (++i == bytes.size())
            return false;
        switch (bytes[i]) {
        case '\\':
            plain += '\\';
            break;
        case 'n':
            plain += '\n';
            break;
        case 'r':
            plain += '\r';
            break;
        case '0':
            plain += '\0';
            break;
        case 'e':
            plain += '=';
            break;
        default:
            return false;
        }
    }
    if (!paths::isValidUtf8(plain))
        return false;
    text = paths::text(plain);
    return true;
}

std::string wordsFor(std::error_code error) {
    return error == std::errc::file_too_large ? "It is larger than a settings file can be"
                                              : wordsForFile(error);
}

} // namespace

std::int64_t integerFromText(const QString &text) {
    errno = 0;
    return std::strtoll(text.toLatin1().constData(), nullptr, 10);
}

float floatFromText(const QString &text) {
    const QByteArray bytes = text.trimmed().toLatin1();
    const char *begin = bytes.constData();
    if (*begin == '+')
        ++begin;
    float number = 0;
    const auto read = std::from_chars(begin, bytes.constEnd(), number);
    return read.ec == std::errc() && std::isfinite(number) ? number : 0;
}

bool boolFromText(const QString &text) {
    const QByteArray bytes = text.trimmed().toLatin1();
    const char *position = bytes.constData();
    if (*position == '+' || *position == '-')
        ++position;
    while (*position == '0')
        ++position;
    return *position != '\0' && std::strchr("YyTt123456789", *position) != nullptr;
}

UserDefaults &UserDefaults::standardUserDefaults() {
    const std::lock_guard lock(standardMutex);
    if (!standardDefaults)
        standardDefaults = std::make_unique<UserDefaults>(standardFile());
    return *standardDefaults;
}

void UserDefaults::resetStandardUserDefaults() {
    const std::lock_guard lock(standardMutex);
    standardDefaults.reset();
}

UserDefaults::UserDefaults(std::filesystem::path file) : m_file(std::move(file)) {
    read(m_userValues);
}

void UserDefaults::registerDefaults(const QVariantMap &defaults) {
    const std::lock_guard lock(m_mutex);
    m_registered.insert(defaults);
}

QVariant UserDefaults::value(const QString &key) const {
    if (const auto user = m_userValues.constFind(key); user != m_userValues.constEnd())
        return *user;
    return m_registered.value(key);
}

QVariant UserDefaults::objectForKey(const QString &key) const {
    const std::lock_guard lock(m_mutex);
    return value(key);
}

std::int64_t UserDefaults::integerForKey(const QString &key) const {
    const QVariant object = objectForKey(key);
    switch (object.typeId()) {
    case QMetaType::QString:
        return integerFromText(object.toString());
    case QMetaType::Double:
    case QMetaType::Float: {
        const double number = object.toDouble();
        return std::isfinite(number) && std::abs(number) < 9.2e18 ? std::int64_t(number) : 0;
    }
    default:
        return object.toLongLong();
    }
}

std::uint64_t UserDefaults::unsignedForKey(const QString &key) const {
    const QVariant object = objectForKey(key);
    if (object.typeId() == QMetaType::QString)
        return std::strtoull(object.toString().toLatin1().constData(), nullptr, 10);
    return std::uint64_t(integerForKey(key));
}

float UserDefaults::floatForKey(const QString &key) const {
    const QVariant object = objectForKey(key);
    if (object.typeId() == QMetaType::QString)
        return floatFromText(object.toString());
    return object.toFloat();
}

bool UserDefaults::boolForKey(const QString &key) const {
    const QVariant object = objectForKey(key);
    if (object.typeId() == QMetaType::QString)
        return boolFromText(object.toString());
    return object.toDouble() != 0;
}

QString UserDefaults::stringForKey(const QString &key) const {
    return textOf(objectForKey(key));
}

bool UserDefaults::hasUserValue(const QString &key) const {
    const std::lock_guard lock(m_mutex);
    return m_userValues.contains(key);
}

void UserDefaults::setObject(const QString &key, const QVariant &object) {
    if (!object.isValid())
        return removeObject(key);
    {
        const std::lock_guard lock(m_mutex);
        const QString text = textOf(object);
        m_userValues.insert(key, text);
        m_unwritten.insert(key, text);
        m_removed.remove(key);
        synchronizeLocked();
    }
    tellChange(key);
    tellChangesElsewhere();
}

bool UserDefaults::change(const QString &key, const QVariant &object) {
    bool isKept = false;
    {
        const std::lock_guard lock(m_mutex);
        const Values before = m_userValues;
        const Values unwritten = m_unwritten;
        const auto removed = m_removed;
        m_userValues.insert(key, textOf(object));
        m_unwritten.insert(key, textOf(object));
        m_removed.remove(key);
        isKept = synchronizeLocked();
        if (!isKept) {
            m_unwritten = unwritten;
            m_removed = removed;
            m_userValues.remove(key);
            if (const auto old = before.constFind(key); old != before.cend())
                m_userValues.insert(key, *old);
        }
    }
    // Also where it was not kept: what shows the value or the problem looks again.
    tellChange(key);
    tellChangesElsewhere();
    return isKept;
}

void UserDefaults::removeObject(const QString &key) {
    {
        const std::lock_guard lock(m_mutex);
        m_userValues.remove(key);
        m_unwritten.remove(key);
        m_removed.insert(key, true);
        synchronizeLocked();
    }
    tellChange(key);
    tellChangesElsewhere();
}

bool UserDefaults::synchronize() {
    bool done = false;
    {
        const std::lock_guard lock(m_mutex);
        done = synchronizeLocked();
    }
    tellChangesElsewhere();
    return done;
}

void UserDefaults::lookAgain() {
    {
        const std::lock_guard lock(m_mutex);
        if (m_readProblem.empty() && m_writeProblem.empty())
            return;
        synchronizeLocked(!m_writeProblem.empty());
    }
    tellChangesElsewhere();
}

void UserDefaults::noteChanges(const Values &before) {
    for (auto value = before.cbegin(); value != before.cend(); ++value) {
        const auto now = m_userValues.constFind(value.key());
        if (now == m_userValues.cend() || *now != *value)
            m_changedElsewhere += value.key();
    }
    for (auto key = m_userValues.keyBegin(); key != m_userValues.keyEnd(); ++key) {
        if (!before.contains(*key))
            m_changedElsewhere += *key;
    }
}

// Without the lock: who hears of it may read.
void UserDefaults::tellChangesElsewhere() {
    QStringList keys;
    {
        const std::lock_guard lock(m_mutex);
        keys.swap(m_changedElsewhere);
    }
    for (const QString &key : keys)
        tellChange(key, true);
}

// Waits for others, but not for ever, and not again while the same one goes on. A file system
// without locks is taken as it is.
bool UserDefaults::lockFolder(int folder) {
    const auto until = std::chrono::steady_clock::now() +
                       (m_lockIsHeld ? std::chrono::milliseconds::zero() : lockPatience);
    for (;;) {
        const bool locked = ::flock(folder, LOCK_EX | LOCK_NB) == 0;
        m_lockIsHeld = !locked && (errno == EWOULDBLOCK || errno == EINTR);
        if (!m_lockIsHeld)
            return true;
        if (std::chrono::steady_clock::now() >= until)
            return false;
        std::this_thread::sleep_for(lockPause);
    }
}

bool UserDefaults::synchronizeLocked(bool writesAnyway) {
    const std::filesystem::path folder = paths::parent(m_file);
    const bool changed = writesAnyway || !m_unwritten.isEmpty() || !m_removed.isEmpty();
    if (changed) {
        std::error_code ignored;
        std::filesystem::create_directories(folder, ignored);
    }
    // The folder itself is the lock between processes: it leaves no file behind and goes with the
    // process that held it.
    const FileDescriptor lock(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (lock && changed && !lockFolder(lock.get()))
        return notWritten("Another program keeps its folder locked");
    Values stored;
    if (!read(stored))
        return false;
    Values merged = stored;
    for (auto removed = m_removed.keyBegin(); removed != m_removed.keyEnd(); ++removed)
        merged.remove(*removed);
    for (auto set = m_unwritten.cbegin(); set != m_unwritten.cend(); ++set)
        merged.insert(set.key(), *set);
    const Values before = std::exchange(m_userValues, merged);
    if (before != merged)
        noteChanges(before);
    if (!changed)
        return true;

    // What the file holds already is not written again: that would wait for the disk.
    if (const auto error = merged == stored && !writesAnyway ? std::error_code() : write(merged))
        return notWritten(error.message());
    m_writeProblem.clear();
    m_unwritten.clear();
    m_removed.clear();
    return true;
}

bool UserDefaults::notWritten(const std::string &problem) {
    if (m_writeProblem != problem)
        NSLog("The settings could not be written to %@: %@", m_file, problem);
    m_writeProblem = problem;
    return false;
}

std::error_code UserDefaults::write(const Values &values) const {
    const std::string text = compose(values);
    // It could not be read again.
    if (text.size() > smallFileLimit)
        return std::make_error_code(std::errc::file_too_large);
    return writeSmallFile(m_file, text);
}

// Gives the intact lines of a damaged file, nothing of one that cannot be read.
bool UserDefaults::read(Values &values) {
    std::string problem;
    const auto text = readWholeFile(m_file);
    if (text) {
        std::size_t damagedLine = 0;
        values = parse(*text, &damagedLine);
        if (damagedLine > 0)
            problem = "Line " + std::to_string(damagedLine) + " is damaged";
    } else if (text.error() != std::errc::no_such_file_or_directory) {
        problem = wordsFor(text.error());
    }
    if (!problem.empty() && problem != m_readProblem)
        NSLog("The settings in %@ cannot be read whole: %@", m_file, problem);
    m_readProblem = problem;
    return problem.empty();
}

std::string UserDefaults::readProblem() const {
    const std::lock_guard lock(m_mutex);
    return m_readProblem;
}

std::string UserDefaults::problem() const {
    const std::lock_guard lock(m_mutex);
    return m_readProblem.empty() ? m_writeProblem : m_readProblem;
}

UserDefaults::Values UserDefaults::parse(std::string_view text, std::size_t *damagedLine) {
    Values values;
    std::size_t firstDamaged = 0;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (line.empty())
            continue;
        const auto equals = line.find('=');
        QString key;
        QString value;
        if (equals != line.npos && equals > 0 && unescape(line.substr(0, equals), key) &&
            unescape(line.substr(equals + 1), value))
            values.insert(key, value);
        else if (firstDamaged == 0)
            firstDamaged = number;
    }
    if (damagedLine)
        *damagedLine = firstDamaged;
    return values;
}

std::string UserDefaults::compose(const Values &values) {
    std::string text;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        appendEscaped(text, value.key(), true);
        text += '=';
        appendEscaped(text, value.value(), false);
        text += '\n';
    }
    return text;
}

} // namespace brightsweep
