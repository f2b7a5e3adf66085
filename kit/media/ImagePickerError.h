// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSError.h"
#include "platform/services/UIImagePickerInfo.h"

namespace zelk {

// The picker told of an item, but of no file. `userInfo` is all that it told.
struct ImagePickerError {
    platform::UIImagePickerInfo userInfo;

    static ImagePickerError missingMediaURL(platform::UIImagePickerInfo info) { return {std::move(info)}; }
    bool operator==(const ImagePickerError&) const = default;
};

// A domain named after the type; the code is 0.
platform::NSError nsError(const ImagePickerError& error);

} // namespace zelk
