// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <systemd/sd-bus.h>

namespace platform {

struct BusDeleter {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};
using BusConnection = std::unique_ptr<sd_bus, BusDeleter>;

inline constexpr auto filesPreviewerName = "org.gnome.NautilusPreviewer";
inline constexpr auto filesPreviewerPath = "/org/gnome/NautilusPreviewer";
inline constexpr auto filesPreviewerInterface = "org.gnome.NautilusPreviewer2";

// What a file manager asks for.
struct ShowFileCall {
    std::string url;
    std::string parentHandle;
    bool closesIfShown = false;
    std::string activationToken;
};

// What the caller is answered when it asks for nonsense.
struct CallFault {
    const char* name; // of the D-Bus error
    std::string text;
};

// The service on the session bus: GNOME Files' interface in both of its forms, and Nemo's.
class PreviewerBus {
public:
    struct Handlers {
        std::function<std::optional<CallFault>(const ShowFileCall&)> onShowFile;
        std::function<void()> onClose;
        std::function<void()> onNameLost; // another previewer has taken over
    };

    // Answers on the session bus from the loop's next turn on. The unexpected text says why that cannot be.
    static std::unique_ptr<PreviewerBus> open(sd_event* loop, Handlers handlers, std::string& fault);
    PreviewerBus(const PreviewerBus&) = delete; // its address is with the bus
    PreviewerBus& operator=(const PreviewerBus&) = delete;

    void setVisible(bool isVisible);
    void setParentHandle(const std::string& handle);
    void emitSelection(unsigned direction);

private:
    PreviewerBus() = default;
    static int filesCall(sd_bus_message* call, void* self, sd_bus_error* error);
    static int nemoCall(sd_bus_message* call, void* self, sd_bus_error* error);
    static int nameLost(sd_bus_message* signal, void* self, sd_bus_error* error);
    int answerShowFile(sd_bus_message* call, sd_bus_error* error, bool isNemo);
    int answerProperty(sd_bus_message* call, sd_bus_error* error);
    int answerAllProperties(sd_bus_message* call);
    void tellChange(const char* property);
    int appendProperty(sd_bus_message* message, const std::string& property) const;

    BusConnection bus_;
    Handlers handlers_;
    bool isVisible_ = false;
    std::string parentHandle_;
};

} // namespace platform
