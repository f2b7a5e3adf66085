// SPDX-License-Identifier: MIT
#include "platform/uikit/TextFinder.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UITextView.h"

#include <chrono>
#include <utility>

namespace platform {

namespace {

// A slice, after which the window's events have their turn.
constexpr auto sliceLimit = std::chrono::milliseconds(5);

} // namespace

TextFinder::TextFinder() = default;

TextFinder::~TextFinder()
{
    setTextView(nullptr);
}

void TextFinder::setTextView(std::shared_ptr<UITextView> view)
{
    assertOnMainThread();
    auto former = view_.lock();
    if (former == view)
        return;
    if (former)
        former->setHighlighter({});
    work_.cancel();
    search_.reset();
    present_.reset();
    view_ = view;
    if (view && !text_.empty())
        start();
}

void TextFinder::find(std::string_view text)
{
    assertOnMainThread();
    auto view = view_.lock();
    if (text_.empty() && view) {
        auto selected = view->selectedRange(), seen = view->visibleRange();
        bool isSeen = !selected.isEmpty() && selected.start >= seen.start && selected.end <= seen.end;
        origin_ = isSeen ? selected.start : seen.start;
    }
    if (text == text_)
        return;
    text_ = text;
    work_.cancel();
    search_.reset();
    present_.reset();
    if (!view)
        return;
    if (text_.empty()) {
        view->setHighlighter({});
        return tell();
    }
    start();
    auto& buffer = view->buffer();
    auto from = std::min(origin_, buffer.end());
    auto match = search_->first({from, buffer.end()});
    if (!match && from > Utf8Offset{0})
        match = search_->first({{0}, buffer.end()});
    if (match)
        show(*match);
    tell();
}

void TextFinder::start()
{
    auto view = view_.lock();
    search_ = std::make_unique<TextSearch>(view->buffer(), TextPattern(text_));
    searchedSize_ = view->buffer().size();
    view->setHighlighter(
        [this](TextRange seen) { return search_ ? search_->all(seen) : std::vector<TextRange>(); });
    schedule();
}

void TextFinder::step(Direction direction)
{
    assertOnMainThread();
    auto view = view_.lock();
    if (!view || text_.empty())
        return;
    if (!search_ || view->buffer().size() != searchedSize_)
        start();
    auto& buffer = view->buffer();
    auto selected = view->selectedRange();
    auto seen = view->visibleRange();
    if (selected.isEmpty()) // the caret of a text that is only read is nowhere
        selected = {seen.start, seen.start};
    std::optional<TextRange> match;
    if (direction == Direction::forward) {
        match = search_->first({selected.end, buffer.end()});
        if (!match)
            match = search_->first({{0}, buffer.end()});
    } else {
        match = search_->lastBefore(selected.start);
        if (!match)
            match = search_->lastBefore(buffer.end());
    }
    if (match)
        show(*match);
    tell();
}

void TextFinder::show(TextRange match)
{
    auto view = view_.lock();
    present_ = match;
    origin_ = match.start;
    view->setSelectedRange(match);
    view->scrollRangeToVisible(match);
    view->setNeedsDisplay();
}

void TextFinder::schedule()
{
    auto& loop = RunLoop::main();
    work_ = loop.schedule(loop.clock().now(), [this] { countSlice(); });
}

void TextFinder::countSlice()
{
    auto view = view_.lock();
    if (!view || !search_)
        return;
    if (view->buffer().size() != searchedSize_) // edited meanwhile
        return start();
    auto& clock = RunLoop::main().clock();
    auto end = clock.now() + sliceLimit;
    bool isUnderWay = true;
    while ((isUnderWay = search_->countOn()) && clock.now() < end) { }
    if (isUnderWay)
        schedule();
    tell();
}

void TextFinder::tell()
{
    if (onChange)
        onChange();
}

TextFinder::Status TextFinder::status() const
{
    Status status;
    if (!search_ || view_.expired())
        return {.count = 0, .present = 0, .isComplete = true};
    status.count = search_->count();
    status.isComplete = search_->isComplete();
    if (present_ && status.isComplete)
        status.present = search_->countBefore(present_->start) + 1;
    return status;
}

} // namespace platform
