// SPDX-License-Identifier: MIT
#include "platform/uikit/PortalRequest_p.h"

#include <QtCore/QPointer>
#include <QtCore/QRandomGenerator>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusServiceWatcher>

#include <utility>

namespace platform {

namespace {

const auto requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const auto responseSignal = QStringLiteral("Response");

// Nobody guesses it: others on the bus could else answer in the portal's place.
QString newToken()
{
    return QStringLiteral("zelk_%1").arg(QRandomGenerator::system()->generate64(), 0, 16);
}

void close(const QDBusConnection& bus, const QString& place)
{
    bus.call(
        QDBusMessage::createMethodCall(Portal::service(), place, requestInterface, QStringLiteral("Close")),
        QDBus::NoBlock);
}

} // namespace

QString Portal::service()
{
    return QStringLiteral("org.freedesktop.portal.Desktop");
}

QString Portal::path()
{
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

void callPortal(const QDBusConnection& bus, const QString& interface, const QString& method,
                const QVariantList& arguments, std::function<void(const QDBusMessage&)> completion)
{
    auto message = QDBusMessage::createMethodCall(Portal::service(), Portal::path(), interface, method);
    message.setArguments(arguments);
    // It lets go of itself once it is answered; an unanswered one at the end of the program needs nobody.
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [completion = std::move(completion)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         completion(finished->reply());
                     });
}

class PortalRequest::Connection : public QObject {
    Q_OBJECT
public:
    Connection(const QDBusConnection& bus, const QString& interface, const QString& method,
               QVariantList arguments, QVariantMap options, Handler handler)
        : bus_(bus)
        , handler_(std::move(handler))
        , watcher_(Portal::service(), bus, QDBusServiceWatcher::WatchForUnregistration)
    {
        auto token = newToken();
        options.insert(QStringLiteral("handle_token"), token);
        arguments.append(options);
        // The answer may be faster than the reply, so it is listened to where the request will be.
        auto sender = bus_.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
        listen(Portal::path() + QStringLiteral("/request/%1/%2").arg(sender, token));
        QObject::connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this,
                         [this] { finish(Outcome::failed, {}); });
        callPortal(bus_, interface, method, arguments,
                   [self = QPointer(this), fate = fate_, bus](const QDBusMessage& reply) {
                       auto handle = handleOf(reply);
                       fate->isPlaced = true;
                       if (fate->isTakenBack && !handle.isEmpty())
                           close(bus, handle);
                       else if (self)
                           self->takeReply(handle);
                   });
    }
    // Before the reply nobody knows where the request will be, nor whether it is there yet.
    void takeBack()
    {
        if (!std::exchange(handler_, nullptr))
            return;
        fate_->isTakenBack = true;
        if (fate_->isPlaced)
            close(bus_, place_);
        stopListening();
    }

private Q_SLOTS:
    void takeResponse(uint code, const QVariantMap& results)
    {
        finish(code == 0 ? Outcome::answered : code == 1 ? Outcome::cancelled : Outcome::failed, results);
    }

private:
    void listen(const QString& place)
    {
        place_ = place;
        bus_.connect(Portal::service(), place_, requestInterface, responseSignal, this,
                     SLOT(takeResponse(uint, QVariantMap)));
    }
    void stopListening()
    {
        bus_.disconnect(Portal::service(), place_, requestInterface, responseSignal, this,
                        SLOT(takeResponse(uint, QVariantMap)));
    }
    // Empty where there is no request.
    static QString handleOf(const QDBusMessage& reply)
    {
        return reply.type() == QDBusMessage::ReplyMessage
            ? reply.arguments().value(0).value<QDBusObjectPath>().path()
            : QString();
    }
    void takeReply(const QString& handle)
    {
        if (!handler_)
            return;
        if (handle.isEmpty())
            return finish(Outcome::failed, {});
        // Old portals choose the place themselves.
        if (handle != place_) {
            stopListening();
            listen(handle);
        }
    }
    void finish(Outcome outcome, const QVariantMap& results)
    {
        auto handler = std::exchange(handler_, nullptr);
        if (!handler)
            return;
        stopListening();
        handler(outcome, results);
    }

    // What the reply must know, though it may come when all else has gone.
    struct Fate {
        bool isPlaced = false; // the reply has come
        bool isTakenBack = false;
    };

    const std::shared_ptr<Fate> fate_ = std::make_shared<Fate>();
    QDBusConnection bus_;
    Handler handler_; // empty once it was called
    QDBusServiceWatcher watcher_;
    QString place_; // of the request on the bus
};

PortalRequest::PortalRequest(const QDBusConnection& bus, const QString& interface, const QString& method,
                             QVariantList arguments, QVariantMap options, Handler handler)
    : connection_(std::make_unique<Connection>(bus, interface, method, std::move(arguments),
                                               std::move(options), std::move(handler)))
{
}

PortalRequest::~PortalRequest()
{
    connection_->takeBack();
    connection_.release()->deleteLater(); // it may be what is calling
}

} // namespace platform

#include "platform/uikit/PortalRequest.moc" // generated
