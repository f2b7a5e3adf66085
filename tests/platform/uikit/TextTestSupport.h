// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/String.h"
#include "platform/graphics/TextLayout.h"
#include "platform/uikit/text/TextBuffer.h"

#include <cstdint>
#include <string>
#include <vector>

// Texts and slow, obvious answers for the tests of the text view.
namespace texttests {

// Where each line begins, found byte by byte.
inline std::vector<std::int64_t> lineStarts(std::string_view text)
{
    std::vector<std::int64_t> starts{0};
    for (std::size_t at = 0; at < text.size(); ++at) {
        bool endsLine =
            text[at] == '\n' || (text[at] == '\r' && (at + 1 == text.size() || text[at + 1] != '\n'));
        if (endsLine)
            starts.push_back(static_cast<std::int64_t>(at) + 1);
    }
    return starts;
}

// Cues as a subtitle file has them, at least `bytes` of them.
inline std::string subtitles(std::size_t bytes, std::string_view lineEnd = "\n")
{
    std::string text;
    for (int cue = 1; text.size() < bytes; ++cue) {
        auto end = std::string(lineEnd);
        text += std::to_string(cue) + end + "00:00:01,000 --> 00:00:02,500" + end;
        text += "What I say in cue " + std::to_string(cue % 1000 * 7919 % 1000) + end;
        if (cue % 3 == 0)
            text += "takes another line" + end;
        text += end;
    }
    return text;
}

inline std::string repeated(std::string_view part, std::size_t times)
{
    std::string text;
    for (std::size_t i = 0; i < times; ++i)
        text += part;
    return text;
}

inline platform::TextStyle monospaced(double size = 13)
{
    return {.font = platform::UIFont::monospacedSystemFont(size)};
}

// Numbers that look random and are the same in every run.
class Dice {
public:
    explicit Dice(std::uint64_t seed)
        : state_(seed * 2 + 1)
    {
    }
    std::int64_t below(std::int64_t limit)
    {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return limit <= 0 ? 0 : static_cast<std::int64_t>((state_ >> 33) % static_cast<std::uint64_t>(limit));
    }

private:
    std::uint64_t state_;
};

} // namespace texttests
