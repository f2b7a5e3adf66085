// SPDX-License-Identifier: MIT
#include "apps/subtitle-thumbnailer/PictureFile.h"

#include <csignal>
#include <cstring>
#include <filesystem>

#include <cerrno>
#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

namespace thumbnail {

namespace {

// The file that is being written, for the signal handler: the name is set whole before the pointer is.
std::string draftName;
const char* volatile draft = nullptr;

void endInTime(int)
{
    if (const char* name = draft)
        ::unlink(name);
    constexpr std::string_view message = "subtitle-thumbnailer: it took too long\n";
    [[maybe_unused]] auto written = ::write(STDERR_FILENO, message.data(), message.size());
    ::_exit(1);
}

bool writeAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        auto written = ::write(file, bytes.data(), bytes.size());
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0 || errno != EINTR)
            return false;
    }
    return true;
}

} // namespace

std::string whyNotWritable(const std::string& output, const std::string& input)
{
    std::error_code unknown; // what cannot be looked at is reported when it cannot be written
    auto status = std::filesystem::symlink_status(output, unknown);
    if (!std::filesystem::exists(status))
        return {};
    if (!std::filesystem::is_regular_file(status))
        return "This is not a file that a picture could replace";
    return std::filesystem::equivalent(output, input, unknown) ? "This is the file to be shown" : "";
}

std::string writePicture(const std::string& output, std::string_view bytes)
{
    draftName = output + "." + std::to_string(::getpid()) + ".part";
    auto file = ::open(draftName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0)
        return std::strerror(errno);
    draft = draftName.c_str();
    bool isWritten = writeAll(file, bytes);
    int fault = errno;
    if (::close(file) != 0 && isWritten) {
        isWritten = false;
        fault = errno;
    }
    if (isWritten && ::rename(draftName.c_str(), output.c_str()) == 0) {
        draft = nullptr;
        return {};
    }
    if (isWritten)
        fault = errno;
    ::unlink(draftName.c_str());
    draft = nullptr;
    return std::strerror(fault);
}

void limitTime(std::chrono::seconds limit)
{
    std::signal(SIGALRM, endInTime);
    // A mask that was inherited must not keep it from coming.
    sigset_t alarm;
    sigemptyset(&alarm);
    sigaddset(&alarm, SIGALRM);
    ::sigprocmask(SIG_UNBLOCK, &alarm, nullptr);
    itimerval timer{};
    timer.it_value.tv_sec = limit.count();
    ::setitimer(ITIMER_REAL, &timer, nullptr);
}

} // namespace thumbnail
