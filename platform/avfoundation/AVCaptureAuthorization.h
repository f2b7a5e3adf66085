// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureDevice.h"
#include "platform/dispatch/UserPermission.h"
#include "platform/foundation/NSUserDefaults.h"

#include <functional>
#include <memory>

namespace platform {

// Who asks the user whether the program may see or hear: an alert (platform/services/captureAlertQuestion.h), or what a test
// puts in its place. Main thread only.
class AVCaptureQuestion {
public:
    using Answer = std::function<void(AVAuthorizationStatus)>;

    virtual ~AVCaptureQuestion() = default;
    // Calls `answer` once, at once or later: authorized or denied; or notDetermined when nobody could be asked or the user
    // gave no answer, which is not remembered.
    virtual void ask(AVMediaType mediaType, Answer answer) = 0;
};

// What the user allowed this program, kept among its settings under "AVCaptureDevice.video" and "AVCaptureDevice.audio"; the
// administrator's words are CameraRestricted and MicrophoneRestricted. See UserPermission.h.
class AVCaptureAuthorization {
public:
    static AVCaptureAuthorization& shared();

    // Of other media than pictures and sound: restricted. Any thread.
    AVAuthorizationStatus status(AVMediaType mediaType) const;
    // What the user chose elsewhere. Requires: pictures or sound; not restricted. Any thread.
    void setStatus(AVAuthorizationStatus status, AVMediaType mediaType);
    // `handler` is called once, later, on the main thread. Without a question nobody can be asked.
    void request(AVMediaType mediaType, std::function<void(AVAuthorizationStatus)> handler);

    // Calls back on the main thread after the user allowed or refused something, in whatever process. What the administrator
    // does is not told. Any thread.
    NSUserDefaults::Observation observe(std::function<void()> onChange);

    // Main thread only.
    bool hasQuestion() const { return question_ != nullptr; }
    void setQuestion(std::shared_ptr<AVCaptureQuestion> question);

private:
    AVCaptureAuthorization();

    UserPermission camera_, microphone_;
    std::shared_ptr<AVCaptureQuestion> question_; // main thread only
};

} // namespace platform
