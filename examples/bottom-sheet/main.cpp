// SPDX-License-Identifier: MIT
// Sheets over the lower edge of a page: bottom-sheet. One of a fixed height, one made from an item, one as high as its
// content; drag their bars, throw them down, tap beside them, or press Escape. With --snapshot OUT.png [dark] [rtl] it
// draws the first one to a picture.
#include "bottomsheet/bottomSheet.h"
#include "kit/theme/Spacing.h"
#include "kit/ui/selfSizingBottomSheet.h"

#include "platform/graphics/GraphicsRuntime.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/snapshot.h"

#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace platform;
using zelk::Spacing;

constexpr CGSize windowSize{420, 640};

struct Place {
    std::string id, text;
    bool operator==(const Place&) const = default;
};

const std::vector<Place>& places()
{
    static const std::vector<Place> all{
        {"Harbour", "Boats to the islands leave at nine, at noon and at five."},
        {"Old town", "Lanes too narrow for cars, and a market on Fridays."},
        {"Lighthouse", "Two hundred steps; the view reaches the mainland."},
        {"Dunes", "Walk barefoot. Bring water."},
    };
    return all;
}

// What a sheet says: a heading and a text.
auto notice(const std::string& title, const std::string& text)
{
    return VStack{{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_100},
                  Text{title} | font(Font::title2()) | accessibilityAddTraits(AccessibilityTraits::isHeader),
                  Text{text} | foregroundColor(UIColor::secondaryLabel())}
    | flexibleFrame({.maxWidth = std::numeric_limits<CGFloat>::infinity(), .alignment = Alignment::leading()})
        | padding(Spacing::_250);
}

struct Row {
    Place place;
    Binding<std::optional<Place>> chosen;

    auto body() const
    {
        return HStack{Text{place.id}, Spacer{},
                      Button{"Show", [place = place, chosen = chosen] { chosen.set(place); }}}
        | padding(EdgeSet::horizontal, Spacing::_250) | padding(EdgeSet::vertical, Spacing::_150);
    }
};

struct Options {
    Binding<int> lines;

    auto dynamicProperties() { return std::tie(lines); }
    auto body() const
    {
        auto change = [lines = lines](int by) { lines.set(std::clamp(lines.get() + by, 0, 40)); };
        return VStack{{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_100},
                      HStack{Text{"As high as its content"} | font(Font::headline()), Spacer{},
                             Button{"Less", [change] { change(-1); }},
                             Button{"More", [change] { change(1); }}},
                      ForEach{std::views::iota(1, lines.get() + 1), std::identity{},
                              [](int line) { return Text{"Line " + std::to_string(line)}; }}}
        | padding(Spacing::_250);
    }
};

struct Page {
    State<bool> isShown = false;
    State<bool> isSizedShown = false;
    State<std::optional<Place>> chosen;
    State<int> lines = 3;

    auto dynamicProperties() { return std::tie(isShown, isSizedShown, chosen, lines); }

    auto body() const
    {
        auto open = [](const State<bool>& state) {
            return [binding = state.binding()] { binding.set(true); };
        };
        return VStack{
                   {.spacing = 0},
                   Text{"The island"} | font(Font::title()) | padding(Spacing::_250),
                   Divider{},
                   ForEach{places(), &Place::id,
                           [binding = chosen.binding()](const Place& place) { return Row{place, binding}; }},
                   Divider{},
                   HStack{{.spacing = Spacing::_300},
                          Button{"About", open(isShown)},
                          Button{"Self-sizing", open(isSizedShown)}}
                       | padding(Spacing::_250),
                   Spacer{}}
        | background(Color{UIColor::systemBackground()})
            | bottomsheet::bottomSheet(isShown.binding(), {.height = 260},
                                       [] {
                                           return notice(
                                               "About the island",
                                               "Nobody knows who named it. The oldest map that shows it "
                                               "was drawn from hearsay.");
                                       })
            | bottomsheet::bottomSheet(chosen.binding(), {.height = 200},
                                       [](const Place& place) { return notice(place.id, place.text); })
            | zelk::selfSizingBottomSheet(isSizedShown.binding(),
                                          [binding = lines.binding()] { return Options{binding}; });
    }
};

int writeSnapshot(const char* path, UITraitCollection traits, CGSize size)
{
    Page page;
    page.isShown = State<bool>(true);
    auto picture = snapshot(std::make_shared<UIHostingController<Page>>(page),
                            {.size = size, .scale = 2, .traits = traits});
    if (!picture) {
        std::fprintf(stderr, "bottom-sheet: %s\n", picture.error().localizedDescription().c_str());
        return 1;
    }
    if (auto written = picture->writePNG(path); !written) {
        std::fprintf(stderr, "bottom-sheet: %s: %s\n", path, written.error().localizedDescription().c_str());
        return 1;
    }
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount >= 3 && std::strcmp(arguments[1], "--snapshot") == 0) {
        UITraitCollection traits;
        auto size = windowSize;
        for (int i = 3; i < argumentCount; ++i) {
            std::string_view word = arguments[i];
            if (word == "dark")
                traits.userInterfaceStyle = UIUserInterfaceStyle::dark;
            else if (word == "rtl")
                traits.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft;
            else if (word == "narrow")
                size = {240, 400};
        }
        return writeSnapshot(arguments[2], traits, size);
    }
    if (argumentCount != 1) {
        std::fprintf(stderr, "usage: bottom-sheet [--snapshot OUT.png [dark] [rtl] [narrow]]\n");
        return 2;
    }
    if (!displayIsAvailable()) {
        std::fprintf(stderr, "bottom-sheet: there is no display; try --snapshot OUT.png\n");
        return 1;
    }
    auto& application = UIApplication::shared();
    application.setIdentifier("org.zelk.BottomSheet");
    application.start();
    auto window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    window->setTitle("Bottom sheet");
    window->setRootViewController(std::make_shared<UIHostingController<Page>>(Page{}));
    window->makeKeyAndVisible();
    return application.run();
}
