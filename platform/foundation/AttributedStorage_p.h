// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSAttributedString.h"
#include "platform/foundation/Utf16Index_p.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// A text and its runs. Runs cover the text without gaps, none is empty, and neighbours differ. Changed only
// while one styled text holds it.
struct NSAttributedString::Storage {
    struct Run {
        std::int64_t end; // UTF-16 units
        TextAttributes attributes;
        bool operator==(const Run&) const = default;
    };
    struct ByteSpan {
        std::size_t begin;
        std::size_t end;
        std::size_t size() const { return end - begin; }
    };

    Storage() = default;
    Storage(String text, TextAttributes attributes);

    std::string_view text() const { return isOwned_ ? std::string_view(owned_) : shared_.utf8(); }
    std::int64_t length() const { return index_.unitCount(); }
    const std::vector<Run>& runs() const { return runs_; }
    // The number of the run that the unit after `at` is in.
    std::size_t runAt(std::int64_t at) const;
    std::int64_t startOf(std::size_t run) const { return run == 0 ? 0 : runs_[run - 1].end; }

    // Stop the process unless the range or offset is in the text.
    void requireRange(NSRange range) const;
    void requireUnit(Utf16Offset at) const;
    // Stops the process also where a character would be cut.
    ByteSpan bytesOf(NSRange range) const;
    // The pieces of runs in a checked range.
    std::vector<Run> runsIn(NSRange range) const;

    // Requires: a checked range; `inserted` runs end where `text` does.
    void replace(NSRange range, std::string_view text, std::vector<Run> inserted);
    // The first of the runs from `range.start()` on, and the one past `range.end()`: runs are cut there.
    std::pair<std::size_t, std::size_t> isolate(NSRange range);
    void setRunAttributes(std::size_t run, TextAttributes attributes)
    {
        runs_[run].attributes = std::move(attributes);
    }
    // Makes neighbours with equal attributes one, from the run before `first` to the one at `last`.
    void coalesce(std::size_t first, std::size_t last);

private:
    std::size_t cutAt(std::int64_t at);
    void replaceText(ByteSpan bytes, std::string_view text);

    String shared_; // the text while nobody has changed it
    std::string owned_;
    bool isOwned_ = false;
    Utf16Index index_;
    std::vector<Run> runs_;
};

} // namespace platform
