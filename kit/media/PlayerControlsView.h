// SPDX-License-Identifier: MIT
#pragma once

#include "kit/foundation/zelkKitLocalized.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "kit/theme/ThemeManager.h"
#include "platform/avfoundation/CMTime.h"
#include "platform/swiftui/Button.h"
#include "platform/swiftui/Closure.h"
#include "platform/swiftui/EmptyView.h"
#include "platform/swiftui/Environment.h"
#include "platform/swiftui/Image.h"
#include "platform/swiftui/ObservedObject.h"
#include "platform/swiftui/State.h"
#include "platform/swiftui/accessibility.h"
#include "platform/swiftui/appearance.h"
#include "platform/swiftui/controlStyles.h"
#include "platform/swiftui/frame.h"
#include "platform/swiftui/hover.h"
#include "platform/swiftui/keyboardShortcut.h"
#include "platform/swiftui/stacks.h"

#include <concepts>
#include <functional>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace zelk {

// What a player's buttons ask for.
enum class PlayerControlsAction { backward5, forward5, playpause };

struct NoPlayerHeader {
    platform::EmptyView operator()() const { return {}; }
};

// The row of a player's buttons (five seconds back, play or pause, five seconds on) under a header of the owner's, if there
// is one. It tells the owner what was asked for and does nothing itself: the owner seeks, plays, and changes `isPlaying`,
// which the middle button follows. Command and an arrow key skip, Space plays, anywhere in the window where nobody else
// takes the key. The buttons stand in the order of time in every language.
//
//     PlayerControlsView{progress, duration, isPlaying, [player](PlayerControlsAction action) { player->perform(action); }}
//
// Takes its colour from the theme in its environment, or that of the surroundings where there is none. Main thread only.
template <std::invocable MakeHeader>
struct PlayerControlsView {
    using Action = PlayerControlsAction;

    platform::Closure<MakeHeader> header;
    platform::Binding<double> progress;       // 0...1
    std::optional<platform::CMTime> duration; // none while it is unknown
    platform::Binding<bool> isPlaying;
    platform::State<bool> isVisible = false; // while the view is on screen
    std::function<void(Action)> didInvokeAction;
    platform::EnvironmentObject<ThemeManager> themeManager{};

    PlayerControlsView(MakeHeader makeHeader, platform::Binding<double> position,
                       std::optional<platform::CMTime> length, platform::Binding<bool> playing,
                       std::function<void(Action)> handler)
        : header(std::move(makeHeader))
        , progress(std::move(position))
        , duration(length)
        , isPlaying(std::move(playing))
        , didInvokeAction(std::move(handler))
    {
    }

    PlayerControlsView(platform::Binding<double> position, std::optional<platform::CMTime> length,
                       platform::Binding<bool> playing, std::function<void(Action)> handler)
        requires std::same_as<MakeHeader, NoPlayerHeader>
        : PlayerControlsView(NoPlayerHeader{}, std::move(position), length, std::move(playing),
                             std::move(handler))
    {
    }

    auto dynamicProperties() { return std::tie(isPlaying, isVisible, themeManager); }
    auto body() const
    {
        using namespace platform;
        bool plays = isPlaying.get();
        auto visible = isVisible.binding();
        auto theme = themeManager.object();
        auto row = HStack{{.spacing = Spacing::_400},
                          button("gobackward.5", "PLAYER_BACKWARD_5", Action::backward5)
                              | keyboardShortcut(KeyEquivalent::leftArrow(), EventModifiers::command),
                          button(plays ? "pause.fill" : "play.fill", plays ? "PLAYER_PAUSE" : "PLAYER_PLAY",
                                 Action::playpause)
                              | keyboardShortcut(KeyEquivalent::space(), EventModifiers::none),
                          button("goforward.5", "PLAYER_FORWARD_5", Action::forward5)
                              | keyboardShortcut(KeyEquivalent::rightArrow(), EventModifiers::command)};
        auto inOrderOfTime = environment<LayoutDirectionKey>(LayoutDirection::leftToRight);
        auto controls = row | font(Font::largeTitle()) | buttonStyle(ButtonStyle::plain) | inOrderOfTime;
        return VStack{{.spacing = Spacing::_200}, header(), controls}
        | ThemeColor{theme ? std::optional(theme->tintUIColor()) : std::nullopt}
        | onAppear([visible] { visible.set(true); }) | onDisappear([visible] { visible.set(false); });
    }

private:
    // A colour for the content; none leaves that of the surroundings.
    struct ThemeColor {
        std::optional<platform::UIColor> color;
        platform::Environment<platform::ForegroundColorKey> surrounding{};

        auto dynamicProperties() { return std::tie(surrounding); }
        auto body(const auto& content) const
        {
            return content | platform::foregroundColor(color ? color : *surrounding);
        }
    };

    auto button(std::string symbol, std::string_view label, Action action) const
    {
        using namespace platform;
        auto handler = didInvokeAction;
        auto press = [handler, action] {
            if (handler)
                handler(action);
        };
        return Button{press,
                      Image{.systemName = std::move(symbol)}
                          | frame({.width = GridSize::_275, .height = GridSize::_275})}
        | hoverEffect() | accessibilityLabel(zelkKitLocalized(label));
    }
};

PlayerControlsView(platform::Binding<double>, std::optional<platform::CMTime>, platform::Binding<bool>,
                   std::function<void(PlayerControlsAction)>) -> PlayerControlsView<NoPlayerHeader>;

} // namespace zelk
