#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

#include <csignal>
#include <functional>

#include <sys/types.h>

namespace lumetra::testing {

// A dbus-daemon of the test's own, so a test can own well-known names (a fake
// StatusNotifierWatcher) without touching the session it runs in. Not available when
// dbus-daemon is not installed; tests then skip.
class PrivateSessionBus {
public:
    PrivateSessionBus() {
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (daemon.isEmpty())
            return;
        QProcess process;
        process.start(daemon, {QStringLiteral("--session"), QStringLiteral("--fork"),
                               QStringLiteral("--nosyslog"), QStringLiteral("--print-address=1"),
                               QStringLiteral("--print-pid=1")});
        if (!process.waitForFinished(5000) || process.exitCode() != 0)
            return;
        const QStringList lines =
            QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        if (lines.size() < 2)
            return;
        address_ = lines[0].trimmed();
        pid_ = lines[1].trimmed().toInt();
    }
    ~PrivateSessionBus() {
        for (const QString& name : names_)
            QDBusConnection::disconnectFromBus(name);
        if (pid_ > 0)
            ::kill(pid_, SIGTERM);
    }
    PrivateSessionBus(const PrivateSessionBus&) = delete;
    PrivateSessionBus& operator=(const PrivateSessionBus&) = delete;

    bool available() const { return !address_.isEmpty() && pid_ > 0; }
    const QString& address() const { return address_; }

    // The daemon dies, as a session's bus does when the session ends or crashes.
    void kill() {
        if (pid_ > 0)
            ::kill(pid_, SIGKILL);
        pid_ = 0;
    }

    // A new connection of its own (its own unique name) to this bus.
    QDBusConnection connect() {
        static int counter = 0;
        const QString name = QStringLiteral("lumetra-test-bus-%1").arg(++counter);
        names_.append(name);
        return QDBusConnection::connectToBus(address_, name);
    }

private:
    QString address_;
    pid_t pid_ = 0;
    QStringList names_;
};

// Runs the event loop until `done` holds or `timeoutMs` passed; returns `done()`.
inline bool waitFor(const std::function<bool()>& done, int timeoutMs = 3000) {
    QDeadlineTimer deadline(timeoutMs);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

} // namespace lumetra::testing
