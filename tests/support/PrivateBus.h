// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>

namespace tests {

// A message bus of its own for one test, gone with it.
class PrivateBus {
public:
    PrivateBus()
    {
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                       QStringLiteral("--print-address"), QStringLiteral("--address=unix:tmpdir=/tmp")});
        if (daemon_.waitForStarted() && daemon_.waitForReadyRead())
            address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    }
    ~PrivateBus()
    {
        daemon_.kill();
        daemon_.waitForFinished();
    }
    PrivateBus(const PrivateBus&) = delete; // one process
    PrivateBus& operator=(const PrivateBus&) = delete;

    bool isThere() const { return !address_.isEmpty(); }
    // Another connection for each name; that of a former bus goes.
    QDBusConnection connect(const QString& name) const
    {
        QDBusConnection::disconnectFromBus(name);
        return QDBusConnection::connectToBus(address_, name);
    }

private:
    QProcess daemon_;
    QString address_;
};

} // namespace tests
