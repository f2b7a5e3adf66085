// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/data/CachedAsyncImage.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "kit/ui/shimmering.h"
#include "platform/graphics/CGContext.h"
#include "platform/network/CachedURLResponse.h"
#include "platform/network/HTTPURLResponse.h"
#include "platform/network/URLCache.h"
#include "platform/swiftui/swiftui.h"

#include <array>

namespace gallery {

using namespace platform;
using zelk::CachedAsyncImage;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::Spacing;

namespace {

// An evening, painted: what the cache holds.
std::string painting()
{
    auto picture = makeImage({320, 180}, 2, [](CGContext& context) {
        std::array<GradientStop, 3> sky{
            {{0, {0.16, 0.14, 0.42}}, {0.6, {0.93, 0.45, 0.45}}, {1, {1, 0.80, 0.45}}}};
        context.drawLinearGradient(sky, {0, 0}, {0, 130});
        context.fill(UIBezierPath::oval(CGRect::make(200, 84, 52, 52)), {1, 0.93, 0.72});
        context.fill(UIBezierPath::oval(CGRect::make(-80, 118, 300, 150)),
                     {0.16, 0.18, 0.36});
        context.fill(UIBezierPath::oval(CGRect::make(120, 132, 320, 150)),
                     {0.10, 0.12, 0.27});
    });
    return picture ? picture->pngData() : std::string();
}

URL address(std::string_view name)
{
    return URL::parse(std::string("https://pictures.example/").append(name)).value();
}

// A cache of this process that has the picture, as if it had been here before.
const std::shared_ptr<URLCache>& cacheWithPicture()
{
    static const auto cache = [] {
        auto made = std::make_shared<URLCache>(8'000'000, 0);
        auto response = std::make_shared<HTTPURLResponse>(
            address("evening.png"), 200, "HTTP/1.1",
            HTTPHeaderFields{{"Content-Type", "image/png"},
                             {"Cache-Control", "max-age=31536000"}});
        made->storeCachedResponse({response, painting()},
                                  URLRequest(address("evening.png")));
        return made;
    }();
    return cache;
}

// [There at once]
auto thereAtOnce()
{
    auto picture = [](Image image) { return image.resizable() | scaledToFit(); };
    auto placeholder = [] { return Color{UIColor::systemGray4()} | zelk::shimmering(); };
    return CachedAsyncImage{
               {.url = address("evening.png"), .urlCache = cacheWithPicture()},
               picture,
               placeholder}
    | frame({.width = 320, .height = 180}) | cornerRadius(CornerRadius::_150);
}
// [/]

// [Every phase]
auto everyPhase()
{
    auto describe = [](const AsyncImagePhase& phase) {
        auto symbol = phase.error() ? "exclamationmark.triangle" : "photo";
        auto said = phase.error() ? "It could not be loaded." : "Loading";
        return VStack{{.spacing = Spacing::_100},
                      Image{.systemName = symbol} | font(Font::largeTitle()),
                      Text{said}}
        | foregroundColor(UIColor::secondaryLabel());
    };
    // Nobody listens at that port.
    return CachedAsyncImage{
               {.url = URL::parse("http://127.0.0.1:9/none.png"), .urlCache = nullptr},
               describe}
    | frame({.width = 320, .height = GridSize::_750});
}
// [/]

} // namespace

Page cachedImagePage()
{
    return {
        .name = "cached-image",
        .title = "Remote image",
        .group = "Media",
        .symbol = "photo",
        .summary = "Shown in the first frame when the cache has it; otherwise with every "
                   "phase on the way.",
        .exhibits = [] {
            return std::vector<Exhibit>{
                {"There at once", "Its cache has been filled before.",
                 AnyView(thereAtOnce())},
                {"Every phase", "A server that does not answer.", AnyView(everyPhase())}};
        }};
}

} // namespace gallery
