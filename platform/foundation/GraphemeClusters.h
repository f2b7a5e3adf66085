// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

namespace platform {

// A walk over the characters of a text as a person counts them: a letter with its accents, a flag, a family of
// emoji, a carriage return with its line feed. From the beginning to the end, at about the cost of reading it.
//
// For whole texts. A caret, which asks for the boundaries around one place of a
// gigabyte and must agree with the library that shapes the line, has platform/graphics/TextBoundaries.h.
class GraphemeClusters {
public:
    // Requires: `utf8` is well-formed and outlives this.
    explicit GraphemeClusters(std::string_view utf8);
    GraphemeClusters(GraphemeClusters&&) noexcept;
    ~GraphemeClusters();

    // The next character, a piece of the text; nothing at the end.
    std::optional<std::string_view> next();

private:
    class Breaker; // made when the first character beyond ASCII is met

    std::size_t endOfCluster();

    std::string_view text_;
    std::size_t at_ = 0;
    std::unique_ptr<Breaker> breaker_;
};

} // namespace platform
