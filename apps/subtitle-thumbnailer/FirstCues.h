// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace thumbnail {

// What a thumbnail shows of one cue.
struct Cue {
    std::string time; // when it begins, as the file has it, without the fraction
    std::string text; // its lines without marks of style; speakers stay on lines of their own
};

// The cues in the beginning of a text, at most `most`, leaving out those without text. Lines beyond what a thumbnail can
// show are cut. Empty when the text has no line of times.
std::vector<Cue> firstCues(std::string_view text, std::size_t most);

} // namespace thumbnail
