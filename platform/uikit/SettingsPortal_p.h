// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/uikit/UITraitCollection.h"

#include <functional>
#include <memory>

#include <QtCore/QString>
#include <QtCore/QVariant>

class QDBusConnection;

namespace platform {

// The desktop's settings, asked from the portal on the session bus and followed. Questions are sent when it is made
// and answered while the program goes on. Where there is no session bus nothing happens at all. Main thread only.
class SettingsPortal {
public:
    // `onChange` is called when a setting arrives or changes, never from a call to this object.
    SettingsPortal(UITraitCollection defaults, std::function<void()> onChange);
    // Asks on that bus, which is connected.
    SettingsPortal(UITraitCollection defaults, std::function<void()> onChange, const QDBusConnection& bus);
    ~SettingsPortal();
    SettingsPortal(const SettingsPortal&) = delete; // the bus holds its address
    SettingsPortal& operator=(const SettingsPortal&) = delete;

    const UITraitCollection& traits() const { return traits_; }
    // Takes in the answers that are here or come within `limit`.
    void waitForAnswers(Duration limit);

    // Whether there is a bus to ask, without connecting to it.
    static bool busIsThere();
    // What one setting says. False when it is none of ours, of another type, or says nothing new. Portals wrap their
    // values once or twice.
    static bool apply(UITraitCollection& traits, const QString& group, const QString& key,
                      const QVariant& value);

private:
    class Connection;
    UITraitCollection traits_;
    std::function<void()> onChange_;
    std::unique_ptr<Connection> connection_; // null without a bus
};

} // namespace platform
