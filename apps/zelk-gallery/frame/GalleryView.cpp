// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/GalleryView.h"

#include "apps/zelk-gallery/frame/ExhibitView.h"
#include "apps/zelk-gallery/frame/SettingsBar.h"
#include "apps/zelk-gallery/frame/Sidebar.h"
#include "apps/zelk-gallery/pages/pages.h"

#include "kit/theme/semanticColors.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;

namespace {

constexpr CGFloat sidebarWidth = 264;
constexpr CGFloat narrowWindow = 760; // below: the list of pages is behind a button
constexpr CGFloat wideContent = 920;  // from here on code stands beside the exhibits
constexpr CGFloat widestContent = 1320;

// The page that is open, as wide as there is room.
struct OpenPage {
    EnvironmentObject<GallerySettings> settings;

    auto dynamicProperties() { return std::tie(settings); }
    auto body() const
    {
        const auto* page = pageNamed(settings->page.get());
        auto showsCode = settings->showsCode.get();
        return GeometryReader{[page, showsCode](const GeometryProxy& proxy) {
            auto width = std::min(proxy.size.width, widestContent);
            auto place = proxy.size.width >= wideContent ? CodePlace::beside : CodePlace::below;
            return ScrollView{pageView(*page, width, showsCode ? place : CodePlace::none)}
            | frame({.width = proxy.size.width, .height = proxy.size.height}) | id(page->name);
        }};
    }
    bool operator==(const OpenPage&) const = default;
};

struct Gallery {
    EnvironmentObject<GallerySettings> settings;

    auto dynamicProperties() { return std::tie(settings); }
    auto body() const
    {
        auto showsPages = settings->showsPages.get();
        return GeometryReader{[showsPages](const GeometryProxy& proxy) {
                   auto isNarrow = proxy.size.width < narrowWindow;
                   auto content = VStack{{.spacing = 0},
                                         settingsBar(isNarrow ? BarWidth::narrow : BarWidth::wide),
                                         Divider{},
                                         isNarrow && showsPages ? sidebar() : AnyView(OpenPage{})};
                   auto ground = Color{UIColor::dynamic({0.925, 0.925, 0.945}, {0.09, 0.09, 0.10})};
                   return HStack{{.spacing = 0},
                                 when(!isNarrow,
                                      [&] {
                                          return HStack{{.spacing = 0},
                                                        sidebar() | frame({.width = sidebarWidth})
                                                            | background(ground),
                                                        Divider{}};
                                      }),
                                 content}
                   | frame({.width = proxy.size.width, .height = proxy.size.height});
               }}
        | background(Color{zelk::zelk_systemGroupedBackground()});
    }
    bool operator==(const Gallery&) const = default;
};

} // namespace

std::shared_ptr<UIViewController> makeGallery(std::shared_ptr<GallerySettings> settings)
{
    auto root = Gallery{} | environmentObject(std::move(settings));
    return std::make_shared<UIHostingController<decltype(root)>>(root);
}

} // namespace gallery
