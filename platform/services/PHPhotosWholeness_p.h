// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Whether a file of a photo or a video goes to its end, told from how it is laid out. Decoders take one that is cut off for
// a picture with a grey part, or a film that stops; in a library it would stand for a whole one for ever. What follows the
// end is nobody's business. Any thread; reads the file.

// `format` is "jpeg", "png", "gif", "webp" or "bmp"; nobody knows of others, and they count as whole.
bool isWholePicture(const std::string& path, std::string_view format);

// QuickTime, MPEG-4, HEIF and the like.
bool isWholeISOMedia(const std::string& path);
// Matroska, AVI and Ogg; nobody knows of others, and they count as whole.
bool isWholeVideo(const std::string& path);

} // namespace platform
