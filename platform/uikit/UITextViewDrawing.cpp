// SPDX-License-Identifier: MIT
// What a text view paints: selection, text, composition, caret.
#include "platform/uikit/UITextView.h"

#include "platform/dispatch/Timer.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace platform {

namespace {

using namespace std::chrono_literals;
constexpr auto blinkInterval = 530ms; // lit, and unlit
constexpr CGFloat caretWidth = 2;     // points
constexpr double selectionAlpha = 0.28;

UIColor highlightColor(bool isPresent)
{
    auto& yellow = UIColor::systemYellow();
    auto& orange = UIColor::systemOrange();
    // With more contrast the text's is what counts: at least 5 to 1 on each.
    return isPresent ? UIColor::dynamic(yellow.withAlphaComponent(0.9), orange.withAlphaComponent(0.65),
                                        UIColor(1, 0.84, 0), UIColor(0.55, 0.36, 0))
                     : UIColor::dynamic(yellow.withAlphaComponent(0.4), yellow.withAlphaComponent(0.28),
                                        UIColor(1, 0.95, 0.6), UIColor(0.32, 0.26, 0));
}

} // namespace

void UITextView::draw(CGContext& context, CGRect dirty)
{
    auto& at = viewport();
    auto origin = bounds().origin;
    drawHighlights(context, origin);
    drawSelection(context, origin);
    const auto& color = textColor_ ? *textColor_ : UIColor::label();
    for (auto& visible : at.visible()) {
        auto frame = visible.frame(bounds().size.width).offsetBy(origin.x, origin.y);
        // Ink may stand out of its line by about as much as the line is high.
        if (frame.maxY() + at.lineHeight() >= dirty.minY() && frame.minY() - at.lineHeight() <= dirty.maxY())
            visible.shaped->layout.draw(context, visible.origin + origin, color);
    }
    drawComposition(context, origin);
    if (showsCaret() && isCaretLit_) {
        if (auto caret = caretRect(selection_.head))
            context.fill(CGRect::make(std::floor(caret->minX()), caret->minY(), caretWidth, caret->height()),
                         tintColor());
    }
}

void UITextView::drawHighlights(CGContext& context, CGPoint origin) const
{
    if (!highlighter_)
        return;
    auto selected = selection_.range();
    for (auto range : highlighter_(viewport().visibleRange())) {
        auto color = highlightColor(range == selected);
        for (auto& rect : viewport().selectionRects(range))
            context.fill(rect.offsetBy(origin.x, origin.y), color);
    }
}

void UITextView::drawSelection(CGContext& context, CGPoint origin) const
{
    if (selection_.isEmpty())
        return;
    auto color = isFirstResponder() ? tintColor() : UIColor::systemGray();
    for (auto& rect : viewport().selectionRects(selection_.range()))
        context.fill(rect.offsetBy(origin.x, origin.y), color.withAlphaComponent(selectionAlpha));
}

void UITextView::drawComposition(CGContext& context, CGPoint origin) const
{
    if (!markedRange_)
        return;
    const auto& color = textColor_ ? *textColor_ : UIColor::label();
    for (auto& rect : viewport().selectionRects(*markedRange_)) {
        auto underline = CGRect::make(rect.minX(), rect.maxY() - 2, rect.width(), 1);
        context.fill(underline.offsetBy(origin.x, origin.y), color);
    }
}

bool UITextView::showsCaret() const
{
    return isEditable_ && selection_.isEmpty() && isFirstResponder();
}

void UITextView::setNeedsDisplayOfCaret()
{
    if (auto caret = caretRect(selection_.head))
        setNeedsDisplay(caret->insetBy(-caretWidth, 0));
}

void UITextView::restartBlinking()
{
    stopBlinking();
    if (!showsCaret() || !window())
        return;
    isCaretLit_ = true;
    auto weak = std::weak_ptr(sharedFrom(this));
    blink_ = Timer::scheduledTimer(blinkInterval, Timer::Repeats::yes, [weak](Timer&) {
        if (auto self = weak.lock()) {
            self->isCaretLit_ = !self->isCaretLit_;
            self->setNeedsDisplayOfCaret();
        }
    });
}

void UITextView::stopBlinking()
{
    isCaretLit_ = false;
    if (blink_)
        blink_->invalidate();
    blink_.reset();
}

} // namespace platform
