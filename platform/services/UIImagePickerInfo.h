// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"

#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace platform {

// The uniform type identifiers of what pickers offer.
inline constexpr std::string_view kUTTypeImage = "public.image";
inline constexpr std::string_view kUTTypeMovie = "public.movie";

// What a picker tells of the item picked, by the keys below. Each value is there only where it makes sense.
using UIImagePickerInfoValue = std::variant<std::string, URL>;
using UIImagePickerInfo = std::map<std::string, UIImagePickerInfoValue, std::less<>>;

namespace UIImagePickerInfoKey {
inline constexpr std::string_view mediaType = "UIImagePickerControllerMediaType"; // a text: a type above
inline constexpr std::string_view imageURL = "UIImagePickerControllerImageURL";   // the file of a photo
inline constexpr std::string_view mediaURL =
    "UIImagePickerControllerMediaURL"; // the file of a video, edited or not
inline constexpr std::string_view referenceURL =
    "UIImagePickerControllerReferenceURL"; // the file in the library
} // namespace UIImagePickerInfoKey

} // namespace platform
