// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace thumbnail {

// Empty when `output` may become a picture: there is nothing of the name, or a regular file that is not `input`. Else why not.
std::string whyNotWritable(const std::string& output, const std::string& input);

// Writes `bytes` beside `output` and renames. Gives why it could not; empty when it could. Nothing is left behind.
std::string writePicture(const std::string& output, std::string_view bytes);

// From now on the process ends after `limit` with status 1, one line on standard error and without a file begun by
// writePicture: whoever waits for a thumbnail has no limit of its own. Call once.
void limitTime(std::chrono::seconds limit);

} // namespace thumbnail
