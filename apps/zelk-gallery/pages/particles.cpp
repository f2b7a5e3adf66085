// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/theme/CornerRadius.h"
#include "kit/theme/Spacing.h"
#include "kit/ui/ParticleEmitterView.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::ParticleEmitterView;

namespace {

// [Rising symbols]
auto risingSymbols()
{
    return ZStack{ParticleEmitterView{{"star.fill", "heart.fill", "bolt.fill"}},
                  Text{"Thank you"} | font(Font::largeTitle().bold())}
    | frame({.height = 320}) | clipped();
}
// [/]

// [Come and go]
struct ComeAndGo {
    State<bool> isRunning = false;

    auto dynamicProperties() { return std::tie(isRunning); }
    auto body() const
    {
        auto running = isRunning.binding();
        return VStack{
            Button{*isRunning ? "Enough" : "Let it snow",
                   [running] { running.set(!running.get()); }},
            ZStack{Color{UIColor::dynamic({0.90, 0.94, 1.0}, {0.08, 0.10, 0.18})},
                   when(*isRunning,
                        [] { return ParticleEmitterView{{"snowflake", "sparkles"}}; })}
                | frame({.height = 220}) | cornerRadius(CornerRadius::_150)};
    }
    bool operator==(const ComeAndGo&) const = default;
};
// [/]

} // namespace

Page particlesPage()
{
    return {.name = "particles",
            .title = "Particle emitter",
            .group = "Components",
            .symbol = "heart",
            .summary = "Symbols that rise behind the content, each in a colour of its "
                       "own, for thirty seconds.",
            .exhibits =
                [] {
                    return std::vector<Exhibit>{
                        {"Rising symbols",
                         "Five within three seconds, then one every three and a half.",
                         AnyView(risingSymbols())},
                        {"Come and go", "Gone with the view that holds them.",
                         AnyView(ComeAndGo{})}};
                },
            .moment = std::chrono::seconds{19}};
}

} // namespace gallery
