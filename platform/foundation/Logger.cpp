// SPDX-License-Identifier: MIT
#include "platform/foundation/Logger.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace platform {

namespace {

struct LogReceiver {
    std::mutex mutex;
    std::function<void(const LogRecord&)> receive;
};

LogReceiver& receiver()
{
    static auto& instance =
        *new LogReceiver; // never destroyed: threads may still run while the process exits
    return instance;
}

LogLevel levelAtStart()
{
    const char* wanted = std::getenv("ZELK_LOG");
    std::string_view name = wanted ? wanted : "";
    if (name == "debug")
        return LogLevel::debug;
    return name == "info" ? LogLevel::info : LogLevel::error;
}

LogLevel lowestWritten()
{
    static const LogLevel lowest = levelAtStart();
    return lowest;
}

} // namespace

Logger::Logger(std::string subsystem, std::string category)
    : subsystem_(std::move(subsystem))
    , category_(std::move(category))
{
}

bool Logger::isHeard(LogLevel level)
{
    if (level >= lowestWritten())
        return true;
    std::lock_guard lock(receiver().mutex);
    return receiver().receive != nullptr;
}

void Logger::log(LogLevel level, std::string_view message) const
{
    std::function<void(const LogRecord&)> receive;
    {
        std::lock_guard lock(receiver().mutex);
        receive = receiver().receive;
    }
    if (receive)
        return receive({level, subsystem_, category_, message});
    if (level < lowestWritten())
        return;
    std::string line = subsystem_ + " [" + category_ + "] " + std::string(message);
    // A file name or a server may put control characters into a message; they must not drive a terminal.
    for (char& character : line) {
        if (static_cast<unsigned char>(character) < ' ' || character == 0x7F)
            character = ' ';
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr); // one call, so that threads do not mix their lines
}

LogCapture::LogCapture(std::function<void(const LogRecord&)> receive)
{
    std::lock_guard lock(receiver().mutex);
    previous_ = std::exchange(receiver().receive, std::move(receive));
}

LogCapture::~LogCapture()
{
    std::lock_guard lock(receiver().mutex);
    receiver().receive = std::move(previous_);
}

} // namespace platform
