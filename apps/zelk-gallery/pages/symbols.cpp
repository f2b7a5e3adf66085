// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::GridSize;
using zelk::Spacing;

namespace {

// [Beside text]
auto besideText()
{
    auto line = [](Font size) {
        return HStack{{.spacing = Spacing::_100},
                      Image{.systemName = "star.fill"}
                          | foregroundColor(UIColor::systemOrange()),
                      Text{"As large as the text"}}
        | font(size);
    };
    return VStack{{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_100},
                  line(Font::footnote()),
                  line(Font::body()),
                  line(Font::title2().weight(FontWeight::light)),
                  line(Font::title().bold())};
}
// [/]

// [Weights]
auto weights()
{
    std::vector<std::pair<std::string, FontWeight>> list{
        {"Light", FontWeight::light},
        {"Regular", FontWeight::regular},
        {"Medium", FontWeight::medium},
        {"Semibold", FontWeight::semibold},
        {"Bold", FontWeight::bold}};
    auto sample = [](const auto& each) {
        return VStack{Image{.systemName = "magnifyingglass"}
                          | font(Font::system(34).weight(each.second)),
                      Text{each.first} | font(Font::caption()) | lineLimit(1)
                          | foregroundColor(UIColor::secondaryLabel())};
    };
    return HStack{{.spacing = Spacing::_150},
                  ForEach{list, &std::pair<std::string, FontWeight>::first, sample}};
}
// [/]

// [By name]
struct SymbolRow {
    std::vector<std::string> names;

    auto body() const
    {
        auto cell = [](const std::string& name) {
            return VStack{{.spacing = Spacing::_100},
                          Image{.systemName = name} | font(Font::system(26))
                              | frame({.height = GridSize::_200}),
                          Text{name} | font(Font::system(9)) | lineLimit(1)
                              | foregroundColor(UIColor::secondaryLabel())}
            | frame({.width = 84});
        };
        return HStack{{.spacing = 0}, ForEach{names, std::identity{}, cell}};
    }
    bool operator==(const SymbolRow&) const = default;
};

auto byName()
{
    return VStack{
        {.spacing = Spacing::_200},
        SymbolRow{{"play.fill", "pause.fill", "gobackward.15", "goforward.15",
                   "speaker.wave.2.fill", "forward.end.fill"}},
        SymbolRow{{"heart.fill", "bolt.fill", "flame.fill", "bell.fill", "bookmark.fill",
                   "flag.fill"}},
        SymbolRow{{"folder", "doc.text", "calendar", "envelope", "camera", "globe"}},
        SymbolRow{{"chevron.forward", "arrow.clockwise", "checkmark.circle.fill", "xmark",
                   "ellipsis.circle", "trash"}}};
}
// [/]

} // namespace

Page symbolsPage()
{
    return {
        .name = "symbols",
        .title = "Symbols",
        .group = "Foundations",
        .symbol = "star",
        .summary =
            "Small pictures by name, in the size and the weight of the text beside them.",
        .exhibits = [] {
            return std::vector<Exhibit>{{"Beside text", "", AnyView(besideText())},
                                        {"Weights", "", AnyView(weights())},
                                        {"By name",
                                         "Those that point along the text turn with it.",
                                         AnyView(byName())}};
        }};
}

} // namespace gallery
