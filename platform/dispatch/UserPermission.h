// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class DispatchQueue;

// What the user allows a program. The numbers are the platform's, for photos and devices alike.
enum class UserPermissionStatus : long {
    notDetermined = 0, // the user has not been asked yet
    restricted = 1,    // whoever administers the machine forbids it to all programs
    denied = 2,
    authorized = 3,
    limited = 4,
};

// One thing that the user allows or refuses this program: asked once, kept among its settings as the number of the status,
// so that it can be taken back there too. Whoever administers the machine forbids it to all programs by a property list
// zelk/restrictions.plist in a folder of XDG_CONFIG_DIRS. Lives as long as the process.
class UserPermission {
public:
    using Status = UserPermissionStatus;
    using Handler = std::function<void(Status)>;
    using Answer = std::function<void(Status)>;
    // Asks the user and calls the answer once, on the main thread, at once or later: authorized, denied, perhaps limited; or
    // notDetermined when nobody could be asked or the user gave no answer, which is not remembered.
    using Question = std::function<void(Answer)>;

    struct Options {
        std::string key;         // of the setting
        std::string restriction; // true in the property list: forbidden
        bool canBeLimited = false;
        const UserPermission* impliedBy = nullptr; // who has that one has this one too
    };
    explicit UserPermission(Options options);
    UserPermission(const UserPermission&) = delete; // work under way refers to it
    UserPermission& operator=(const UserPermission&) = delete;

    // Looks at the settings each time: what was taken back counts at once. Any thread.
    Status status() const;
    // What the user chose elsewhere; notDetermined: the next request asks again. Any thread. Requires: not restricted.
    void setStatus(Status status);
    // Calls `question` if nothing is known yet: requests that come while one stands share its answer. `handler` is called
    // once, later, on `queue`. When nobody can be asked it is told denied. Any thread; the main run loop must be taking turns.
    void request(std::shared_ptr<DispatchQueue> queue, Handler handler, Question question);

private:
    struct Waiting {
        std::shared_ptr<DispatchQueue> queue;
        Handler handler;
    };
    Status remembered() const;
    void ask(Waiting waiting, const Question& question);
    void take(Status answer);

    const Options options_;
    std::vector<Waiting> waiting_; // those whose question stands; main thread only
};

} // namespace platform
