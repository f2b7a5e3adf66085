// SPDX-License-Identifier: MIT
#include "platform/uikit/OpenURIPortal_p.h"

#include "platform/uikit/PortalRequest_p.h"

#include <QtDBus/QDBusMessage>

#include <utility>

namespace platform {

void openThroughPortal(const QDBusConnection& bus, const std::string& url,
                       std::function<void(bool)> completion)
{
    // No window to stand over, and no options.
    callPortal(bus, QStringLiteral("org.freedesktop.portal.OpenURI"), QStringLiteral("OpenURI"),
               {QString(), QString::fromStdString(url), QVariantMap()},
               [completion = std::move(completion)](const QDBusMessage& reply) {
                   completion(reply.type() == QDBusMessage::ReplyMessage);
               });
}

} // namespace platform
