// SPDX-License-Identifier: MIT
#include "platform/graphics/DisplayProbe_p.h"

#include "platform/graphics/GraphicsRuntime.h"

#include <QtCore/QDir>
#include <QtCore/QLibraryInfo>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform {

namespace {

std::string_view environment(const char* name)
{
    auto value = std::getenv(name);
    return value ? value : "";
}

bool answersOnSocket(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    auto socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0)
        return false;
    auto connected = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(socket);
    return connected;
}

// A real handshake: a server that refuses our key listens as well. The client library is the one that the
// window system's module needs anyway.
bool xServerAccepts()
{
    if (environment("DISPLAY").empty())
        return false;
    auto library = ::dlopen("libxcb.so.1", RTLD_LAZY | RTLD_LOCAL);
    if (!library)
        return false;
    auto connect = reinterpret_cast<void* (*)(const char*, int*)>(::dlsym(library, "xcb_connect"));
    auto hasError = reinterpret_cast<int (*)(void*)>(::dlsym(library, "xcb_connection_has_error"));
    auto disconnect = reinterpret_cast<void (*)(void*)>(::dlsym(library, "xcb_disconnect"));
    bool accepted = false;
    if (connect && hasError && disconnect) {
        auto connection = connect(nullptr, nullptr);
        accepted = hasError(connection) == 0;
        disconnect(connection);
    }
    ::dlclose(library);
    return accepted;
}

// Without its module the library passes over a window system.
bool moduleIsInstalled(const QString& pattern)
{
    auto hasModule = [&pattern](const QString& directory) {
        return !QDir(directory + QStringLiteral("/platforms")).entryList({pattern}, QDir::Files).isEmpty();
    };
    auto extra =
        QString::fromLocal8Bit(qgetenv("QT_PLUGIN_PATH")).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    return hasModule(QLibraryInfo::path(QLibraryInfo::PluginsPath))
        || std::any_of(extra.begin(), extra.end(), hasModule);
}

bool windowSystemAnswers(const std::string& name)
{
    if (name == "xcb")
        return xServerAccepts();
    if (name.starts_with("wayland"))
        return answersOnSocket(
                   waylandSocketPath(environment("WAYLAND_DISPLAY"), environment("XDG_RUNTIME_DIR")))
            && moduleIsInstalled(QStringLiteral("libqwayland*.so"));
    return moduleIsInstalled(QStringLiteral("libq%1.so").arg(QString::fromStdString(name)));
}

} // namespace

std::vector<std::string> candidateWindowSystems(std::string_view requested)
{
    if (requested.empty())
        return {"wayland", "xcb"};
    std::vector<std::string> names;
    while (!requested.empty()) {
        auto end = std::min(requested.find(';'), requested.size());
        auto name = requested.substr(0, end);
        name = name.substr(0, name.find(':'));
        if (!name.empty())
            names.emplace_back(name);
        requested.remove_prefix(std::min(end + 1, requested.size()));
    }
    return names;
}

std::string waylandSocketPath(std::string_view display, std::string_view runtimeDirectory)
{
    if (display.starts_with('/'))
        return std::string(display);
    if (display.empty() || runtimeDirectory.empty())
        return {};
    return std::string(runtimeDirectory) + '/' + std::string(display);
}

bool displayIsAvailable()
{
    auto names = candidateWindowSystems(environment("QT_QPA_PLATFORM"));
    return std::any_of(names.begin(), names.end(), windowSystemAnswers);
}

} // namespace platform
