// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewBroker.h"

#include "platform/foundation/Logger.h"
#include "platform/foundation/TextDecoding.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <string>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace platform {

namespace {

enum Command : unsigned char { openFile = 'o', keepInFile = 'k', forgetInFile = 'f' };
constexpr int answerLimit = 250, openingLimit = 100; // milliseconds
constexpr std::size_t longestURL = 64 * 1024;

using Request = std::array<unsigned char, 2>; // a command and its argument

const Logger& logger()
{
    static const Logger logger("org.zelk.quicklook", "broker");
    return logger;
}

// Whether the child went wrong in that time; one that runs on has not.
bool failsSoon(pid_t child)
{
    int descriptor = static_cast<int>(::syscall(SYS_pidfd_open, child, 0));
    if (descriptor < 0)
        return false;
    pollfd ending{descriptor, POLLIN, 0};
    auto isOver = ::poll(&ending, 1, openingLimit) == 1;
    ::close(descriptor);
    int status = 0;
    return isOver && ::waitpid(child, &status, WNOHANG) == child
        && (!WIFEXITED(status) || WEXITSTATUS(status) != 0);
}

bool openInDesktop(const URL& file)
{
    while (::waitpid(-1, nullptr, WNOHANG) > 0) { } // earlier ones that are over
    std::string program = "xdg-open", address = file.absoluteString();
    std::array<char*, 3> arguments{program.data(), address.data(), nullptr};
    posix_spawnattr_t attributes;
    if (::posix_spawnattr_init(&attributes) != 0)
        return false;
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID); // it lives on when the preview is closed
    pid_t child = 0;
    auto fault = ::posix_spawnp(&child, program.c_str(), nullptr, &attributes, arguments.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    return fault == 0 && !failsSoon(child);
}

bool isEncoding(unsigned char number)
{
    return number <= static_cast<unsigned char>(TextEncoding::eucKR);
}

bool serve(const Request& request, const URL& file)
{
    switch (request[0]) {
    case openFile:
        return openInDesktop(file);
    case keepInFile:
        return isEncoding(request[1])
            && keepTextEncoding(file, static_cast<TextEncoding>(request[1])).has_value();
    case forgetInFile:
        return keepTextEncoding(file, std::nullopt).has_value();
    default:
        return false;
    }
}

// The first message of a preview whose file was chosen later.
URL awaitFile(int connection)
{
    std::string text(longestURL, '\0');
    ssize_t size = 0;
    do
        size = ::recv(connection, text.data(), text.size(), 0);
    while (size < 0 && errno == EINTR);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    auto file = URL::parse(text);
    if (!file)
        ::_exit(0);
    return *file;
}

[[noreturn]] void runBroker(int connection, const std::optional<URL>& known)
{
    std::signal(SIGINT, SIG_IGN); // the preview's to answer; its end is this one's
    auto file = known ? *known : awaitFile(connection);
    for (;;) {
        Request request{};
        auto size = ::recv(connection, request.data(), request.size(), 0);
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            ::_exit(0);
        unsigned char answer = size == std::ssize(request) && serve(request, file) ? 1 : 0;
        ::send(connection, &answer, 1, MSG_NOSIGNAL);
    }
}

} // namespace

PreviewBroker::PreviewBroker(const URL& file)
{
    start(file);
}

PreviewBroker::PreviewBroker()
{
    start(std::nullopt);
}

void PreviewBroker::setFile(const URL& file)
{
    auto& text = file.absoluteString();
    // A file that it is not told of is one that its requests fail for.
    if (connection_ >= 0 && text.size() <= longestURL)
        ::send(connection_, text.data(), text.size(), MSG_NOSIGNAL);
}

void PreviewBroker::start(std::optional<URL> file)
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0)
        return;
    auto process = ::fork();
    if (process == 0) {
        ::close(ends[0]);
        runBroker(ends[1], file);
    }
    ::close(ends[1]);
    if (process < 0)
        ::close(ends[0]);
    else
        connection_ = ends[0];
}

PreviewBroker::~PreviewBroker()
{
    if (connection_ >= 0)
        ::close(connection_);
}

bool PreviewBroker::request(unsigned char command, unsigned char argument)
{
    Request request{command, argument};
    unsigned char late = 0;
    while (connection_ >= 0 && ::recv(connection_, &late, 1, MSG_DONTWAIT) == 1) { } // of a request given up
    unsigned char answer = 0;
    bool isDone = connection_ >= 0
        && ::send(connection_, request.data(), request.size(), MSG_NOSIGNAL) == std::ssize(request);
    if (isDone) {
        pollfd waiting{connection_, POLLIN, 0};
        isDone = ::poll(&waiting, 1, answerLimit) == 1 && ::recv(connection_, &answer, 1, MSG_DONTWAIT) == 1
            && answer == 1;
    }
    if (!isDone)
        logger().debug("a request for the file was not fulfilled");
    return isDone;
}

bool PreviewBroker::openWithDefaultProgram()
{
    return request(openFile, 0);
}

bool PreviewBroker::keepEncoding(std::optional<TextEncoding> encoding)
{
    return encoding ? request(keepInFile, static_cast<unsigned char>(*encoding)) : request(forgetInFile, 0);
}

} // namespace platform
