// SPDX-License-Identifier: MIT
#include "platform/previewer/OtherPreviewer_p.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/mman.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::string_view busConfiguration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN" "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
 <type>session</type><keep_umask/><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>
 <policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>
)";

constexpr std::string_view serviceFile = "/dbus-1/services/org.gnome.NautilusPreviewer.service";

// The words of the service file's Exec line; nothing when it has none. Such files quote nothing in practice; one that does
// is left alone.
std::vector<std::string> commandIn(const std::string& path)
{
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with("Exec="))
            continue;
        if (line.find_first_of("\"'\\") != std::string::npos)
            return {};
        std::istringstream words(line.substr(5));
        return {std::istream_iterator<std::string>(words), {}};
    }
    return {};
}

// The first of the installed services of that name that is not this program.
std::vector<std::string> otherCommand(const std::string& ownProgram)
{
    auto setting = [](const char* name) { return std::string(std::getenv(name) ? std::getenv(name) : ""); };
    auto home = setting("XDG_DATA_HOME"), shared = setting("XDG_DATA_DIRS");
    if (home.empty())
        home = setting("HOME") + "/.local/share";
    auto folders = home + ":" + (shared.empty() ? "/usr/local/share:/usr/share" : shared);
    folders += ":/usr/share/zelk"; // where our Debian package diverts another's file to
    std::istringstream list(folders);
    for (std::string folder; std::getline(list, folder, ':');) {
        if (!folder.starts_with('/'))
            continue;
        auto command = commandIn(folder.append(serviceFile));
        std::error_code unknown;
        bool isUsable = !command.empty() && ::access(command[0].c_str(), X_OK) == 0
            && !std::filesystem::equivalent(command[0], ownProgram, unknown)
            && std::filesystem::path(command[0]).filename() != std::filesystem::path(ownProgram).filename();
        if (isUsable)
            return command;
    }
    return {};
}

} // namespace

OtherPreviewer::OtherPreviewer(sd_event* loop, const std::string& ownProgram, Handlers handlers)
    : loop_(loop)
    , handlers_(std::move(handlers))
    , command_(otherCommand(ownProgram))
    , retirement_(loop, [this] { stop(); })
{
}

OtherPreviewer::~OtherPreviewer() = default;

void OtherPreviewer::show(const ShowFileCall& call)
{
    pending_ = call;
    if (isThere_)
        handOver(false);
    else if (!daemon_)
        startBus();
}

void OtherPreviewer::close()
{
    pending_.reset();
    if (isThere_)
        sd_bus_call_method_async(bus_.get(), nullptr, filesPreviewerName, filesPreviewerPath,
                                 filesPreviewerInterface, "Close", nullptr, nullptr, nullptr);
    setVisible(false);
}

// Its address comes through a pipe; nobody waits for it.
void OtherPreviewer::startBus()
{
    int pipe[2];
    int configuration = ::memfd_create("bus", MFD_CLOEXEC);
    if (configuration < 0
        || ::write(configuration, busConfiguration.data(), busConfiguration.size())
            != static_cast<ssize_t>(busConfiguration.size())
        || ::pipe2(pipe, O_CLOEXEC) != 0) {
        ::close(configuration);
        return stop();
    }
    ::lseek(configuration, 0, SEEK_SET);
    daemon_ = ChildProgram::start(loop_,
                                  {.command = {"dbus-daemon", "--config-file=/proc/self/fd/3", "--nofork",
                                               "--nopidfile", "--print-address=4"},
                                   .environment = {},
                                   .passedDescriptor = configuration,
                                   .secondDescriptor = pipe[1]},
                                  [this](int) { retirement_.set(0); });
    ::close(configuration);
    ::close(pipe[1]);
    sd_event_source* source = nullptr;
    if (!daemon_
        || sd_event_add_io(loop_, &source, pipe[0], EPOLLIN, &OtherPreviewer::addressReadable, this) < 0) {
        ::close(pipe[0]);
        return stop();
    }
    addressInput_.reset(source);
    sd_event_source_set_io_fd_own(source, true);
}

int OtherPreviewer::addressReadable(sd_event_source*, int pipe, std::uint32_t, void* self)
{
    auto& other = *static_cast<OtherPreviewer*>(self);
    char text[512];
    auto count = ::read(pipe, text, sizeof text);
    if (count > 0)
        other.address_.append(text, static_cast<std::size_t>(count));
    auto end = other.address_.find('\n');
    if (end == std::string::npos && count > 0)
        return 0;
    other.addressInput_.reset();
    if (end == std::string::npos)
        other.retirement_.set(0);
    else
        other.connect(other.address_.substr(0, end));
    return 0;
}

void OtherPreviewer::connect(const std::string& address)
{
    sd_bus* bus = nullptr;
    if (sd_bus_new(&bus) < 0)
        return stop();
    bus_.reset(bus);
    constexpr auto match = "type='signal',sender='org.gnome.NautilusPreviewer'";
    constexpr auto owner = "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                           "arg0='org.gnome.NautilusPreviewer'";
    if (sd_bus_set_address(bus, address.c_str()) < 0 || sd_bus_set_bus_client(bus, true) < 0
        || sd_bus_start(bus) < 0 || sd_bus_attach_event(bus, loop_, SD_EVENT_PRIORITY_NORMAL) < 0
        || sd_bus_add_match_async(bus, nullptr, owner, &OtherPreviewer::ownerChanged, nullptr, this) < 0
        || sd_bus_add_match_async(bus, nullptr, match, &OtherPreviewer::signalled, nullptr, this) < 0)
        return stop();
    previewer_ = ChildProgram::start(loop_,
                                     {.command = command_,
                                      .environment = {"DBUS_SESSION_BUS_ADDRESS=" + address,
                                                      "DBUS_STARTER_ADDRESS", "DBUS_STARTER_BUS_TYPE"}},
                                     [this](int) { retirement_.set(0); });
    if (!previewer_)
        stop();
}

int OtherPreviewer::ownerChanged(sd_bus_message* signal, void* self, sd_bus_error*)
{
    auto& other = *static_cast<OtherPreviewer*>(self);
    const char *name = "", *former = "", *owner = "";
    if (sd_bus_message_read(signal, "sss", &name, &former, &owner) < 0)
        return 0;
    other.isThere_ = *owner != '\0';
    if (!other.isThere_)
        other.retirement_.set(0);
    else if (other.pending_)
        other.handOver(false);
    return 0;
}

int OtherPreviewer::signalled(sd_bus_message* signal, void* self, sd_bus_error*)
{
    auto& other = *static_cast<OtherPreviewer*>(self);
    if (sd_bus_message_is_signal(signal, filesPreviewerInterface, "SelectionEvent")) {
        unsigned direction = 0;
        if (sd_bus_message_read(signal, "u", &direction) >= 0)
            other.handlers_.onSelect(direction);
    } else if (sd_bus_message_is_signal(signal, "org.freedesktop.DBus.Properties", "PropertiesChanged")) {
        const char *interface = "", *property = "";
        if (sd_bus_message_read(signal, "s", &interface) < 0
            || sd_bus_message_enter_container(signal, 'a', "{sv}") < 0)
            return 0;
        while (sd_bus_message_enter_container(signal, 'e', "sv") > 0) {
            int isVisible = 0;
            sd_bus_message_read(signal, "s", &property);
            if (std::strcmp(property, "Visible") == 0
                && sd_bus_message_read(signal, "v", "b", &isVisible) >= 0)
                other.setVisible(isVisible);
            else
                sd_bus_message_skip(signal, "v");
            sd_bus_message_exit_container(signal);
        }
    }
    return 0;
}

// Newer ones take a fourth argument, and say so only when it is missing.
void OtherPreviewer::handOver(bool withToken)
{
    auto call = withToken ? handedOver_ : pending_;
    handedOver_ = call;
    sd_bus_message* message = nullptr;
    if (sd_bus_message_new_method_call(bus_.get(), &message, filesPreviewerName, filesPreviewerPath,
                                       filesPreviewerInterface, "ShowFile")
        < 0)
        return;
    sd_bus_message_append(message, "ssb", call->url.c_str(), call->parentHandle.c_str(),
                          int(call->closesIfShown));
    if (withToken)
        sd_bus_message_append(message, "s", call->activationToken.c_str());
    sd_bus_call_async(bus_.get(), nullptr, message, withToken ? nullptr : &OtherPreviewer::answered, this, 0);
    sd_bus_message_unref(message);
    if (withToken)
        pending_.reset();
}

int OtherPreviewer::answered(sd_bus_message* reply, void* self, sd_bus_error*)
{
    auto& other = *static_cast<OtherPreviewer*>(self);
    bool wantsToken = sd_bus_message_is_method_error(reply, SD_BUS_ERROR_INVALID_ARGS)
        || sd_bus_message_is_method_error(reply, SD_BUS_ERROR_UNKNOWN_METHOD);
    if (wantsToken && other.handedOver_) {
        other.handOver(true);
    } else {
        other.pending_.reset();
        other.handlers_.onVisible(other.isActive());
    }
    return 0;
}

void OtherPreviewer::setVisible(bool isVisible)
{
    isVisible_ = isVisible;
    if (isVisible)
        pending_.reset();
    handlers_.onVisible(isActive());
}

void OtherPreviewer::stop()
{
    retirement_.clear();
    addressInput_.reset();
    address_.clear();
    bus_.reset();
    if (previewer_)
        previewer_->signal(SIGTERM);
    previewer_.reset();
    daemon_.reset();
    isThere_ = false;
    pending_.reset();
    setVisible(false);
}

} // namespace platform
