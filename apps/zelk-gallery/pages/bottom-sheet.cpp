// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "apps/zelk-gallery/frame/tinted.h"
#include "bottomsheet/bottomSheet.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "kit/ui/selfSizingBottomSheet.h"
#include "platform/swiftui/swiftui.h"

#include <limits>
#include <ranges>

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::Spacing;

namespace {

constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();

// A place to come over: as a telephone's screen.
auto stage(std::string title, std::function<void()> open)
{
    return VStack{Spacer{},
                  Button{std::move(title), std::move(open)} | font(Font::headline()),
                  Spacer{}}
    | flexibleFrame({.maxWidth = infinity, .maxHeight = infinity})
        | background(Color{UIColor::dynamic({0.92, 0.93, 0.97}, {0.05, 0.05, 0.08})});
}

// Around the stage, which may be of the card's colour.
auto edge()
{
    return RoundedRectangle{CornerRadius::_200 + 1} | fill(UIColor::separator());
}

struct SheetRow {
    std::string symbol, title, note;

    auto body() const
    {
        return HStack{{.spacing = Spacing::_150},
                      Image{.systemName = symbol} | font(Font::title3()) | tinted()
                          | frame({.width = GridSize::_250, .height = GridSize::_250})
                          | background(RoundedRectangle{CornerRadius::_100}
                                       | fill(UIColor::tertiarySystemFill())),
                      VStack{{.alignment = HorizontalAlignment::leading,
                              .spacing = Spacing::_25},
                             Text{title} | font(Font::headline()) | lineLimit(1),
                             Text{note} | font(Font::footnote())
                                 | foregroundColor(UIColor::secondaryLabel())
                                 | lineLimit(1)},
                      Spacer{}}
        | padding(EdgeSet::horizontal, Spacing::_250)
            | padding(EdgeSet::vertical, Spacing::_75);
    }
    bool operator==(const SheetRow&) const = default;
};

// [A sheet of fixed height]
struct FixedSheet {
    State<bool> isShown = false;
    Environment<IsPosedKey> isPosed;

    auto dynamicProperties() { return std::tie(isShown, isPosed); }
    auto body() const
    {
        auto shown = isShown.binding();
        return stage("Open the sheet", [shown] { shown.set(true); })
            | bottomsheet::bottomSheet(
                   shown, {.height = 250},
                   [] {
                       return VStack{{.spacing = Spacing::_50},
                                     SheetRow{"doc.on.doc", "Copy",
                                              "Put it on the clipboard"},
                                     SheetRow{"square.and.arrow.up", "Share",
                                              "Send it to somebody"},
                                     SheetRow{"trash", "Remove", "It can be undone"}}
                       | padding(EdgeSet::top, Spacing::_100);
                   })
            | frame({.height = 420}) | cornerRadius(CornerRadius::_200) | padding(1)
            | background(edge()) | onAppear([shown, poses = *isPosed] {
                   if (poses)
                       shown.set(true);
               });
    }
    bool operator==(const FixedSheet&) const = default;
};
// [/]

// [A sheet as high as its content]
struct FittingSheet {
    State<bool> isShown = false;
    State<int> rows = 2;
    Environment<IsPosedKey> isPosed;

    auto dynamicProperties() { return std::tie(isShown, rows, isPosed); }
    auto body() const
    {
        auto shown = isShown.binding();
        auto count = rows.binding();
        auto content = [count] {
            return VStack{
                {.spacing = Spacing::_50},
                ForEach{std::views::iota(0, count.get()), std::identity{},
                        [](int row) {
                            return SheetRow{"bookmark", "Row " + std::to_string(row + 1),
                                            "One of them"};
                        }},
                Button{"One more",
                       [count] { withAnimation([&] { count.set(count.get() + 1); }); }}
                    | padding(EdgeSet::vertical, Spacing::_150)};
        };
        return stage("Open the sheet", [shown] { shown.set(true); })
            | zelk::selfSizingBottomSheet(shown, content) | frame({.height = 420})
            | cornerRadius(CornerRadius::_200) | padding(1) | background(edge())
            | onAppear([shown, poses = *isPosed] {
                   if (poses)
                       shown.set(true);
               });
    }
    bool operator==(const FittingSheet&) const = default;
};
// [/]

} // namespace

Page bottomSheetPage()
{
    return {.name = "bottom-sheet",
            .title = "Bottom sheet",
            .group = "Presentation",
            .symbol = "chevron.up",
            .summary = "Comes up over the lower edge. Drag its bar down, throw it, tap "
                       "beside it or press Escape.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"A sheet of fixed height", "", AnyView(FixedSheet{})},
                    {"A sheet as high as its content",
                     "It grows with each row; then its content scrolls.",
                     AnyView(FittingSheet{})}};
            }};
}

} // namespace gallery
