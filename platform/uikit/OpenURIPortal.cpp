// SPDX-License-Identifier: MIT
#include "platform/uikit/OpenURIPortal_p.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>

#include <utility>

namespace platform {

void openThroughPortal(const QDBusConnection& bus, const std::string& url,
                       std::function<void(bool)> completion)
{
    auto message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.OpenURI"), QStringLiteral("OpenURI"));
    // No window to stand over, and no options.
    message << QString() << QString::fromStdString(url) << QVariantMap();
    // It lets go of itself once it is answered; an unanswered one at the end of the program needs nobody.
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [completion = std::move(completion)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         completion(!finished->isError());
                     });
}

} // namespace platform
