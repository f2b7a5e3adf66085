// SPDX-License-Identifier: MIT
#include "tests/support/ScriptedServer.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <mutex>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <set>
#include <strings.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace tests {

struct ScriptedServer::State {
    Script script;
    int listener = -1;
    int port = 0;
    std::thread acceptor;

    std::mutex mutex;
    // guarded by mutex
    bool isOver = false;
    std::vector<Request> requests;
    std::set<int> descriptors;
    std::vector<std::thread> threads;

    void accept();
    void serve(int descriptor);
};

std::optional<std::string> ScriptedServer::Request::field(std::string_view name) const
{
    for (std::size_t at = head.find("\r\n"); at != std::string::npos; at = head.find("\r\n", at + 2)) {
        auto colon = head.find(':', at + 2);
        if (colon == std::string::npos || colon - at - 2 != name.size()
            || ::strncasecmp(head.data() + at + 2, name.data(), name.size()) != 0)
            continue;
        auto begin = head.find_first_not_of(' ', colon + 1);
        return head.substr(begin, head.find("\r\n", begin) - begin);
    }
    return std::nullopt;
}

bool ScriptedServer::Connection::send(std::string_view bytes)
{
    while (!bytes.empty()) {
        auto count = ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0)
            return isOpen_ = false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool ScriptedServer::Connection::answer(std::string_view status, std::string_view body,
                                        std::string_view fields)
{
    std::string text = "HTTP/1.1 ";
    text.append(status).append("\r\nContent-Length: ").append(std::to_string(body.size())).append("\r\n");
    text.append(fields).append("\r\n").append(body);
    return send(text);
}

void ScriptedServer::Connection::waitForClose()
{
    char ignored[4096];
    while (::recv(descriptor_, ignored, sizeof ignored, 0) > 0) { }
    isOpen_ = false;
}

void ScriptedServer::Connection::reset()
{
    linger hard{1, 0};
    ::setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    isOpen_ = false;
}

ScriptedServer::ScriptedServer(Script script)
    : state_(std::make_shared<State>())
{
    state_->script = std::move(script);
    state_->listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(state_->listener, generic, length) != 0 || ::listen(state_->listener, 64) != 0
        || ::getsockname(state_->listener, generic, &length) != 0)
        std::abort();
    state_->port = ntohs(address.sin_port);
    state_->acceptor = std::thread([state = state_.get()] { state->accept(); });
}

ScriptedServer::~ScriptedServer()
{
    {
        std::lock_guard lock(state_->mutex);
        state_->isOver = true;
        for (int descriptor : state_->descriptors)
            ::shutdown(descriptor, SHUT_RDWR);
    }
    ::shutdown(state_->listener, SHUT_RDWR);
    state_->acceptor.join();
    for (auto& thread : state_->threads)
        thread.join();
    ::close(state_->listener);
}

void ScriptedServer::State::accept()
{
    for (;;) {
        int descriptor = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        std::lock_guard lock(mutex);
        if (descriptor < 0 || isOver) {
            if (descriptor >= 0)
                ::close(descriptor);
            return;
        }
        int yes = 1;
        ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        descriptors.insert(descriptor);
        threads.emplace_back([this, descriptor] { serve(descriptor); });
    }
}

void ScriptedServer::State::serve(int descriptor)
{
    Connection connection(descriptor);
    std::string text;
    while (connection.isOpen_) {
        auto end = text.find("\r\n\r\n");
        if (end == std::string::npos) {
            char bytes[4096];
            auto count = ::recv(descriptor, bytes, sizeof bytes, 0);
            if (count <= 0)
                break;
            text.append(bytes, static_cast<std::size_t>(count));
            continue;
        }
        Request request;
        request.head = text.substr(0, end + 4);
        text.erase(0, end + 4);
        auto first = request.head.find(' ');
        request.method = request.head.substr(0, first);
        request.target = request.head.substr(first + 1, request.head.find(' ', first + 1) - first - 1);
        {
            std::lock_guard lock(mutex);
            requests.push_back(request);
        }
        script(connection, request);
    }
    std::lock_guard lock(mutex);
    descriptors.erase(descriptor);
    ::close(descriptor);
}

platform::URL ScriptedServer::url(std::string_view target) const
{
    return *platform::URL::parse("http://127.0.0.1:" + std::to_string(state_->port) + std::string(target));
}

int ScriptedServer::port() const
{
    return state_->port;
}

std::vector<ScriptedServer::Request> ScriptedServer::requests() const
{
    std::lock_guard lock(state_->mutex);
    return state_->requests;
}

} // namespace tests
