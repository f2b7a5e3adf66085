// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CVPixelBuffer.h"
#include "platform/foundation/Date.h"
#include "platform/foundation/Result.h"

#include <string>

namespace platform {

// What a photo says of itself: in the local time of the calendar, as Exif has it.
struct PhotoFacts {
    std::string model;  // empty: not said
    std::string date;   // "2024:05:06 07:08:09"; empty: not said
    std::string offset; // "+02:00"
    int width = 0, height = 0;
};

// A picture as JPEG, with its facts as Exif before it. AVError::encoderNotFound, outOfMemory.
Result<std::string> encodeJPEG(const CVPixelBuffer& picture, const PhotoFacts& facts);

// The local time of that moment.
PhotoFacts factsAt(const Date& date);

} // namespace platform
