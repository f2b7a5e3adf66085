// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/theme/Spacing.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::Spacing;

namespace {

// [A question]
struct Question {
    State<bool> isAsked = false;
    State<std::string> answer = std::string("Nothing was removed.");
    Environment<IsPosedKey> isPosed;

    auto dynamicProperties() { return std::tie(isAsked, answer, isPosed); }
    auto body() const
    {
        auto asked = isAsked.binding();
        auto said = answer.binding();
        auto question = [said] {
            auto remove = [said] { said.set("Everything was removed."); };
            return Alert{Text{"Remove everything?"}, Text{"This cannot be undone."},
                         Alert::Button::destructive(Text{"Remove"}, remove),
                         Alert::Button::cancel()};
        };
        return VStack{{.spacing = Spacing::_100},
                      Button{"Remove", [asked] { asked.set(true); }},
                      Text{*answer}}
        | alert(asked, question) | onAppear([asked, poses = *isPosed] {
                   if (poses)
                       asked.set(true);
               });
    }
};
// [/]

// [A choice of ways]
struct Choice {
    State<bool> isAsked = false;

    auto dynamicProperties() { return std::tie(isAsked); }
    auto body() const
    {
        auto asked = isAsked.binding();
        auto ways = [] {
            using Way = ActionSheet::Button;
            return ActionSheet{
                Text{"Share the picture"},
                Text{"Where shall it go?"},
                {Way::default_(Text{"By mail"}), Way::default_(Text{"To a folder"}),
                 Way::destructive(Text{"Nowhere, remove it"}), Way::cancel()}};
        };
        return Button{"Share", [asked] { asked.set(true); }} | actionSheet(asked, ways);
    }
};
// [/]

} // namespace

Page alertsPage()
{
    return {.name = "alerts",
            .title = "Alerts",
            .group = "Presentation",
            .symbol = "exclamationmark.triangle",
            .summary = "A question over the window. Return takes the preferred answer, "
                       "Escape the one that cancels.",
            .exhibits = [] {
                return std::vector<Exhibit>{{"A question", "", AnyView(Question{})},
                                            {"A choice of ways", "", AnyView(Choice{})}};
            }};
}

} // namespace gallery
