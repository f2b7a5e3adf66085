// SPDX-License-Identifier: MIT
#include "platform/quicklook/messageLine.h"

#include "platform/foundation/UTF8.h"

#include <cstdio>

namespace platform {

namespace {

// How many bytes at the start of well-formed `text` are a character that may not reach a terminal; 0 for all others.
std::size_t harmfulCharacter(std::string_view text)
{
    auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x20 || first == 0x7F)
        return 1;
    auto second = text.size() > 1 ? static_cast<unsigned char>(text[1]) : 0;
    if (first == 0xC2 && second < 0xA0)
        return 2; // U+0080...U+009F
    auto third = text.size() > 2 ? static_cast<unsigned char>(text[2]) : 0;
    if (first == 0xE2 && second == 0x80 && third >= 0xA8 && third <= 0xAE)
        return 3; // U+2028...U+202E: line and paragraph separator, embeddings and overrides
    if (first == 0xE2 && second == 0x81 && third >= 0xA6 && third <= 0xA9)
        return 3; // U+2066...U+2069: isolates
    return 0;
}

} // namespace

std::string messageLine(std::string_view message)
{
    auto repaired = repairedUTF8(message);
    std::string line;
    std::string_view rest = repaired;
    while (!rest.empty()) {
        auto harmful = harmfulCharacter(rest);
        line += harmful > 0 ? '?' : rest[0];
        rest.remove_prefix(harmful > 0 ? harmful : 1);
    }
    return line;
}

void printMessageLine(std::string_view message)
{
    std::fprintf(stderr, "%s\n", messageLine(message).c_str());
}

} // namespace platform
