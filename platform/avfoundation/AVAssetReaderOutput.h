// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"
#include "platform/avfoundation/CMSampleBuffer.h"
#include "platform/avfoundation/Forward.h"
#include "platform/foundation/NSObject.h"

#include <memory>

namespace platform {

// Where a reader's samples come out.
class AVAssetReaderOutput : public NSObject {
public:
    ~AVAssetReaderOutput() override;

    virtual AVMediaType mediaType() const = 0;

    // The next samples; null at the end, after a failure and after a cancellation: the reader's status tells which.
    // Blocks while they are read and decoded. One thread at a time; the thread may change. Null before the reader
    // was started.
    virtual std::shared_ptr<const CMSampleBuffer> copyNextSampleBuffer() = 0;
};

} // namespace platform
