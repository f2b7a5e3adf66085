// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

// What the photo library asks the user, in the language of the user's that comes first of those known here.
enum class PHPhotosText { addQuestion, accessQuestion, allow, limit, refuse };

// `program` stands in the questions. Any thread.
std::string photosText(PHPhotosText text, std::string_view program = {});

} // namespace platform
