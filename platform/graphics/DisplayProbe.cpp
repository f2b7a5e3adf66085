// SPDX-License-Identifier: MIT
#include "platform/graphics/DisplayProbe_p.h"

#include "platform/graphics/GraphicsRuntime.h"

#include <QtCore/QDir>
#include <QtCore/QLibraryInfo>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <memory>
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

// The X client library, which the window system's module needs anyway.
class XConnection {
public:
    XConnection()
        : library_(::dlopen("libxcb.so.1", RTLD_LAZY | RTLD_LOCAL))
    {
        auto connect = function<void*(const char*, int*)>("xcb_connect");
        if (connect && function<int(void*)>("xcb_connection_has_error")
            && function<void(void*)>("xcb_disconnect"))
            connection_ = connect(nullptr, nullptr);
    }
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;
    ~XConnection()
    {
        if (connection_)
            function<void(void*)>("xcb_disconnect")(connection_);
        if (library_)
            ::dlclose(library_);
    }
    bool isAccepted() const
    {
        return connection_ && function<int(void*)>("xcb_connection_has_error")(connection_) == 0;
    }

private:
    template <class Signature>
    Signature* function(const char* name) const
    {
        return library_ ? reinterpret_cast<Signature*>(::dlsym(library_, name)) : nullptr;
    }

    void* library_;
    void* connection_ = nullptr;
};

std::unique_ptr<XConnection>& heldConnection()
{
    static std::unique_ptr<XConnection> held;
    return held;
}

// A real handshake: a server that refuses our key listens as well. The connection is held, because a server
// without a session starts over when its last client leaves, and would turn away the one that comes next.
bool xServerAccepts()
{
    if (environment("DISPLAY").empty())
        return false;
    auto connection = std::make_unique<XConnection>();
    if (!connection->isAccepted())
        return false;
    heldConnection() = std::move(connection);
    return true;
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

void releaseProbedDisplay()
{
    heldConnection().reset();
}

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
