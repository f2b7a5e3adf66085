// SPDX-License-Identifier: MIT
#include "apps/subtitle-thumbnailer/FirstCues.h"

#include "platform/quicklook/looksLikeTimedText.h"

#include <algorithm>
#include <optional>

namespace thumbnail {

namespace {

constexpr std::size_t longestText = 600; // bytes

std::string_view trimmed(std::string_view text)
{
    auto begin = text.find_first_not_of(" \t\f\v");
    auto end = text.find_last_not_of(" \t\f\v");
    return begin == std::string_view::npos ? std::string_view() : text.substr(begin, end - begin + 1);
}

// Takes the first line away from `text`.
std::string_view takeLine(std::string_view& text)
{
    auto end = text.find_first_of("\r\n");
    auto line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (end != std::string_view::npos && line.data()[end] == '\r' && text.starts_with('\n'))
        text.remove_prefix(1);
    return line;
}

// The size of a mark of style at the beginning: "<i>", "</font>", "{\an8}"; 0 when there is none.
std::size_t markSize(std::string_view text)
{
    auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    if (text.starts_with("{\\")) {
        auto end = text.find('}');
        return end == std::string_view::npos ? 0 : end + 1;
    }
    auto name = text.substr(1);
    if (name.starts_with('/'))
        name.remove_prefix(1);
    if (!text.starts_with('<') || name.empty() || !isLetter(name[0]))
        return 0;
    auto end = text.find('>');
    return end == std::string_view::npos || end > 80 ? 0 : end + 1;
}

std::string withoutMarks(std::string_view line)
{
    std::string plain;
    while (!line.empty()) {
        auto next = std::min(line.find_first_of("<{"), line.size());
        plain += line.substr(0, next);
        line.remove_prefix(next);
        if (auto size = line.empty() ? 0 : markSize(line)) {
            line.remove_prefix(size);
        } else if (!line.empty()) {
            plain += line.front();
            line.remove_prefix(1);
        }
    }
    return std::string(trimmed(plain));
}

// "00:01:02,345 --> ..." gives "00:01:02".
std::string beginningIn(std::string_view timeLine)
{
    timeLine = trimmed(timeLine);
    return std::string(timeLine.substr(0, timeLine.find_first_of(",. ")));
}

bool isNumber(std::string_view line)
{
    return !line.empty() && std::ranges::all_of(line, [](char c) { return c >= '0' && c <= '9'; });
}

void addLine(std::string& text, const std::string& line)
{
    if (line.empty() || text.size() >= longestText)
        return;
    bool isSpeaker = line.starts_with('-') || line.starts_with("\u2013") || line.starts_with("\u2014");
    if (!text.empty())
        text += isSpeaker ? '\n' : ' ';
    text += line;
    if (text.size() <= longestText)
        return;
    auto end = longestText;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    text.resize(end);
}

} // namespace

std::vector<Cue> firstCues(std::string_view text, std::size_t most)
{
    std::vector<Cue> cues;
    std::optional<Cue> cue;
    std::string held; // a number may belong to the next cue, when no empty line is between
    auto finish = [&] {
        if (cue && !cue->text.empty())
            cues.push_back(std::move(*cue));
        cue.reset();
        held.clear();
    };
    while (!text.empty() && cues.size() < most) {
        auto line = trimmed(takeLine(text));
        if (platform::looksLikeTimedText(line)) {
            finish();
            cue = Cue{.time = beginningIn(line), .text = {}};
        } else if (line.empty()) {
            if (cue)
                addLine(cue->text, held);
            finish();
        } else if (cue) {
            addLine(cue->text, held);
            held.clear();
            if (isNumber(line))
                held = line;
            else
                addLine(cue->text, withoutMarks(line));
        }
    }
    if (cue)
        addLine(cue->text, held);
    if (cues.size() < most)
        finish();
    return cues;
}

} // namespace thumbnail
