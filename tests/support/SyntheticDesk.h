// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureAuthorization.h"
#include "platform/avfoundation/SyntheticCapture.h"
#include "tests/support/MediaInspection.h"
#include "tests/support/TemporaryDirectory.h"

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tests {

// A desk for one test, with cameras that give pictures on demand and a microphone, all of which may be used.
class SyntheticDesk {
public:
    using Options = platform::SyntheticCapture::Options;

    explicit SyntheticDesk(const std::function<void(Options&)>& change = {})
        : hardware(std::make_shared<platform::SyntheticCapture>(options(change)))
    {
        keepSettings();
        platform::CaptureHardware::replace(hardware);
        allow(platform::AVAuthorizationStatus::authorized);
    }
    ~SyntheticDesk()
    {
        allow(platform::AVAuthorizationStatus::notDetermined);
        platform::AVCaptureAuthorization::shared().setQuestion(nullptr);
        platform::CaptureHardware::replace(nullptr);
    }
    SyntheticDesk(const SyntheticDesk&) = delete; // it is the process's
    SyntheticDesk& operator=(const SyntheticDesk&) = delete;

    void allow(platform::AVAuthorizationStatus status)
    {
        for (auto each : {platform::AVMediaType::video, platform::AVMediaType::audio})
            platform::AVCaptureAuthorization::shared().setStatus(status, each);
    }

    const std::shared_ptr<platform::SyntheticCapture> hardware;

private:
    // What the user allows is a setting, which all processes watch: tests that run at the same time have their own.
    static void keepSettings()
    {
        static const TemporaryDirectory folder;
        ::setenv("XDG_CONFIG_HOME", folder.path().c_str(), 0);
    }
    static Options options(const std::function<void(Options&)>& change)
    {
        Options options{.pace = platform::SyntheticCapture::Pace::onDemand, .width = 320, .height = 180};
        if (change)
            change(options);
        return options;
    }
};

// Which pictures of a synthetic camera a movie holds, in its order.
inline std::vector<int> numbersIn(const Inspection& movie)
{
    std::vector<int> numbers;
    const auto& video = movie.video();
    const auto width = video.parameters.width, height = video.parameters.height;
    for (const auto& picture : video.pictures)
        numbers.push_back(
            platform::SyntheticCapture::numberOf(reinterpret_cast<const std::byte*>(picture.planes.data()),
                                                 static_cast<std::size_t>(width), width, height));
    return numbers;
}

} // namespace tests
