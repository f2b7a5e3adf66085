// SPDX-License-Identifier: MIT
#pragma once

#include "kit/media/AssetPickerScreen.h"

#include "platform/swiftui/sheet.h"

#include <functional>
#include <optional>
#include <utility>

namespace zelk {

struct PhotoAssetPickerOptions {
    bool allowsEditing = false;
};

// The same as videoAssetPicker, for a photo.
inline auto photoAssetPicker(platform::Binding<std::optional<AssetPickerKind>> item,
                             PhotoAssetPickerOptions options,
                             std::function<void(platform::Result<platform::URL>)> didPickItem)
{
    return platform::fullScreenCover(
        std::move(item), [options, didPickItem = std::move(didPickItem)](const AssetPickerKind& kind) {
            return AssetPickerScreen{kind, std::string(platform::kUTTypeImage),
                                     AssetPickerOptions{.allowsEditing = options.allowsEditing}, didPickItem};
        });
}

} // namespace zelk
