// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/media/AudioSourceSlider.h"
#include "kit/media/PlayerControlsView.h"
#include "kit/theme/Spacing.h"
#include "kit/theme/semanticColors.h"
#include "platform/avfoundation/CMTime.h"
#include "platform/swiftui/swiftui.h"

#include <algorithm>

namespace gallery {

using namespace platform;
using zelk::AudioSourceSlider;
using zelk::PlayerControlsAction;
using zelk::PlayerControlsView;
using zelk::Spacing;

namespace {

// [A player]
struct Player {
    State<double> position = 0.35;
    State<bool> isPlaying = false;

    auto dynamicProperties() { return std::tie(position, isPlaying); }
    auto body() const
    {
        CMTime length(247, 1);
        auto at = position.binding();
        auto playing = isPlaying.binding();
        auto perform = [at, playing, length](PlayerControlsAction action) {
            auto step = 5 / length.seconds();
            if (action == PlayerControlsAction::playpause)
                playing.set(!playing.get());
            else if (action == PlayerControlsAction::backward5)
                at.set(std::max(at.get() - step, 0.0));
            else
                at.set(std::min(at.get() + step, 1.0));
        };
        auto header = [at, length, playing] {
            return AudioSourceSlider{at, length, playing, Color{zelk::zelk_tintColor()}};
        };
        return PlayerControlsView{header, at, length, playing, perform};
    }
};
// [/]

// [A length that nobody knows]
struct Unknown {
    State<double> position = 0.5;
    State<bool> isPlaying = true;

    auto dynamicProperties() { return std::tie(position, isPlaying); }
    auto body() const
    {
        return AudioSourceSlider{
            position.binding(), {}, isPlaying.binding(), Color{UIColor::systemOrange()}};
    }
};
// [/]

} // namespace

Page playerPage()
{
    return {.name = "player",
            .title = "Player controls",
            .group = "Media",
            .symbol = "play.circle",
            .summary = "Space plays, Control and an arrow key skip. The slider is one to "
                       "assistive technology, too.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"A player", "Drag the line: playing pauses meanwhile.",
                     AnyView(Player{})},
                    {"A length that nobody knows", "", AnyView(Unknown{})}};
            }};
}

} // namespace gallery
