// SPDX-License-Identifier: MIT
#include "platform/dispatch/UserPermission.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/foundation/Precondition.h"

#include <cstdlib>
#include <string_view>
#include <utility>

namespace platform {

using Status = UserPermissionStatus;

namespace {

bool isRestricted(std::string_view key)
{
    const char* variable = std::getenv("XDG_CONFIG_DIRS");
    std::string_view folders = variable && *variable ? variable : "/etc/xdg";
    while (!folders.empty()) {
        auto end = folders.find(':');
        auto folder = folders.substr(0, end);
        folders.remove_prefix(end == folders.npos ? folders.size() : end + 1);
        if (!folder.starts_with('/'))
            continue;
        auto list = readPropertyList(URL::fileURL(folder).appendingPathComponent("zelk/restrictions.plist"));
        if (!list)
            continue; // most machines have none
        auto found = list->find(key);
        if (const auto* value = found == list->end() ? nullptr : found->second.as<bool>())
            return *value;
    }
    return false;
}

bool isGranted(Status status)
{
    return status == Status::authorized || status == Status::limited;
}

} // namespace

UserPermission::UserPermission(Options options)
    : options_(std::move(options))
{
}

Status UserPermission::remembered() const
{
    auto status = static_cast<Status>(NSUserDefaults::standardUserDefaults()->integerForKey(options_.key));
    switch (status) {
    case Status::denied:
    case Status::authorized:
        return status;
    case Status::limited:
        if (options_.canBeLimited)
            return status;
        break;
    case Status::notDetermined:
    case Status::restricted: // nobody's choice
        break;
    }
    return Status::notDetermined;
}

Status UserPermission::status() const
{
    if (isRestricted(options_.restriction))
        return Status::restricted;
    auto own = remembered();
    if (own != Status::notDetermined || !options_.impliedBy)
        return own;
    return isGranted(options_.impliedBy->remembered()) ? Status::authorized : own;
}

void UserPermission::setStatus(Status status)
{
    precondition(status != Status::restricted, "a restriction is the administrator's to make");
    auto& settings = *NSUserDefaults::standardUserDefaults();
    if (status == Status::notDetermined)
        settings.removeObjectForKey(options_.key);
    else
        settings.setInteger(static_cast<std::int64_t>(status), options_.key);
}

void UserPermission::request(std::shared_ptr<DispatchQueue> queue, Handler handler, Question question)
{
    DispatchQueue::main()->async(
        [this, waiting = Waiting{std::move(queue), std::move(handler)},
         question = std::move(question)]() mutable { ask(std::move(waiting), question); });
}

void UserPermission::ask(Waiting waiting, const Question& question)
{
    auto known = status();
    if (known != Status::notDetermined) {
        auto queue = waiting.queue;
        return queue->async([handler = std::move(waiting.handler), known] { handler(known); });
    }
    waiting_.push_back(std::move(waiting));
    if (waiting_.size() > 1)
        return;
    question([this](Status answer) { take(answer); });
}

void UserPermission::take(Status answer)
{
    assertOnMainThread();
    auto waiting = std::exchange(waiting_, {});
    if (waiting.empty())
        return; // answered before
    if (answer != Status::notDetermined)
        setStatus(answer);
    else
        answer = Status::denied;
    for (auto& each : waiting)
        each.queue->async([handler = std::move(each.handler), answer] { handler(answer); });
}

} // namespace platform
