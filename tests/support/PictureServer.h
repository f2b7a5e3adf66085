// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tests {

// What a server says: "200 OK" with fields, each ended by CR LF, and a body.
struct Answer {
    std::string status = "200 OK";
    std::string fields;
    std::string body;
};

// An HTTP/1.1 server on loopback, honest and small: a thread for each connection, which stays open. Answers to paths that are
// held wait until they are let go, or until their client hangs up.
class PictureServer {
public:
    // Called on any of its threads.
    using Respond = std::function<Answer(const std::string& path, const std::string& head)>;

    explicit PictureServer(Respond respond)
        : respond_(std::move(respond))
        , listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (::bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0
            || ::listen(listener_, 128) != 0
            || ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
            std::abort();
        port_ = ::ntohs(address.sin_port);
        acceptor_ = std::thread([this] { acceptAll(); });
    }
    PictureServer(const PictureServer&) = delete; // its threads hold its address
    PictureServer& operator=(const PictureServer&) = delete;
    ~PictureServer()
    {
        {
            std::lock_guard lock(mutex_);
            isOver_ = true;
            for (auto connection : connections_)
                ::shutdown(connection, SHUT_RDWR);
        }
        changed_.notify_all();
        ::shutdown(listener_, SHUT_RDWR);
        acceptor_.join();
        for (auto& thread : threads_)
            thread.join();
        ::close(listener_);
    }

    std::string url(std::string_view path) const
    {
        return std::string("http://127.0.0.1:").append(std::to_string(port_)).append(path);
    }

    void hold(const std::string& path)
    {
        std::lock_guard lock(mutex_);
        held_.insert(path);
    }
    void letGo(const std::string& path)
    {
        {
            std::lock_guard lock(mutex_);
            held_.erase(path);
        }
        changed_.notify_all();
    }

    int requests(const std::string& path)
    {
        std::lock_guard lock(mutex_);
        return requests_[path];
    }
    std::map<std::string, int> allRequests()
    {
        std::lock_guard lock(mutex_);
        return requests_;
    }
    // Clients that went while their answer was held.
    int hangUps()
    {
        std::lock_guard lock(mutex_);
        return hangUps_;
    }

private:
    void acceptAll()
    {
        for (;;) {
            int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
            std::lock_guard lock(mutex_);
            if (isOver_ || connection < 0) {
                if (connection >= 0)
                    ::close(connection);
                return;
            }
            int on = 1;
            ::setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
            connections_.insert(connection);
            threads_.emplace_back([this, connection] { serve(connection); });
        }
    }

    void serve(int connection)
    {
        std::string received;
        for (bool isOpen = true; isOpen;) {
            auto end = received.find("\r\n\r\n");
            if (end == std::string::npos) {
                char buffer[4096];
                auto count = ::recv(connection, buffer, sizeof buffer, 0);
                if (count <= 0)
                    break;
                received.append(buffer, static_cast<std::size_t>(count));
                continue;
            }
            auto head = received.substr(0, end);
            received.erase(0, end + 4);
            auto begin = head.find(' ') + 1;
            auto path = head.substr(begin, head.find(' ', begin) - begin);
            isOpen = waitUntilLetGo(connection, path) && send(connection, respond_(path, head));
        }
        std::lock_guard lock(mutex_);
        connections_.erase(connection);
        ::close(connection);
    }

    bool waitUntilLetGo(int connection, const std::string& path)
    {
        std::unique_lock lock(mutex_);
        ++requests_[path];
        while (held_.contains(path) && !isOver_) {
            changed_.wait_for(lock, std::chrono::milliseconds(5));
            pollfd peer{connection, POLLIN | POLLRDHUP, 0};
            if (::poll(&peer, 1, 0) > 0 && (peer.revents & (POLLRDHUP | POLLHUP | POLLERR))) {
                ++hangUps_;
                return false;
            }
        }
        return !isOver_;
    }

    static bool send(int connection, const Answer& answer)
    {
        auto text = std::string("HTTP/1.1 ").append(answer.status).append("\r\n").append(answer.fields);
        text.append("Content-Length: ")
            .append(std::to_string(answer.body.size()))
            .append("\r\n\r\n")
            .append(answer.body);
        for (std::string_view rest = text; !rest.empty();) {
            auto count = ::send(connection, rest.data(), rest.size(), MSG_NOSIGNAL);
            if (count <= 0)
                return false;
            rest.remove_prefix(static_cast<std::size_t>(count));
        }
        return true;
    }

    // fixed after construction
    const Respond respond_;
    const int listener_;
    std::uint16_t port_ = 0;
    std::thread acceptor_;
    // guarded by mutex_, but for the end
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::thread> threads_;
    std::set<int> connections_;
    std::set<std::string> held_;
    std::map<std::string, int> requests_;
    int hangUps_ = 0;
    bool isOver_ = false;
};

} // namespace tests
