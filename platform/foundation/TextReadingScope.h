// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextDecoding.h"
#include "platform/foundation/URL.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace platform {

// While it lives, String::contentsOf of one file on this thread reads in the encoding that the scope's owner wants, and
// tells the scope what it learned: for a program that shows what another part of it reads, which names no encoding.
// Scopes nest; the innermost of a file counts. Made and destroyed on one thread.
class TextReadingScope {
public:
    struct Report {
        TextEncoding encoding = TextEncoding::utf8;
        TextEvidence evidence = TextEvidence::wellFormed;
        std::size_t replacements = 0;
        std::vector<TextEncoding> candidates;
    };

    // Without an encoding it is detected, as ever.
    explicit TextReadingScope(URL url, std::optional<TextEncoding> encoding = {});
    TextReadingScope(const TextReadingScope&) = delete; // the thread knows its address
    TextReadingScope& operator=(const TextReadingScope&) = delete;
    ~TextReadingScope();

    // Of the last reading that went well; nothing before.
    const std::optional<Report>& report() const { return report_; }

    // Reads as String::contentsOf does, minding the scopes of this thread.
    [[nodiscard]] static Result<String> read(const URL& url);

private:
    URL url_;
    std::optional<TextEncoding> encoding_;
    std::optional<Report> report_;
    TextReadingScope* outer_;
};

} // namespace platform
