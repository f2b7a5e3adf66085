// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/theme/Spacing.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::Spacing;

namespace {

// [Text styles]
auto textStyles()
{
    return HStack{
        VStack{{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_100},
               Text{"Large title"} | font(Font::largeTitle().bold()),
               Text{"Title"} | font(Font::title()),
               Text{"Headline"} | font(Font::headline()),
               Text{"Body: follows the text size of the desktop"} | font(Font::body()),
               Text{"Footnote"} | font(Font::footnote()),
               Text{"Monospaced 0123"} | font(Font::body().monospaced()),
               Text{"A line that is longer than there is room for is cut where its "
                    "limit says so, and tells that it goes on"}
                   | lineLimit(1)},
        Spacer{}};
}
// [/]

// [Many scripts]
auto scripts()
{
    return HStack{
        VStack{{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_100},
               Text{"Crème brûlée, Ångström, Łódź"},
               Text{"Съешь ещё этих мягких булок"},
               Text{"العربية تُكتب من اليمين إلى اليسار"},
               Text{"עברית and English in one line"},
               Text{"Ελληνικά και λατινικά"}},
        Spacer{}};
}
// [/]

// [An editor]
struct Editor {
    State<String> text =
        String("Type here. It is undone, found in,\nand copied as one expects.");

    auto dynamicProperties() { return std::tie(text); }
    auto body() const { return TextEditor{text.binding()} | frame({.height = 120}); }
    bool operator==(const Editor&) const = default;
};
// [/]

} // namespace

Page textPage()
{
    return {.name = "text",
            .title = "Text",
            .group = "Foundations",
            .symbol = "textformat",
            .summary = "Shaped in every script, in the sizes that the desktop asks for.",
            .exhibits = [] {
                return std::vector<Exhibit>{{"Text styles", "", AnyView(textStyles())},
                                            {"Many scripts", "", AnyView(scripts())},
                                            {"An editor", "", AnyView(Editor{})}};
            }};
}

} // namespace gallery
