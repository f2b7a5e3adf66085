// SPDX-License-Identifier: MIT
#include "kit/ui/accessoryConfiguration.h"

#include "kit/foundation/keyWindow.h"

#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/shortened.h"

#include <algorithm>
#include <limits>

namespace zelk {

namespace {

using platform::CGFloat;
using platform::FontTextStyle;
using Style = platform::UIAlertControllerStyle;

constexpr CGFloat measuringWidth = 238;
constexpr CGFloat alertOffset = 22, sheetOffset = 11; // from the edge of the card to its text
constexpr CGFloat mostRoom = 10'000;                  // points
constexpr std::size_t mostText =
    4000; // bytes: of a longer text an alert shows the beginning, and the room after it

struct Room {
    std::size_t lineBreaks = 0;
    CGFloat height = 0;
};

// How many line breaks after `text` make it at least `height` higher.
Room makeRoom(std::string text, FontTextStyle style, CGFloat height)
{
    auto window = keyWindow(platform::UIApplication::shared());
    auto traits = window ? window->traitCollection() : platform::UITraitCollection();
    platform::UILabel label;
    label.setNumberOfLines(0);
    label.setFont(
        platform::UIFont::preferredFont(style, traits.preferredContentSizeCategory, traits.textScale));
    auto measure = [&] {
        label.setText(text);
        return label.sizeThatFits({measuringWidth, std::numeric_limits<CGFloat>::max()}).height;
    };
    auto base = measure();
    Room room;
    while (room.height < height) {
        text += '\n';
        ++room.lineBreaks;
        auto grown = measure() - base;
        // A line without a height would be added for ever.
        platform::precondition(grown > room.height || room.lineBreaks == 1, "a line break adds no height");
        room.height = grown;
    }
    return room;
}

} // namespace

AccessoryViewAlertController::Configuration
accessoryConfiguration(const AccessoryViewAlertController::Options& options)
{
    auto isAlert = options.preferredStyle == Style::alert;
    auto isTop = options.accessoryViewPosition == AccessoryViewPosition::top;
    auto size = options.accessoryView->bounds().size;
    auto title = platform::shortened(options.title, mostText);
    auto message = options.message;
    if (message)
        message = platform::shortened(*message, mostText);

    auto measuresTitle = isTop || !message;
    auto style = !measuresTitle ? FontTextStyle::footnote
        : isAlert               ? FontTextStyle::headline
                                : FontTextStyle::callout;
    auto height = size.height > 0 ? std::min(size.height, mostRoom) : 0;
    auto room = makeRoom(measuresTitle ? title : *message, style, height);
    std::string padding(room.lineBreaks, '\n');

    AccessoryViewAlertController::Configuration result{
        .accessoryViewPosition = options.accessoryViewPosition,
        .accessoryViewSize = size,
        .adjustedTitle = isTop ? padding.append(title) : title,
        .adjustedMessage = message,
        .accessoryViewYOffset = room.height * 0.5 + (isAlert ? alertOffset : sheetOffset),
    };
    if (!isTop)
        (message ? *result.adjustedMessage : result.adjustedTitle).append(padding);
    return result;
}

} // namespace zelk
