// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace endtoend {

using Environment = std::map<std::string, std::string>;

struct Outcome {
    int exitStatus = -1; // 128 + signal for a process that was killed
    std::string output;
    std::string errors;
};

// A program that runs beside the test, with what it prints. Killed with its whole group when it goes out of
// scope. The environment given is laid over the test's own; an empty value takes a variable away.
class Process {
public:
    Process(std::vector<std::string> arguments, const Environment& environment = {});
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t id() const { return pid_; }
    bool isRunning();
    // Reads what it prints until it ends. Nothing when it does not end in time.
    std::optional<Outcome> wait(std::chrono::milliseconds limit = std::chrono::seconds(20));
    // The next line of standard output; nothing at its end or when none comes in time.
    std::optional<std::string> readLine(std::chrono::milliseconds limit = std::chrono::seconds(20));
    void terminate(int signal);

private:
    bool pump(std::chrono::milliseconds limit); // false when both pipes are at their end
    void reap(int options);

    pid_t pid_ = -1;
    int outputPipe_ = -1;
    int errorPipe_ = -1;
    std::string output_, errors_;
    std::optional<int> status_;
};

// Runs a program to its end. A program that does not end in time fails with status -1.
Outcome run(std::vector<std::string> arguments, const Environment& environment = {},
            std::chrono::milliseconds limit = std::chrono::seconds(20));

// Asks again and again until `condition` holds; false when it does not in time.
template <class Condition>
bool eventually(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(10));

void pauseBriefly();

template <class Condition>
bool eventually(Condition condition, std::chrono::milliseconds limit)
{
    auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        pauseBriefly();
    }
    return true;
}

} // namespace endtoend
