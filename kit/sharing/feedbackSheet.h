// SPDX-License-Identifier: MIT
#pragma once

#include "kit/sharing/FeedbackSheetItem.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/Color.h"
#include "platform/swiftui/State.h"
#include "platform/swiftui/actionSheet.h"
#include "platform/swiftui/layered.h"

#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace zelk {

// What a choice does: asks the desktop to open the program that the message is written in, or calls the action. False: the
// message is mail, nothing here writes mail, and nothing was opened. What cannot be opened is a line in the log. Main thread
// only.
bool performFeedback(const FeedbackSheetItem& item);

namespace detail {
platform::ActionSheet feedbackActionSheet(const std::string& title,
                                          const std::vector<FeedbackSheetItem>& items,
                                          const platform::Binding<bool>& lacksMailAccount);
platform::Alert noMailAccountAlert();
} // namespace detail

struct FeedbackSheetModifier {
    platform::Binding<bool> isPresented;
    std::string title;
    std::vector<FeedbackSheetItem> items;
    platform::State<bool> _lacksMailAccount = false;

    auto dynamicProperties() { return std::tie(isPresented, _lacksMailAccount); }
    template <platform::View Content>
    auto body(const Content& content) const
    {
        // Carriers of their own, so that the view keeps whatever alerts it has.
        auto sheet =
            platform::Color{platform::UIColor::clear()}
            | platform::actionSheet(
                isPresented, [title = title, items = items, lacksMailAccount = _lacksMailAccount.binding()] {
                    return detail::feedbackActionSheet(title, items, lacksMailAccount);
                });
        auto alert = platform::Color{platform::UIColor::clear()}
            | platform::alert(_lacksMailAccount.binding(), [] { return detail::noMailAccountAlert(); });
        return content | platform::background(std::move(sheet)) | platform::background(std::move(alert));
    }
};

// Offers ways to write to the program's makers while `isPresented` holds true: an action sheet with one button an item, in
// their order, and one that cancels. A message begins with what its receiver needs to know of the program; where no
// program writes mail an alert says so instead.
inline auto feedbackSheet(platform::Binding<bool> isPresented, std::string title,
                          std::vector<FeedbackSheetItem> items)
{
    return FeedbackSheetModifier{std::move(isPresented), std::move(title), std::move(items)};
}

} // namespace zelk
