#include "foundation/UserDefaults.h"

#include "foundation/FileDescriptor.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>

namespace brightsweep {

namespace {

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

void tellChange(const QString &key) {
    NotificationCenter::defaultCenter().post(UserDefaultsDidChangeNotification, nullptr,
                                             {{QStringLiteral("key"), key}});
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

UserDefaults::Values readFile(const std::filesystem::path &path) {
    const auto text = readSmallFile(path);
    return text ? UserDefaults::parse(*text) : UserDefaults::Values();
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

UserDefaults::UserDefaults(std::filesystem::path file)
    : m_file(std::move(file)), m_userValues(readFile(m_file)) {}

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
}

bool UserDefaults::synchronize() {
    const std::lock_guard lock(m_mutex);
    return synchronizeLocked();
}

bool UserDefaults::synchronizeLocked() {
    const std::filesystem::path folder = paths::parent(m_file);
    const bool changed = !m_unwritten.isEmpty() || !m_removed.isEmpty();
    if (changed) {
        std::error_code ignored;
        std::filesystem::create_directories(folder, ignored);
    }
    // The folder itself is the lock between processes: it leaves no file behind and goes with the
    // process that held it.
    const FileDescriptor lock(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (lock && changed) {
        while (::flock(lock.get(), LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    const Values stored = readFile(m_file);
    Values merged = stored;
    for (auto removed = m_removed.keyBegin(); removed != m_removed.keyEnd(); ++removed)
        merged.remove(*removed);
    for (auto set = m_unwritten.cbegin(); set != m_unwritten.cend(); ++set)
        merged.insert(set.key(), *set);
    m_userValues = merged;
    if (!changed)
        return true;

    // The disk is not waited for to hold what it holds.
    const auto error =
        merged == stored ? std::error_code() : writeSmallFile(m_file, compose(merged));
    if (error) {
        NSLog("The settings could not be written to %@: %@", m_file, error);
        return false;
    }
    m_unwritten.clear();
    m_removed.clear();
    return true;
}

UserDefaults::Values UserDefaults::parse(std::string_view text) {
    Values values;
    for (std::size_t start = 0; start < text.size();) {
        const auto end = text.find('\n', start);
        if (end == text.npos)
            break;
        const std::string_view line = text.substr(start, end - start);
        start = end + 1;
        const auto equals = line.find('=');
        QString key;
        QString value;
        if (equals != line.npos && equals > 0 && unescape(line.substr(0, equals), key) &&
            unescape(line.substr(equals + 1), value))
            values.insert(key, value);
    }
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
