// SPDX-License-Identifier: MIT
#include "platform/network/NetworkServiceWatcher_p.h"

#include "platform/network/NetworkThread_p.h"

#include <algorithm>
#include <cstdint>
#include <dlfcn.h>
#include <memory>
#include <optional>
#include <systemd/sd-bus.h>
#include <type_traits>
#include <utility>

namespace platform {

namespace {

constexpr auto service = "org.freedesktop.NetworkManager";
constexpr auto path = "/org/freedesktop/NetworkManager";
constexpr auto properties = "org.freedesktop.DBus.Properties";
constexpr std::uint64_t patience = 1'000'000; // microseconds

// Of the library that speaks on the system's buses what is needed here. It is loaded when a load first asks what its
// connection costs, which few do, as it brings six others with it.
class BusLibrary {
public:
    // Null where there is none.
    static const BusLibrary* shared()
    {
        static const BusLibrary library;
        return library.isWhole_ ? &library : nullptr;
    }

    decltype(&::sd_bus_open_system) openSystem = nullptr;
    decltype(&::sd_bus_close_unref) closeUnref = nullptr;
    decltype(&::sd_bus_set_method_call_timeout) setMethodCallTimeout = nullptr;
    decltype(&::sd_bus_match_signal_async) matchSignalAsync = nullptr;
    decltype(&::sd_bus_call_method_async) callMethodAsync = nullptr;
    decltype(&::sd_bus_get_fd) getFd = nullptr;
    decltype(&::sd_bus_get_events) getEvents = nullptr;
    decltype(&::sd_bus_get_timeout) getTimeout = nullptr;
    decltype(&::sd_bus_process) process = nullptr;
    decltype(&::sd_bus_message_is_method_error) messageIsMethodError = nullptr;
    decltype(&::sd_bus_message_read) messageRead = nullptr;

private:
    BusLibrary()
    {
        void* library = ::dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);
        auto find = [&](auto& function, const char* name) {
            auto* found = library ? ::dlsym(library, name) : nullptr;
            function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(found);
            isWhole_ = isWhole_ && found;
        };
        find(openSystem, "sd_bus_open_system");
        find(closeUnref, "sd_bus_close_unref");
        find(setMethodCallTimeout, "sd_bus_set_method_call_timeout");
        find(matchSignalAsync, "sd_bus_match_signal_async");
        find(callMethodAsync, "sd_bus_call_method_async");
        find(getFd, "sd_bus_get_fd");
        find(getEvents, "sd_bus_get_events");
        find(getTimeout, "sd_bus_get_timeout");
        find(process, "sd_bus_process");
        find(messageIsMethodError, "sd_bus_message_is_method_error");
        find(messageRead, "sd_bus_message_read");
    }

    bool isWhole_ = true;
};

struct BusDeleter {
    const BusLibrary* library = nullptr;
    void operator()(sd_bus* bus) const { library->closeUnref(bus); }
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
        if (!library_ || library_->openSystem(&bus) < 0)
            return;
        bus_ = {bus, {library_}};
        library_->setMethodCallTimeout(bus, patience);
        if (library_->matchSignalAsync(bus, nullptr, service, path, properties, "PropertiesChanged",
                                       &NetworkManagerWatcher::propertiesChanged, nullptr, this)
            < 0)
            bus_.reset();
    }

    void ask()
    {
        if (!bus_
            || library_->callMethodAsync(bus_.get(), nullptr, service, path, properties, "Get",
                                         &NetworkManagerWatcher::answered, this, "ss", service, "Metered")
                < 0)
            receive_(false);
    }

    int descriptor() override { return bus_ ? library_->getFd(bus_.get()) : -1; }
    short events() override { return static_cast<short>(std::max(library_->getEvents(bus_.get()), 0)); }
    std::optional<std::chrono::steady_clock::time_point> deadline() override
    {
        std::uint64_t microseconds = 0; // of the clock that steady_clock is
        if (library_->getTimeout(bus_.get(), &microseconds) < 0 || microseconds == UINT64_MAX)
            return std::nullopt;
        return std::chrono::steady_clock::time_point(std::chrono::microseconds(microseconds));
    }
    void handle() override
    {
        int handled = 1;
        while (bus_ && handled > 0)
            handled = library_->process(bus_.get(), nullptr);
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
    static int answered(sd_bus_message* answer, void* watcher, sd_bus_error*)
    {
        auto* self = static_cast<NetworkManagerWatcher*>(watcher);
        std::uint32_t value = 0;
        bool isAnswer = !self->library_->messageIsMethodError(answer, nullptr)
            && self->library_->messageRead(answer, "v", "u", &value) >= 0;
        self->receive_(isAnswer && meansMetered(value));
        return 0;
    }

    // fixed after construction
    const BusLibrary* library_ = BusLibrary::shared(); // null when there is none
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
