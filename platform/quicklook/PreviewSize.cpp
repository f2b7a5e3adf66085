// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewSize.h"

#include "platform/graphics/TextColumns.h"
#include "platform/uikit/UITextView.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace platform {

namespace {

// A preview is looked at, not lived in: no larger than most of the screen, no smaller than a postcard, and as wide as
// it is without a text to ask.
constexpr CGFloat partOfScreen = 0.8;
constexpr CGSize smallest{360, 240};     // points
constexpr CGSize usual{640, 480};        // points
constexpr std::int64_t widestLine = 100; // columns that a window is made wide for; longer lines wrap
// What of the text is asked for its widest line: enough for thousands of subtitles.
constexpr std::size_t sampleSize = 64 * 1024; // bytes

std::shared_ptr<UITextView> findTextView(const std::shared_ptr<UIView>& view)
{
    if (auto found = std::dynamic_pointer_cast<UITextView>(view))
        return found;
    for (auto& subview : view->subviews()) {
        if (auto found = findTextView(subview))
            return found;
    }
    return nullptr;
}

struct SampledLines {
    std::int64_t count = 0;
    std::int64_t widest = 0; // columns
};

// Of the beginning of the text; stops when both are more than a window can use.
SampledLines sampleLines(std::string_view text, std::int64_t enoughLines)
{
    SampledLines lines;
    text = text.substr(0, sampleSize);
    while (!text.empty() && (lines.widest < widestLine || lines.count < enoughLines)) {
        auto end = std::min(text.find_first_of("\r\n"), text.size());
        // Bytes are at least as many as columns but for tabs, so most lines need no closer look.
        auto line = text.substr(0, end);
        if (static_cast<std::int64_t>(line.size()) > lines.widest
            || line.find('\t') != std::string_view::npos)
            lines.widest = std::max(lines.widest, columns(line));
        ++lines.count;
        bool isPair = text.substr(end, 2) == "\r\n";
        text.remove_prefix(std::min(end + (isPair ? 2 : 1), text.size()));
    }
    lines.widest = std::min(lines.widest, widestLine);
    return lines;
}

CGSize sizeOfText(UITextView& view, CGSize largest)
{
    auto text = view.text();
    auto insets = view.textContainerInset();
    auto lineHeight = std::max<CGFloat>(view.font().lineHeight(), 1);
    auto lines = sampleLines(text.utf8(), static_cast<std::int64_t>(largest.height / lineHeight) + 1);
    // One column more than the widest line: a width that is just enough may be rounded below it.
    auto width = static_cast<CGFloat>(lines.widest + 1) * view.font().columnWidth()
        + 2 * view.lineFragmentPadding() + insets.left + insets.right;
    width = std::clamp(std::ceil(width), smallest.width, largest.width);
    // Laying out is for texts that may be lower than the window can be; it costs more than all else here.
    auto height = static_cast<CGFloat>(lines.count) * lineHeight;
    return {width, height < largest.height ? view.sizeThatFits({width, largest.height}).height : height};
}

} // namespace

CGSize suitablePreviewSize(UIViewController& controller, const UITraitCollection& traits, CGSize screen)
{
    CGSize largest{std::max(smallest.width, std::floor(screen.width * partOfScreen)),
                   std::max(smallest.height, std::floor(screen.height * partOfScreen))};
    auto wanted = usual;
    auto shared = std::static_pointer_cast<UIViewController>(controller.shared_from_this());
    // One point high: enough to have the controller build its views, and hardly any text to shape.
    auto window = std::make_shared<UIWindow>(CGRect{{}, {largest.width, 1}});
    window->setBaseTraits(traits);
    window->setRootViewController(shared);
    window->layoutNow();
    if (auto textView = findTextView(controller.view()))
        wanted = sizeOfText(*textView, largest);
    window->setRootViewController(nullptr);
    return {std::clamp(wanted.width, smallest.width, largest.width),
            std::clamp(wanted.height, smallest.height, largest.height)};
}

} // namespace platform
