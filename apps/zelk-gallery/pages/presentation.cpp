// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "apps/zelk-gallery/frame/tinted.h"
#include "kit/theme/Spacing.h"
#include "platform/swiftui/controlStyles.h"
#include "platform/swiftui/sheet.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::Spacing;

namespace {

// What is presented: a greeting with a way out.
auto greeting(std::string title, const Binding<bool>& isShown)
{
    return VStack{{.spacing = Spacing::_200},
                  Image{.systemName = "hand.thumbsup.fill"} | font(Font::system(48))
                      | tinted(),
                  Text{std::move(title)} | font(Font::title2().bold()),
                  Text{"Press Escape, or the button."}
                      | foregroundColor(UIColor::secondaryLabel()),
                  Button{"Done", [isShown] { isShown.set(false); }}
                      | buttonStyle(ButtonStyle::borderedProminent)}
    | padding(Spacing::_400);
}

// [A sheet]
struct WithSheet {
    State<bool> isShown = false;
    Environment<IsPosedKey> isPosed;

    auto dynamicProperties() { return std::tie(isShown, isPosed); }
    auto body() const
    {
        auto shown = isShown.binding();
        return Button{"Show a sheet", [shown] { shown.set(true); }}
        | sheet(shown, [shown] { return greeting("A sheet", shown); })
            | onAppear([shown, poses = *isPosed] {
                   if (poses)
                       shown.set(true);
               });
    }
};
// [/]

// [A full-screen cover]
struct WithCover {
    State<bool> isShown = false;

    auto dynamicProperties() { return std::tie(isShown); }
    auto body() const
    {
        auto shown = isShown.binding();
        return Button{"Cover everything", [shown] { shown.set(true); }}
        | fullScreenCover(shown, [shown] { return greeting("A cover", shown); });
    }
};
// [/]

// [A popover]
struct WithPopover {
    State<bool> isShown = false;

    auto dynamicProperties() { return std::tie(isShown); }
    auto body() const
    {
        auto shown = isShown.binding();
        return Button{"Point at this", [shown] { shown.set(true); }}
        | popover(shown, [shown] { return greeting("A popover", shown); });
    }
};
// [/]

} // namespace

Page presentationPage()
{
    return {.name = "presentation",
            .title = "Sheets and covers",
            .group = "Presentation",
            .symbol = "rectangle.split.3x1",
            .summary = "Over the window, one at a time; Escape closes, and the keyboard "
                       "stays inside.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"A sheet", "", AnyView(WithSheet{})},
                    {"A full-screen cover", "", AnyView(WithCover{})},
                    {"A popover", "", AnyView(WithPopover{})}};
            }};
}

} // namespace gallery
