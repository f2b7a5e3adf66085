// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/MediaFileChooser.h"

#include <memory>
#include <string>

#include <QtDBus/QDBusConnection>

namespace platform {

// The dialog of the desktop's portal, which shows files that a confined program cannot see itself, and remembers places.
class PortalFileChooser : public MediaFileChooser {
public:
    // On the bus, which is connected.
    explicit PortalFileChooser(const QDBusConnection& bus);
    // Null where the program's windows are on no desktop, or there is no bus. Connects without asking anything.
    static std::shared_ptr<PortalFileChooser> ofDesktop();

    Token ask(const Question& question, Handler handler) override;

private:
    QDBusConnection bus_;
};

// The file that the portal's answer names, when there is a file of these kinds behind it. Reads it; any thread.
std::optional<LibraryFile> mediumAtURI(const std::string& uri, MediaKinds kinds);

} // namespace platform
