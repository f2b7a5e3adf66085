// SPDX-License-Identifier: MIT
#include "platform/network/NetworkServiceWatcher_p.h"

#include "platform/network/NetworkThread_p.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace platform {

namespace {

constexpr auto service = "org.freedesktop.NetworkManager";
constexpr auto path = "/org/freedesktop/NetworkManager";
constexpr auto properties = "org.freedesktop.DBus.Properties";
constexpr std::uint64_t patience = 1'000'000; // microseconds

struct BusDeleter {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

// NMMetered: 1 yes, 2 no, 3 and 4 the same as guesses, 0 unknown.
bool meansMetered(std::uint32_t value)
{
    return value == 1 || value == 3;
}

class NetworkManagerWatcher final : public NetworkDescriptor {
public:
    explicit NetworkManagerWatcher(std::function<void(bool)> receive)
        : receive_(std::move(receive))
    {
        sd_bus* bus = nullptr;
        if (sd_bus_open_system(&bus) < 0)
            return;
        bus_.reset(bus);
        sd_bus_set_method_call_timeout(bus, patience);
        if (sd_bus_match_signal_async(bus, nullptr, service, path, properties, "PropertiesChanged",
                                      &NetworkManagerWatcher::propertiesChanged, nullptr, this)
            < 0)
            bus_.reset();
    }

    void ask()
    {
        if (!bus_
            || sd_bus_call_method_async(bus_.get(), nullptr, service, path, properties, "Get",
                                        &NetworkManagerWatcher::answered, this, "ss", service, "Metered")
                < 0)
            receive_(false);
    }

    int descriptor() override { return bus_ ? sd_bus_get_fd(bus_.get()) : -1; }
    short events() override { return static_cast<short>(std::max(sd_bus_get_events(bus_.get()), 0)); }
    std::optional<std::chrono::steady_clock::time_point> deadline() override
    {
        std::uint64_t microseconds = 0; // of the clock that steady_clock is
        if (sd_bus_get_timeout(bus_.get(), &microseconds) < 0 || microseconds == UINT64_MAX)
            return std::nullopt;
        return std::chrono::steady_clock::time_point(std::chrono::microseconds(microseconds));
    }
    void handle() override
    {
        int handled = 1;
        while (bus_ && handled > 0)
            handled = sd_bus_process(bus_.get(), nullptr);
        if (handled < 0) {
            bus_.reset();
            receive_(false);
        }
    }

private:
    static int propertiesChanged(sd_bus_message*, void* self, sd_bus_error*)
    {
        static_cast<NetworkManagerWatcher*>(self)->ask();
        return 0;
    }
    // An error is an answer too: nobody knows, or nobody is there.
    static int answered(sd_bus_message* answer, void* self, sd_bus_error*)
    {
        std::uint32_t value = 0;
        bool isAnswer = !sd_bus_message_is_method_error(answer, nullptr)
            && sd_bus_message_read(answer, "v", "u", &value) >= 0;
        static_cast<NetworkManagerWatcher*>(self)->receive_(isAnswer && meansMetered(value));
        return 0;
    }

    // fixed after construction
    std::function<void(bool)> receive_;
    std::unique_ptr<sd_bus, BusDeleter> bus_; // null when there is none
};

} // namespace

void NetworkServiceWatcher::start(std::function<void(bool)> receive)
{
    NetworkThread::shared().perform([receive = std::move(receive)]() mutable {
        // Lives as long as the thread does.
        static auto& watcher = *new std::shared_ptr(std::make_shared<NetworkManagerWatcher>(receive));
        static bool isLookedAfter = false;
        if (!std::exchange(isLookedAfter, true))
            NetworkThread::shared().lookAfter(watcher);
        watcher->ask();
    });
}

} // namespace platform
