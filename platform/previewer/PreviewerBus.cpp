// SPDX-License-Identifier: MIT
#include "platform/previewer/PreviewerBus_p.h"

#include <cstring>
#include <string_view>

namespace platform {

namespace {

constexpr auto nemoName = "org.nemo.Preview", nemoPath = "/org/nemo/Preview";
constexpr auto properties = "org.freedesktop.DBus.Properties";
constexpr auto introspectable = "org.freedesktop.DBus.Introspectable";
constexpr std::size_t longestText = 32 * 1024;

constexpr auto standardInterfaces =
    R"(<!DOCTYPE node PUBLIC "-//freedesktop//DTD D-BUS Object Introspection 1.0//EN" "http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd">
<node>
 <interface name="org.freedesktop.DBus.Peer"><method name="Ping"/><method name="GetMachineId"><arg name="machine_uuid" type="s" direction="out"/></method></interface>
 <interface name="org.freedesktop.DBus.Introspectable"><method name="Introspect"><arg name="xml_data" type="s" direction="out"/></method></interface>
)";

constexpr auto filesInterface =
    R"( <interface name="org.freedesktop.DBus.Properties">
  <method name="Get"><arg name="interface_name" type="s" direction="in"/><arg name="property_name" type="s" direction="in"/><arg name="value" type="v" direction="out"/></method>
  <method name="GetAll"><arg name="interface_name" type="s" direction="in"/><arg name="properties" type="a{sv}" direction="out"/></method>
  <method name="Set"><arg name="interface_name" type="s" direction="in"/><arg name="property_name" type="s" direction="in"/><arg name="value" type="v" direction="in"/></method>
  <signal name="PropertiesChanged"><arg name="interface_name" type="s"/><arg name="changed_properties" type="a{sv}"/><arg name="invalidated_properties" type="as"/></signal>
 </interface>
 <interface name="org.gnome.NautilusPreviewer2">
  <method name="ShowFile"><arg name="uri" type="s" direction="in"/><arg name="windowHandle" type="s" direction="in"/><arg name="closeIfAlreadyShown" type="b" direction="in"/></method>
  <method name="ShowFile"><arg name="uri" type="s" direction="in"/><arg name="windowHandle" type="s" direction="in"/><arg name="closeIfAlreadyShown" type="b" direction="in"/><arg name="activationToken" type="s" direction="in"/></method>
  <method name="Close"/>
  <signal name="SelectionEvent"><arg name="direction" type="u"/></signal>
  <property name="Visible" type="b" access="read"/>
  <property name="ParentHandle" type="s" access="read"/>
 </interface>
</node>
)";

constexpr auto nemoInterface =
    R"( <interface name="org.nemo.Preview">
  <method name="ShowFile"><arg name="FileUri" type="s" direction="in"/><arg name="ParentXid" type="i" direction="in"/><arg name="CloseIfShown" type="b" direction="in"/></method>
  <method name="Close"/>
 </interface>
</node>
)";

std::string described(std::string_view interfaces)
{
    std::string text;
    text.append(std::string_view(standardInterfaces)).append(interfaces);
    return text;
}

bool isCall(sd_bus_message* call, const char* interface, const char* member)
{
    auto* named = sd_bus_message_get_interface(call);
    // A call may leave the interface out.
    return std::strcmp(sd_bus_message_get_member(call), member) == 0
        && (!named || std::strcmp(named, interface) == 0);
}

std::string handleOf(int window)
{
    char text[24];
    std::snprintf(text, sizeof text, "x11:%x", static_cast<unsigned>(window));
    return text;
}

// Nothing when the signature is none of the known ones.
std::optional<ShowFileCall> showFileCallFrom(sd_bus_message* call, bool isNemo)
{
    const char *url = "", *handle = "", *token = "";
    int window = 0, closes = 0;
    auto* signature = sd_bus_message_get_signature(call, true);
    auto is = [&](const char* expected) { return std::strcmp(signature, expected) == 0; };
    int read = -1;
    if (isNemo && is("sib"))
        read = sd_bus_message_read(call, "sib", &url, &window, &closes);
    else if (!isNemo && is("ssb"))
        read = sd_bus_message_read(call, "ssb", &url, &handle, &closes);
    else if (!isNemo && is("ssbs"))
        read = sd_bus_message_read(call, "ssbs", &url, &handle, &closes, &token);
    if (read < 0)
        return std::nullopt;
    return ShowFileCall{url, isNemo ? handleOf(window) : handle, closes != 0, token};
}

} // namespace

std::unique_ptr<PreviewerBus> PreviewerBus::open(sd_event* loop, Handlers handlers, std::string& fault)
{
    std::unique_ptr<PreviewerBus> previewer(new PreviewerBus);
    previewer->handlers_ = std::move(handlers);
    sd_bus* bus = nullptr;
    if (int code = sd_bus_open_user(&bus); code < 0) {
        fault = "no session bus: ";
        fault += std::strerror(-code);
        return nullptr;
    }
    previewer->bus_.reset(bus);
    sd_bus_set_exit_on_disconnect(bus, true); // the session is over
    sd_bus_add_object(bus, nullptr, filesPreviewerPath, &PreviewerBus::filesCall, previewer.get());
    sd_bus_add_object(bus, nullptr, nemoPath, &PreviewerBus::nemoCall, previewer.get());
    sd_bus_match_signal_async(bus, nullptr, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus", "NameLost", &PreviewerBus::nameLost, nullptr,
                              previewer.get());
    // Whoever switches previewers while this one runs shall be able to.
    constexpr auto flags = SD_BUS_NAME_ALLOW_REPLACEMENT | SD_BUS_NAME_REPLACE_EXISTING;
    int files = sd_bus_request_name(bus, filesPreviewerName, flags);
    int nemo = sd_bus_request_name(bus, nemoName, flags);
    if (files < 0 && nemo < 0) {
        fault = filesPreviewerName;
        fault.append(": ").append(std::strerror(-files));
        return nullptr;
    }
    if (int code = sd_bus_attach_event(bus, loop, SD_EVENT_PRIORITY_NORMAL); code < 0) {
        fault = std::strerror(-code);
        return nullptr;
    }
    return previewer;
}

int PreviewerBus::filesCall(sd_bus_message* call, void* self, sd_bus_error* error)
{
    auto& previewer = *static_cast<PreviewerBus*>(self);
    if (isCall(call, filesPreviewerInterface, "ShowFile"))
        return previewer.answerShowFile(call, error, false);
    if (isCall(call, filesPreviewerInterface, "Close")) {
        previewer.handlers_.onClose();
        return sd_bus_reply_method_return(call, nullptr);
    }
    if (isCall(call, properties, "Get") || isCall(call, properties, "Set"))
        return previewer.answerProperty(call, error);
    if (isCall(call, properties, "GetAll"))
        return previewer.answerAllProperties(call);
    if (isCall(call, introspectable, "Introspect")) {
        return sd_bus_reply_method_return(call, "s", described(filesInterface).c_str());
    }
    return 0;
}

int PreviewerBus::nemoCall(sd_bus_message* call, void* self, sd_bus_error* error)
{
    auto& previewer = *static_cast<PreviewerBus*>(self);
    if (isCall(call, nemoName, "ShowFile"))
        return previewer.answerShowFile(call, error, true);
    if (isCall(call, nemoName, "Close")) {
        previewer.handlers_.onClose();
        return sd_bus_reply_method_return(call, nullptr);
    }
    if (isCall(call, introspectable, "Introspect")) {
        return sd_bus_reply_method_return(call, "s", described(nemoInterface).c_str());
    }
    return 0;
}

int PreviewerBus::nameLost(sd_bus_message* signal, void* self, sd_bus_error*)
{
    const char* name = "";
    if (sd_bus_message_read(signal, "s", &name) >= 0 && std::strcmp(name, filesPreviewerName) == 0)
        static_cast<PreviewerBus*>(self)->handlers_.onNameLost();
    return 0;
}

int PreviewerBus::answerShowFile(sd_bus_message* call, sd_bus_error* error, bool isNemo)
{
    auto asked = showFileCallFrom(call, isNemo);
    if (!asked)
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS,
                                isNemo ? "ShowFile takes (sib)" : "ShowFile takes (ssb) or (ssbs)");
    if (std::max({asked->url.size(), asked->parentHandle.size(), asked->activationToken.size()})
        > longestText)
        return sd_bus_error_set(error, SD_BUS_ERROR_LIMITS_EXCEEDED, "An argument is too long");
    if (auto fault = handlers_.onShowFile(*asked))
        return sd_bus_error_set(error, fault->name, fault->text.c_str());
    return sd_bus_reply_method_return(call, nullptr);
}

int PreviewerBus::appendProperty(sd_bus_message* message, const std::string& property) const
{
    return property == "Visible" ? sd_bus_message_append(message, "v", "b", int(isVisible_))
                                 : sd_bus_message_append(message, "v", "s", parentHandle_.c_str());
}

int PreviewerBus::answerProperty(sd_bus_message* call, sd_bus_error* error)
{
    const char *interface = "", *property = "";
    if (sd_bus_message_read(call, "ss", &interface, &property) < 0)
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "An interface and a property are named");
    bool isKnown = std::strcmp(property, "Visible") == 0 || std::strcmp(property, "ParentHandle") == 0;
    if (!isKnown || std::strcmp(interface, filesPreviewerInterface) != 0)
        return sd_bus_error_set(error, SD_BUS_ERROR_UNKNOWN_PROPERTY, property);
    if (isCall(call, properties, "Set"))
        return sd_bus_error_set(error, SD_BUS_ERROR_PROPERTY_READ_ONLY, property);
    sd_bus_message* reply = nullptr;
    int code = sd_bus_message_new_method_return(call, &reply);
    if (code >= 0)
        code = appendProperty(reply, property);
    if (code >= 0)
        code = sd_bus_send(nullptr, reply, nullptr);
    sd_bus_message_unref(reply);
    return code < 0 ? code : 1;
}

int PreviewerBus::answerAllProperties(sd_bus_message* call)
{
    const char* interface = "";
    sd_bus_message_read(call, "s", &interface);
    bool isOurs = *interface == '\0' || std::strcmp(interface, filesPreviewerInterface) == 0;
    if (!isOurs)
        return sd_bus_reply_method_return(call, "a{sv}", 0);
    return sd_bus_reply_method_return(call, "a{sv}", 2, "Visible", "b", int(isVisible_), "ParentHandle", "s",
                                      parentHandle_.c_str());
}

void PreviewerBus::tellChange(const char* property)
{
    sd_bus_message* signal = nullptr;
    if (sd_bus_message_new_signal(bus_.get(), &signal, filesPreviewerPath, properties, "PropertiesChanged")
        < 0)
        return;
    sd_bus_message_append(signal, "s", filesPreviewerInterface);
    sd_bus_message_open_container(signal, 'a', "{sv}");
    sd_bus_message_open_container(signal, 'e', "sv");
    sd_bus_message_append(signal, "s", property);
    appendProperty(signal, property);
    sd_bus_message_close_container(signal);
    sd_bus_message_close_container(signal);
    sd_bus_message_append(signal, "as", 0);
    sd_bus_send(bus_.get(), signal, nullptr);
    sd_bus_message_unref(signal);
}

void PreviewerBus::setVisible(bool isVisible)
{
    if (std::exchange(isVisible_, isVisible) != isVisible)
        tellChange("Visible");
}

void PreviewerBus::setParentHandle(const std::string& handle)
{
    if (std::exchange(parentHandle_, handle) != handle)
        tellChange("ParentHandle");
}

void PreviewerBus::emitSelection(unsigned direction)
{
    sd_bus_emit_signal(bus_.get(), filesPreviewerPath, filesPreviewerInterface, "SelectionEvent", "u",
                       direction);
}

} // namespace platform
