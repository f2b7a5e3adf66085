// SPDX-License-Identifier: MIT
#pragma once

#include "tests/endtoend/Desktop.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <fstream>
#include <functional>
#include <vector>

namespace endtoend {

// A desktop with a session bus of its own, on which the previewer starts when it is called, as after an installation into a
// home.
class PreviewerSession {
public:
    explicit PreviewerSession(const Environment& more = {})
    {
        std::filesystem::create_directories(folder.path("share/dbus-1/services"));
        for (auto name : {"org.gnome.NautilusPreviewer", "org.nemo.Preview"})
            folder.file("share/dbus-1/services/" + std::string(name) + ".service",
                        "[D-BUS Service]\nName=" + std::string(name)
                            + "\nExec=" ZELK_BINARY_DIR "/bin/zelk-previewer\n");
        Environment environment{{"XDG_DATA_HOME", folder.path("share")}, {"DBUS_SESSION_BUS_ADDRESS", ""}};
        environment = desktop.environment(environment);
        for (auto& [variable, value] : more)
            environment[variable] = value;
        daemon_ = std::make_unique<Process>(std::vector<std::string>{"dbus-daemon", "--session", "--nofork",
                                                                     "--nopidfile", "--print-address=1"},
                                            environment);
        address = daemon_->readLine().value_or("");
        EXPECT_FALSE(address.empty()) << "no session bus";
    }

    std::string subtitle(const std::string& name)
    {
        return "file://" + folder.file(name, "1\n00:00:01,000 --> 00:00:02,000\n" + name + "\n");
    }

    ::tests::TemporaryDirectory folder;
    Desktop desktop;
    std::string address;

private:
    std::unique_ptr<Process> daemon_;
};

// Does on the bus what GNOME Files does: keeps the properties as they were told, and follows the previewer's signals.
class FilesClient {
public:
    explicit FilesClient(const std::string& address)
    {
        sd_bus_new(&bus_);
        sd_bus_set_address(bus_, address.c_str());
        sd_bus_set_bus_client(bus_, true);
        EXPECT_GE(sd_bus_start(bus_), 0);
        sd_bus_match_signal(bus_, nullptr, name, path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                            &FilesClient::changed, this);
        sd_bus_match_signal(bus_, nullptr, name, path, interface, "SelectionEvent", &FilesClient::selected,
                            this);
    }
    ~FilesClient() { sd_bus_flush_close_unref(bus_); }
    FilesClient(const FilesClient&) = delete; // its address is with the bus
    FilesClient& operator=(const FilesClient&) = delete;

    // The name of the error that is answered; empty for none.
    template <class... Arguments>
    std::string call(const char* itsPath, const char* itsInterface, const char* member, const char* signature,
                     Arguments... arguments)
    {
        sd_bus_error error = SD_BUS_ERROR_NULL;
        auto* service = std::string_view(itsPath) == path ? name : "org.nemo.Preview";
        int code = sd_bus_call_method(bus_, service, itsPath, itsInterface, member, &error, nullptr,
                                      signature, arguments...);
        errorText = error.message ? error.message : "";
        std::string fault = code >= 0 ? "" : error.name ? error.name : "no answer";
        sd_bus_error_free(&error);
        return fault;
    }
    std::string showFile(const std::string& url, bool closesIfShown, const char* handle = "x11:0")
    {
        return call(path, interface, "ShowFile", "ssb", url.c_str(), handle, int(closesIfShown));
    }
    std::string showFileWithToken(const std::string& url, bool closesIfShown)
    {
        return call(path, interface, "ShowFile", "ssbs", url.c_str(), "x11:0", int(closesIfShown), "");
    }
    // Many, without waiting for answers.
    void shout(const std::string& url)
    {
        sd_bus_message* message = nullptr;
        sd_bus_message_new_method_call(bus_, &message, name, path, interface, "ShowFile");
        sd_bus_message_append(message, "ssb", url.c_str(), "x11:0", 0);
        sd_bus_message_set_expect_reply(message, 0);
        EXPECT_GE(sd_bus_send(bus_, message, nullptr), 0);
        sd_bus_message_unref(message);
    }

    bool comesToBe(const std::function<bool()>& condition)
    {
        return eventually([&] {
            while (sd_bus_process(bus_, nullptr) > 0) { }
            return condition();
        });
    }

    int previewerProcess()
    {
        sd_bus_creds* who = nullptr;
        pid_t process = 0;
        if (sd_bus_get_name_creds(bus_, name, SD_BUS_CREDS_PID, &who) >= 0)
            sd_bus_creds_get_pid(who, &process);
        sd_bus_creds_unref(who);
        return process;
    }

    static constexpr auto name = "org.gnome.NautilusPreviewer", path = "/org/gnome/NautilusPreviewer",
                          interface = "org.gnome.NautilusPreviewer2";
    bool isVisible = false;
    std::string parentHandle, errorText;
    std::vector<unsigned> selections;
    std::function<void(unsigned)> onSelection = [](unsigned) { };

private:
    static int changed(sd_bus_message* signal, void* self, sd_bus_error*)
    {
        auto& client = *static_cast<FilesClient*>(self);
        const char *property = "", *text = "";
        sd_bus_message_skip(signal, "s");
        sd_bus_message_enter_container(signal, 'a', "{sv}");
        while (sd_bus_message_enter_container(signal, 'e', "sv") > 0) {
            sd_bus_message_read(signal, "s", &property);
            int value = 0;
            if (std::string_view(property) == "Visible" && sd_bus_message_read(signal, "v", "b", &value) >= 0)
                client.isVisible = value;
            else if (sd_bus_message_read(signal, "v", "s", &text) >= 0)
                client.parentHandle = text;
            sd_bus_message_exit_container(signal);
        }
        return 0;
    }
    static int selected(sd_bus_message* signal, void* self, sd_bus_error*)
    {
        auto& client = *static_cast<FilesClient*>(self);
        unsigned direction = 99;
        sd_bus_message_read(signal, "u", &direction);
        client.selections.push_back(direction);
        client.onSelection(direction);
        return 0;
    }

    sd_bus* bus_ = nullptr;
};

} // namespace endtoend
