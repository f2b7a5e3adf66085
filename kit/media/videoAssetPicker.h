// SPDX-License-Identifier: MIT
#pragma once

#include "kit/media/AssetPickerScreen.h"

#include "platform/swiftui/sheet.h"

#include <functional>
#include <optional>
#include <utility>

namespace zelk {

// Presents a screen to pick a video on while `item` says from where; clearing it dismisses the screen, and the screen clears
// it when it goes: `page | videoAssetPicker(kind, {.allowsEditing = true}, [](auto video) { ... })`.
inline auto videoAssetPicker(platform::Binding<std::optional<AssetPickerKind>> item,
                             AssetPickerOptions options,
                             std::function<void(platform::Result<platform::URL>)> didPickItem)
{
    return platform::fullScreenCover(
        std::move(item), [options, didPickItem = std::move(didPickItem)](const AssetPickerKind& kind) {
            return AssetPickerScreen{kind, std::string(platform::kUTTypeMovie), options, didPickItem};
        });
}

} // namespace zelk
