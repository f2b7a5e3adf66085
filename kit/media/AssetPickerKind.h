// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelk {

// Where a photo or a video is taken from; what a presentation is bound to.
class AssetPickerKind {
public:
    enum Value { cameraCapture, photoLibrary };

    constexpr AssetPickerKind(Value value)
        : value_(value)
    {
    }
    // "camera" or "photo-library"; nothing for any other text.
    static constexpr std::optional<AssetPickerKind> fromRawValue(std::string_view rawValue)
    {
        for (auto each : {cameraCapture, photoLibrary}) {
            if (AssetPickerKind(each).rawValue() == rawValue)
                return each;
        }
        return std::nullopt;
    }

    constexpr operator Value() const { return value_; }
    constexpr std::string_view rawValue() const
    {
        return value_ == cameraCapture ? "camera" : "photo-library";
    }
    std::string id() const { return std::string(rawValue()); }

private:
    Value value_;
};

} // namespace zelk
