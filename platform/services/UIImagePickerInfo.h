// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/URL.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"

#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace platform {

// The uniform type identifiers of what pickers offer.
inline constexpr std::string_view kUTTypeImage = "public.image";
inline constexpr std::string_view kUTTypeMovie = "public.movie";

// What a picker tells of the item picked, by the keys below. Each value is there only where it makes sense.
using UIImagePickerInfoValue = std::variant<std::string, URL, UIImage, CGRect, PropertyListDictionary>;
using UIImagePickerInfo = std::map<std::string, UIImagePickerInfoValue, std::less<>>;

namespace UIImagePickerInfoKey {
inline constexpr std::string_view mediaType = "UIImagePickerControllerMediaType"; // a text: a type above
inline constexpr std::string_view imageURL =
    "UIImagePickerControllerImageURL"; // the file of a photo, edited or not
inline constexpr std::string_view mediaURL =
    "UIImagePickerControllerMediaURL"; // the file of a video, edited or not
inline constexpr std::string_view referenceURL =
    "UIImagePickerControllerReferenceURL"; // the file in the library
inline constexpr std::string_view originalImage = "UIImagePickerControllerOriginalImage"; // a photo as taken
inline constexpr std::string_view editedImage = "UIImagePickerControllerEditedImage";     // what was cut out
inline constexpr std::string_view cropRect =
    "UIImagePickerControllerCropRect"; // of that, in pixels of the original
inline constexpr std::string_view mediaMetadata =
    "UIImagePickerControllerMediaMetadata"; // a dictionary, of a photo that was just taken
} // namespace UIImagePickerInfoKey

} // namespace platform
