// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosAuthorization.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/foundation/Precondition.h"

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

namespace {

std::string_view keyOf(PHAccessLevel level)
{
    return level == PHAccessLevel::addOnly ? "PHPhotoLibrary.addOnly" : "PHPhotoLibrary.readWrite";
}

bool isRestricted()
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
        auto found = list->find("PhotoLibraryRestricted");
        if (const auto* value = found == list->end() ? nullptr : found->second.as<bool>())
            return *value;
    }
    return false;
}

PHAuthorizationStatus remembered(PHAccessLevel level)
{
    auto status = static_cast<PHAuthorizationStatus>(
        NSUserDefaults::standardUserDefaults()->integerForKey(keyOf(level)));
    switch (status) {
    case PHAuthorizationStatus::denied:
    case PHAuthorizationStatus::authorized:
        return status;
    case PHAuthorizationStatus::limited:
        if (level == PHAccessLevel::readWrite)
            return status;
        break;
    case PHAuthorizationStatus::notDetermined:
    case PHAuthorizationStatus::restricted: // nobody's choice
        break;
    }
    return PHAuthorizationStatus::notDetermined;
}

} // namespace

PHPhotosAuthorization& PHPhotosAuthorization::shared()
{
    static auto& authorization = *new PHPhotosAuthorization; // queues may ask until the process ends
    return authorization;
}

PHPhotosAuthorization::PHPhotosAuthorization() = default;

PHAuthorizationStatus PHPhotosAuthorization::status(PHAccessLevel level) const
{
    if (isRestricted())
        return PHAuthorizationStatus::restricted;
    auto own = remembered(level);
    if (own != PHAuthorizationStatus::notDetermined || level == PHAccessLevel::readWrite)
        return own;
    auto reading = remembered(PHAccessLevel::readWrite);
    auto mayRead = reading == PHAuthorizationStatus::authorized || reading == PHAuthorizationStatus::limited;
    return mayRead ? PHAuthorizationStatus::authorized : own;
}

void PHPhotosAuthorization::setStatus(PHAuthorizationStatus status, PHAccessLevel level)
{
    precondition(status != PHAuthorizationStatus::restricted, "a restriction is the administrator's to make");
    auto& settings = *NSUserDefaults::standardUserDefaults();
    if (status == PHAuthorizationStatus::notDetermined)
        settings.removeObjectForKey(keyOf(level));
    else
        settings.setInteger(static_cast<std::int64_t>(status), keyOf(level));
}

void PHPhotosAuthorization::setQuestion(std::shared_ptr<PHPhotosQuestion> question)
{
    assertOnMainThread();
    question_ = std::move(question);
}

void PHPhotosAuthorization::request(PHAccessLevel level, std::shared_ptr<DispatchQueue> queue,
                                    Handler handler)
{
    DispatchQueue::main()->async(
        [this, level, waiting = Waiting{std::move(queue), std::move(handler)}]() mutable {
            ask(level, std::move(waiting));
        });
}

void PHPhotosAuthorization::ask(PHAccessLevel level, Waiting waiting)
{
    auto known = status(level);
    if (known != PHAuthorizationStatus::notDetermined) {
        auto queue = waiting.queue;
        return queue->async([handler = std::move(waiting.handler), known] { handler(known); });
    }
    auto [entry, isNew] = waiting_.try_emplace(level);
    entry->second.push_back(std::move(waiting));
    if (!isNew)
        return;
    auto question = question_ ? question_ : std::make_shared<PHPhotosAlertQuestion>();
    question->ask(level, [this, level](PHAuthorizationStatus status) { answer(level, status); });
}

void PHPhotosAuthorization::answer(PHAccessLevel level, PHAuthorizationStatus status)
{
    assertOnMainThread();
    auto waiting = waiting_.extract(level);
    if (waiting.empty())
        return; // answered before
    if (status != PHAuthorizationStatus::notDetermined)
        setStatus(status, level);
    else
        status = PHAuthorizationStatus::denied;
    for (auto& each : waiting.mapped())
        each.queue->async([handler = std::move(each.handler), status] { handler(status); });
}

} // namespace platform
