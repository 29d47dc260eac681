#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>

namespace brightsweep {

/// Posted after a value was set or removed or could not be kept, on the thread that did it or that
/// took in what another process did. User info: "key", and "elsewhere", true for another process.
inline constexpr QLatin1String UserDefaultsDidChangeNotification("UserDefaultsDidChange");

/// Typed settings by key: the user's values above a layer of registered defaults.
///
/// The store is one text file, a line "key=value" each. Every change is written through at once,
/// atomically, and merged with what other processes have written meanwhile, key by key. A file that
/// is there but cannot be read whole is an error, readProblem(), and is never written over: changes
/// then stay in memory until a later synchronize() finds it sound, as they do while it cannot be
/// written. A folder that another program keeps locked is waited for two seconds, once. Safe from
/// every thread.
class UserDefaults {
public:
    /// The program's own domain, in the user's configuration folder. Reads the file on first use.
    static UserDefaults &standardUserDefaults();
    /// Makes the next standardUserDefaults() start afresh; tests change the environment between.
    static void resetStandardUserDefaults();

    explicit UserDefaults(std::filesystem::path file);
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

    /// Adds to the layer below the user's values; the last registration of a key wins.
    void registerDefaults(const QVariantMap &defaults);

    /// The user's value, else the registered one, else an invalid variant. A value of the user's
    /// that came from the file is a string.
    QVariant objectForKey(const QString &key) const;
    /// The same value read as one type. A number reads as itself, truth as 1 and 0, a string by
    /// the number at its start or, as a bool, by its first letter; what is missing or does not
    /// read is 0, false or empty.
    std::int64_t integerForKey(const QString &key) const;
    std::uint64_t unsignedForKey(const QString &key) const;
    float floatForKey(const QString &key) const;
    bool boolForKey(const QString &key) const;
    QString stringForKey(const QString &key) const;
    /// True when the user has a value of his own.
    bool hasUserValue(const QString &key) const;

    /// Integers, floats, bools and strings. An invalid variant removes the key.
    void setObject(const QString &key, const QVariant &value);
    /// The same, but where it cannot be written at once the old value stays, now and later. False
    /// then: problem() says why.
    bool change(const QString &key, const QVariant &value);
    /// Lets the registered default show again.
    void removeObject(const QString &key);

    /// Writes what could not be written so far and takes in what others have written. False when
    /// the file could not be read whole, or the store not be written: problem() then says why.
    bool synchronize();
    /// Why the file could not be read whole when it was last looked at, in words for the user;
    /// empty where it could, or where there is none. Until then only what was read before and what
    /// was set in this process is known of the user's values, at first the intact lines.
    std::string readProblem() const;
    /// That, or else why the last change could not be written; that stays until the file is.
    std::string problem() const;
    /// Writes the file as it is where the last change could not be written, to see whether
    /// problem() still holds.
    void lookAgain();

    const std::filesystem::path &file() const { return m_file; }

    using Values = QMap<QString, QString>;
    /// The intact lines of a file's text, with or without an end of the last one; empty ones hold
    /// nothing. A line without a key or without "=", with an invalid escape or in invalid UTF-8 is
    /// damaged: the number of the first such one, from 1 on, goes to `damagedLine`, else 0.
    static Values parse(std::string_view text, std::size_t *damagedLine = nullptr);
    static std::string compose(const Values &values);

private:
    QVariant value(const QString &key) const;
    bool synchronizeLocked(bool writesAnyway = false);
    void noteChanges(const Values &before);
    void tellChangesElsewhere();
    bool lockFolder(int folder);
    bool notWritten(const std::string &problem);
    bool read(Values &values);
    std::error_code write(const Values &values) const;

    mutable std::mutex m_mutex;
    std::filesystem::path m_file;
    Values m_userValues;
    Values m_unwritten;            // set since the last successful write
    QMap<QString, bool> m_removed; // removed since then
    QVariantMap m_registered;
    QStringList m_changedElsewhere; // keys, not told yet
    std::string m_readProblem;
    std::string m_writeProblem;
    bool m_lockIsHeld = false; // by another process, when it was last tried
};

/// The numbers that texts read as, by the rules above; the same in every locale.
std::int64_t integerFromText(const QString &text);
float floatFromText(const QString &text);
bool boolFromText(const QString &text);

} // namespace brightsweep
