// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <string_view>

namespace platform {

enum class LogLevel { debug, info, error };

struct LogRecord {
    LogLevel level;
    std::string_view subsystem;
    std::string_view category;
    std::string_view message;
};

// Writes one line a message on standard error. Silent below LogLevel::error, unless the environment variable
// ZELK_LOG is "debug" or "info". Name files by their last path component only. Any thread.
class Logger {
public:
    Logger(std::string subsystem, std::string category);

    void debug(std::string_view message) const { log(LogLevel::debug, message); }
    void info(std::string_view message) const { log(LogLevel::info, message); }
    void error(std::string_view message) const { log(LogLevel::error, message); }

    // For what is said often: the message is made only where somebody hears it.
    template <std::invocable MakeMessage>
    void debug(MakeMessage makeMessage) const
    {
        if (isHeard(LogLevel::debug))
            log(LogLevel::debug, makeMessage());
    }

private:
    static bool isHeard(LogLevel level);
    void log(LogLevel level, std::string_view message) const;

    std::string subsystem_;
    std::string category_;
};

// Gives every message of any level to `receive` instead of standard error while the object lives; captures
// nest. `receive` runs on the logging thread.
class LogCapture {
public:
    explicit LogCapture(std::function<void(const LogRecord&)> receive);
    ~LogCapture();
    // Its lifetime is its meaning.
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

private:
    std::function<void(const LogRecord&)> previous_;
};

} // namespace platform
