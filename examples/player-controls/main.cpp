// SPDX-License-Identifier: MIT
// The screen of a player that plays silence, on a clock of its own: player-controls, or
// player-controls --snapshot OUT.png [light|dark] for a picture of it without a display.
#include "kit/media/AudioSourceSlider.h"
#include "kit/media/PlayerControlsView.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/Spacing.h"
#include "kit/theme/ThemeManager.h"
#include "platform/combine/Published.h"
#include "platform/dispatch/Timer.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/snapshot.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <string_view>

namespace {

using namespace platform;
using zelk::PlayerControlsAction;
using zelk::Spacing;

constexpr CGSize windowSize{420, 300};
constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();

// What plays: a position that moves while it plays.
class Player : public ObservableObject {
public:
    const CMTime duration{214, 1};
    Published<double> progress{this, 0.31};
    Published<bool> isPlaying{this, false};

    Player()
    {
        clock_ = Timer::scheduledTimer(tick, Timer::Repeats::yes, [this](Timer&) { advance(); });
    }
    ~Player() override { clock_->invalidate(); }

    void perform(PlayerControlsAction action)
    {
        constexpr double skip = 5;
        switch (action) {
        case PlayerControlsAction::backward5:
            move(-skip);
            break;
        case PlayerControlsAction::forward5:
            move(skip);
            break;
        case PlayerControlsAction::playpause:
            isPlaying.set(!isPlaying.get());
            break;
        }
    }

private:
    static constexpr Duration tick = std::chrono::milliseconds(100);

    void move(double seconds)
    {
        progress.set(std::clamp(progress.get() + seconds / duration.seconds(), 0.0, 1.0));
    }
    void advance()
    {
        if (!isPlaying.get())
            return;
        move(std::chrono::duration<double>(tick).count());
        if (progress.get() >= 1)
            isPlaying.set(false);
    }
    std::shared_ptr<Timer> clock_;
};

struct Screen {
    ObservedObject<Player> player;
    EnvironmentObject<zelk::ThemeManager> theme{};

    auto dynamicProperties() { return std::tie(player, theme); }
    auto body() const
    {
        auto playing = player.object();
        auto progress = player.binding(&Player::progress);
        auto isPlaying = player.binding(&Player::isPlaying);
        auto header = [] {
            return VStack{
                {.spacing = Spacing::_50},
                Text{"Four Minutes of Silence"} | font(Font::headline()) | foregroundColor(UIColor::label()),
                Text{"An example"} | font(Font::subheadline()) | foregroundColor(UIColor::secondaryLabel())};
        };
        return VStack{{.spacing = Spacing::_300},
                      zelk::PlayerControlsView{
                          header, progress, playing->duration, isPlaying,
                          [playing](PlayerControlsAction action) { playing->perform(action); }},
                      zelk::AudioSourceSlider{progress, playing->duration, isPlaying, theme->tintColor()}}
        | padding(Spacing::_300)
            | background(RoundedRectangle{zelk::CornerRadius::_300}
                         | fill(UIColor::secondarySystemGroupedBackground()))
            | padding(Spacing::_300) | flexibleFrame({.maxWidth = infinity, .maxHeight = infinity})
            | background(Color{UIColor::systemGroupedBackground()});
    }
    bool operator==(const Screen&) const = default;
};

auto makeController()
{
    auto screen =
        Screen{std::make_shared<Player>()} | environmentObject(std::make_shared<zelk::ThemeManager>());
    return std::make_shared<UIHostingController<decltype(screen)>>(screen);
}

int writeSnapshot(const char* path, bool isDark)
{
    UITraitCollection traits;
    traits.userInterfaceStyle = isDark ? UIUserInterfaceStyle::dark : UIUserInterfaceStyle::light;
    auto picture = snapshot(makeController(), {.size = windowSize, .scale = 2, .traits = traits});
    auto written = picture ? picture->writePNG(path) : Result<void>(std::unexpected(picture.error()));
    if (written)
        return 0;
    std::fprintf(stderr, "player-controls: %s: %s\n", path, written.error().localizedDescription().c_str());
    return 1;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount >= 3 && argumentCount <= 4 && arguments[1] == std::string_view("--snapshot"))
        return writeSnapshot(arguments[2], argumentCount == 4 && arguments[3] == std::string_view("dark"));
    if (argumentCount != 1) {
        std::fprintf(stderr, "usage: player-controls [--snapshot OUT.png [light|dark]]\n");
        return 2;
    }
    if (!displayIsAvailable()) {
        std::fprintf(stderr, "player-controls: there is no display; try --snapshot OUT.png\n");
        return 1;
    }
    auto& application = UIApplication::shared();
    application.start();
    auto window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    window->setTitle("Player");
    window->setRootViewController(makeController());
    window->makeKeyAndVisible();
    return application.run();
}
