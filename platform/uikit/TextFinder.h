// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/uikit/text/TextSearch.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

class UITextView;

// Finds what a person looks for in the text of a text view: tints all matches, selects and shows one of them, and counts
// all, in slices of a few milliseconds between which the window answers. Main thread only.
class TextFinder {
public:
    TextFinder();
    TextFinder(const TextFinder&) = delete; // work under way has its address
    TextFinder& operator=(const TextFinder&) = delete;
    ~TextFinder();

    // In which view; null: none. What is looked for stays, and is counted anew.
    void setTextView(std::shared_ptr<UITextView> view);
    // Looks for another text, from what is seen on; empty: for nothing. Shows the first match from there.
    void find(std::string_view text);
    const std::string& text() const { return text_; }
    // To the next match after the selection, or the one before it; around the ends of the text.
    void goToNext() { step(Direction::forward); }
    void goToPrevious() { step(Direction::backward); }

    struct Status {
        std::int64_t count = 0; // so far
        std::int64_t present =
            0; // the number of the one that is selected, from 1; 0: none is, or it is not known yet
        bool isComplete = false;
        bool operator==(const Status&) const = default;
    };
    Status status() const;
    // The status is another one. Called between events and from the calls above.
    std::function<void()> onChange;

private:
    enum class Direction { forward, backward };
    void start();
    void step(Direction direction);
    void show(TextRange match);
    void countSlice();
    void schedule();
    void tell();

    std::weak_ptr<UITextView> view_;
    std::string text_;
    std::unique_ptr<TextSearch> search_; // of the view's text; null while nothing is looked for
    std::int64_t searchedSize_ = 0;      // of the text, to see that somebody edited it
    std::optional<TextRange> present_;
    Utf8Offset origin_; // where looking began, so that each letter typed looks from the same place
    Token work_;
};

} // namespace platform
