// SPDX-License-Identifier: MIT
#include "platform/network/NetworkServiceWatcher_p.h"

#include "platform/network/NetworkThread_p.h"

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>

#include <memory>
#include <utility>

namespace platform {

namespace {

const auto service = QStringLiteral("org.freedesktop.NetworkManager");
const auto path = QStringLiteral("/org/freedesktop/NetworkManager");
const auto properties = QStringLiteral("org.freedesktop.DBus.Properties");
constexpr int patience = 1000; // milliseconds

// NMMetered: 1 yes, 2 no, 3 and 4 the same as guesses, 0 unknown.
bool meansMetered(uint value)
{
    return value == 1 || value == 3;
}

} // namespace

class NetworkManagerWatcher : public QObject {
    Q_OBJECT
public:
    explicit NetworkManagerWatcher(std::function<void(bool)> receive)
        : receive_(std::move(receive))
        , bus_(QDBusConnection::connectToBus(QDBusConnection::SystemBus, QStringLiteral("zelk-network")))
    {
        if (bus_.isConnected())
            bus_.connect(service, path, properties, QStringLiteral("PropertiesChanged"), this, SLOT(ask()));
    }

public Q_SLOTS:
    void ask()
    {
        if (!bus_.isConnected()) {
            receive_(false);
            return;
        }
        auto call = QDBusMessage::createMethodCall(service, path, properties, QStringLiteral("Get"));
        call << service << QStringLiteral("Metered");
        auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(call, patience), this);
        QObject::connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
            auto reply = pending->reply();
            pending->deleteLater();
            bool isAnswer = reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty();
            auto value =
                isAnswer ? reply.arguments().constFirst().value<QDBusVariant>().variant() : QVariant();
            receive_(meansMetered(value.toUInt()));
        });
    }

private:
    // fixed after construction
    std::function<void(bool)> receive_;
    QDBusConnection bus_;
};

void NetworkServiceWatcher::start(std::function<void(bool)> receive)
{
    NetworkThread::shared().perform([receive = std::move(receive)]() mutable {
        // Lives as long as the thread does.
        static auto& watcher = *new NetworkManagerWatcher(std::move(receive));
        watcher.ask();
    });
}

} // namespace platform

#include "platform/network/NetworkServiceWatcher.moc" // generated
