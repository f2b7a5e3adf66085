// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtDBus/QDBusConnection>

class QDBusMessage;

namespace platform {

// The desktop's portal: where it stands on the bus.
namespace Portal {
QString service();
QString path();
} // namespace Portal

// Calls a method of the portal on `bus`, which is connected, without waiting. `completion` comes later from the event loop,
// once, with the reply or the error: whether the portal has taken the question, not what became of it.
void callPortal(const QDBusConnection& bus, const QString& interface, const QString& method,
                const QVariantList& arguments, std::function<void(const QDBusMessage&)> completion);

// A question that the portal puts to the user, and the answer. Gone: the question is taken back. Main thread only.
class PortalRequest {
public:
    enum class Outcome {
        answered,
        cancelled, // by the user
        failed     // there is no such portal, it refused, it went away, or it ended the question by itself
    };
    // Called from the event loop, once, unless the request goes before. It may drop the request.
    using Handler = std::function<void(Outcome, const QVariantMap& results)>;

    // `arguments` are those before the options, to which the token is added.
    PortalRequest(const QDBusConnection& bus, const QString& interface, const QString& method,
                  QVariantList arguments, QVariantMap options, Handler handler);
    ~PortalRequest();
    PortalRequest(const PortalRequest&) = delete; // the bus holds its address
    PortalRequest& operator=(const PortalRequest&) = delete;

private:
    class Connection;
    std::unique_ptr<Connection> connection_;
};

} // namespace platform
