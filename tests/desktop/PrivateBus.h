#pragma once

#include "support/ChildProcess.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brightsweep::test {

/// A session bus of the test's own, where the program looks for one. It starts nothing by itself.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    void start();
    void stop();
    void signal(int number) { m_daemon->signal(number); }
    std::string address() const;

private:
    std::filesystem::path m_socket;
    std::filesystem::path m_configuration;
    std::unique_ptr<RunningProgram> m_daemon;
};

/// A service that a test plays, on a connection of its own: it keeps every call that it gets and
/// answers what the test says.
class PlayedService : public QDBusVirtualObject {
public:
    using Answer = std::function<QDBusMessage(const QDBusMessage &call)>;

    PlayedService(const PrivateBus &bus, const char *path);
    ~PlayedService() override;

    QDBusConnection connection;
    /// What a call is answered; an empty reply unless set.
    Answer answer;

    bool takeName(const char *name);
    bool giveNameBack(const char *name);
    void emitSignal(const char *interface, const char *name, const QVariantList &arguments = {});

    /// The calls of one method so far.
    QList<QDBusMessage> callsOf(const char *method) const;
    int count(const char *method) const { return int(callsOf(method).size()); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &from) override;

private:
    const QString m_path;
    QList<QDBusMessage> m_calls;
};

/// Calls a method of another connection of this process and waits for the answer in the loop.
QDBusMessage callInLoop(QDBusConnection &from, const QString &service, const QString &path,
                        const QString &interface, const QString &method,
                        const QVariantList &arguments = {});

} // namespace brightsweep::test
