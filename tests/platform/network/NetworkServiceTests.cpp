// SPDX-License-Identifier: MIT
// What a connection costs, as a network service on a bus of its own says.
#include "platform/network/NetworkConditions.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <string>
#include <systemd/sd-bus.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr auto name = "org.freedesktop.NetworkManager";
constexpr auto path = "/org/freedesktop/NetworkManager";
constexpr auto inSeconds = 1'000'000; // microseconds

// A bus that stands in for the system's, which everything asks that starts after it.
class SystemBus {
public:
    SystemBus()
    {
        auto* output = ::popen("dbus-daemon --session --fork --print-address=1 --print-pid=1 "
                               "--address=unix:tmpdir=/tmp 2>/dev/null",
                               "r");
        std::array<char, 256> line{};
        if (output && std::fgets(line.data(), line.size(), output))
            address_ = std::string(line.data(), std::string_view(line.data()).find('\n'));
        if (output && std::fgets(line.data(), line.size(), output))
            pid_ = std::atoi(line.data());
        if (output)
            ::pclose(output);
        ::setenv("DBUS_SYSTEM_BUS_ADDRESS", address_.c_str(), 1);
    }
    ~SystemBus() { stop(); }
    SystemBus(const SystemBus&) = delete; // one process
    SystemBus& operator=(const SystemBus&) = delete;

    const std::string& address() const { return address_; }
    void stop()
    {
        if (pid_ > 0)
            ::kill(std::exchange(pid_, 0), SIGKILL);
    }

private:
    std::string address_;
    pid_t pid_ = 0;
};

// The service. It answers while somebody waits for something.
class Service {
public:
    Service(const SystemBus& bus, std::uint32_t metered)
        : metered_(metered)
    {
        static const std::array<sd_bus_vtable, 3> members{
            sd_bus_vtable SD_BUS_VTABLE_START(0),
            SD_BUS_PROPERTY("Metered", "u", &Service::get, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
            SD_BUS_VTABLE_END,
        };
        isThere_ = ::sd_bus_new(&bus_) >= 0 && ::sd_bus_set_address(bus_, bus.address().c_str()) >= 0
            && ::sd_bus_set_bus_client(bus_, 1) >= 0 && ::sd_bus_start(bus_) >= 0
            && ::sd_bus_add_object_vtable(bus_, nullptr, path, name, members.data(), this) >= 0
            && ::sd_bus_request_name(bus_, name, 0) >= 0;
    }
    ~Service() { ::sd_bus_close_unref(bus_); }
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    bool isThere() const { return isThere_; }
    void say(std::uint32_t metered)
    {
        metered_ = metered;
        ::sd_bus_emit_properties_changed(bus_, path, name, "Metered", nullptr);
    }
    // Whether it comes true within half a minute.
    template <class Condition>
    bool answerUntil(Condition condition)
    {
        for (int looks = 0; !condition(); ++looks) {
            if (looks == 3000)
                return false;
            while (::sd_bus_process(bus_, nullptr) > 0) { }
            ::sd_bus_wait(bus_, inSeconds / 100);
        }
        return true;
    }

private:
    static int get(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void* self,
                   sd_bus_error*)
    {
        return ::sd_bus_message_append(reply, "u", static_cast<Service*>(self)->metered_);
    }

    sd_bus* bus_ = nullptr;
    bool isThere_ = false;
    std::uint32_t metered_;
};

// In a process of its own, as the conditions are a process'.
int expectWhatTheServiceSays()
{
    SystemBus bus;
    Service service(bus, 1);
    if (!service.isThere())
        return 2;
    std::atomic<int> known = -1;
    NetworkConditions::shared().whenKnown([&](bool isMetered) { known = isMetered ? 1 : 0; });
    if (!service.answerUntil([&] { return known == 1; }))
        return 3;
    std::atomic<int> changed = -1;
    auto token = NetworkConditions::shared().observe([&](bool isMetered) {
        changed = isMetered ? 1 : 0;
        changed.notify_all();
    });
    // NMMetered: 2 no, 3 and 4 the same as guesses, 0 unknown
    for (auto [said, expected] :
         std::vector<std::pair<std::uint32_t, int>>{{2, 0}, {3, 1}, {4, 0}, {1, 1}, {0, 0}}) {
        service.say(said);
        if (!service.answerUntil([&] { return changed == expected; }))
            return 10 + static_cast<int>(said);
    }
    service.say(1);
    if (!service.answerUntil([&] { return changed == 1; }))
        return 4;
    bus.stop(); // nobody knows any more: it is not metered
    changed.wait(1);
    return changed;
}

int expectNoCostsWithoutAService()
{
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    std::promise<bool> known;
    NetworkConditions::shared().whenKnown([&](bool isMetered) { known.set_value(isMetered); });
    return known.get_future().get() ? 1 : 0;
}

} // namespace

TEST(NetworkService, saysWhatTheConnectionCosts)
{
    if (std::system("command -v dbus-daemon >/dev/null") != 0)
        GTEST_SKIP() << "there is no dbus-daemon";
    EXPECT_EXIT(std::_Exit(expectWhatTheServiceSays()), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(std::_Exit(expectNoCostsWithoutAService()), testing::ExitedWithCode(0), "");
}

} // namespace platform
