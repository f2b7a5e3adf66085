// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIPasteboard.h"
#include "platform/uikit/UITextView.h"
#include "tests/platform/uikit/TextTestSupport.h"
#include "tests/support/harness/ViewHarness.h"

#include <memory>
#include <string>

namespace texttests {

enum class Editing { no, yes };

// A text view that fills a window and has the keyboard.
struct ShownTextView {
    explicit ShownTextView(std::string text, Editing editing = Editing::no,
                           platform::CGSize size = {400, 300})
        : hands(size)
    {
        view->setFont(platform::UIFont::monospacedSystemFont(13));
        view->setEditable(editing == Editing::yes);
        view->setText(platform::String(text));
        hands.show(view);
        view->becomeFirstResponder();
        platform::UIPasteboard::general().clear();
        platform::UIPasteboard::primarySelection().clear();
    }
    ~ShownTextView()
    {
        platform::UIPasteboard::general().clear();
        platform::UIPasteboard::primarySelection().clear();
    }

    // The middle of a character's left edge.
    platform::CGPoint before(std::int64_t offset) const
    {
        auto caret = view->caretRect({offset});
        return caret ? platform::CGPoint{caret->midX() + 1, caret->midY()} : platform::CGPoint{-1, -1};
    }
    std::string text() const { return view->text().toStdString(); }
    std::string selected() const
    {
        auto range = view->selectedRange();
        return text().substr(static_cast<std::size_t>(range.start.value),
                             static_cast<std::size_t>(range.size()));
    }
    static std::string pasteboard(platform::UIPasteboard& board)
    {
        auto string = board.string();
        return string ? string->toStdString() : std::string("(nothing)");
    }
    static std::string clipboard() { return pasteboard(platform::UIPasteboard::general()); }
    static std::string primary() { return pasteboard(platform::UIPasteboard::primarySelection()); }

    harness::ViewHarness hands;
    std::shared_ptr<platform::UITextView> view = std::make_shared<platform::UITextView>();
};

inline constexpr auto shift = platform::UIKeyModifierFlags::shift;
inline constexpr auto control = platform::UIKeyModifierFlags::control;

} // namespace texttests
