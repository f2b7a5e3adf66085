// SPDX-License-Identifier: MIT
// A picture from the network in a window, through all its phases: remote-image URL, or
// remote-image URL --output OUT.png [light|dark] for a picture of the window without a display. What it has loaded once it
// shows at once the next time.
#include "kit/data/AsyncImageLoadingError.h"
#include "kit/data/CachedAsyncImage.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/Spacing.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/swiftui/ProgressView.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"

#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace {

using namespace platform;
using zelk::Spacing;

constexpr CGSize windowSize{520, 420};
constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();

using PhaseObserver = std::function<void(const AsyncImagePhase&)>;

auto loading()
{
    return VStack{{.spacing = Spacing::_200},
                  ProgressView{},
                  Text{"Loading"} | font(Font::subheadline()) | foregroundColor(UIColor::secondaryLabel())};
}

std::string explanation(const Error& error)
{
    return error.as<zelk::AsyncImage::LoadingError>() ? "What is at this address is not a picture."
                                                      : error.localizedDescription();
}

auto failed(const Error& error, std::function<void()> tryAgain)
{
    return VStack{{.spacing = Spacing::_200},
                  Image{.systemName = "exclamationmark.triangle"} | font(Font::largeTitle())
                      | foregroundColor(UIColor::secondaryLabel()),
                  Text{"There Is No Picture"} | font(Font::headline()) | foregroundColor(UIColor::label()),
                  Text{explanation(error)} | font(Font::subheadline())
                      | foregroundColor(UIColor::secondaryLabel())
                      | multilineTextAlignment(HorizontalAlignment::center),
                  Button{"Try Again", std::move(tryAgain)}}
    | padding(Spacing::_400);
}

auto shown(const Image& image, const std::string& name)
{
    auto size = image.image.size();
    auto length = [](CGFloat points) { return std::to_string(std::lround(points)); };
    return VStack{
               {.spacing = Spacing::_200},
               image.resizable() | scaledToFit() | cornerRadius(zelk::CornerRadius::_200)
                   | shadow({.radius = 8, .y = 2}) | accessibilityLabel(name),
               VStack{{.spacing = Spacing::_50},
                      Text{name} | font(Font::headline()) | foregroundColor(UIColor::label()) | lineLimit(1),
                      Text{length(size.width) + " \u00d7 " + length(size.height)} | font(Font::footnote())
                          | foregroundColor(UIColor::secondaryLabel())}}
    | padding(Spacing::_300);
}

struct Screen {
    URL url;
    PhaseObserver onPhase;
    State<int> attempt = 0;

    auto dynamicProperties() { return std::tie(attempt); }
    auto body() const
    {
        auto counter = attempt.binding();
        auto content = [counter, name = url.lastPathComponent(),
                        observer = onPhase](const AsyncImagePhase& phase) {
            observer(phase);
            return when(
                phase.isEmpty(), [] { return loading(); },
                [&] {
                    return when(
                        phase.image() != nullptr, [&] { return shown(*phase.image(), name); },
                        [&] {
                            return failed(*phase.error(), [counter] { counter.set(counter.get() + 1); });
                        });
                });
        };
        return zelk::CachedAsyncImage{{.url = url, .transaction = {.animation = Animation()}}, content}
        | id(*attempt) | flexibleFrame({.maxWidth = infinity, .maxHeight = infinity})
            | background(Color{UIColor::systemBackground()});
    }
};

auto makeController(const URL& url, PhaseObserver observer)
{
    return std::make_shared<UIHostingController<Screen>>(Screen{url, std::move(observer)});
}

int fail(const std::string& text)
{
    std::fprintf(stderr, "remote-image: %s\n", text.c_str());
    return 1;
}

// Loads as in a window, but writes what it would show once that has come to rest.
int writePicture(const URL& url, const char* path, bool isDark)
{
    constexpr auto rest =
        std::chrono::milliseconds(500); // the animation, and a sharper picture after the first
    std::optional<std::string> failure;
    Token end;
    auto window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    UITraitCollection traits;
    traits.displayScale = 2;
    traits.userInterfaceStyle = isDark ? UIUserInterfaceStyle::dark : UIUserInterfaceStyle::light;
    window->setBaseTraits(traits);
    window->setRootViewController(makeController(url, [&](const AsyncImagePhase& phase) {
        if (phase.isEmpty())
            return;
        failure = phase.error() ? std::optional(explanation(*phase.error())) : std::nullopt;
        end = RunLoop::main().schedule(RunLoop::main().clock().now() + rest, [] { RunLoop::main().stop(); });
    }));
    window->showOffscreen();
    RunLoop::main().run();
    window->layoutNow();
    auto picture = makeImage(
        windowSize, traits.displayScale,
        [&](CGContext& context) { window->paint(context, {{}, windowSize}); }, traits.colorAppearance());
    window->close();
    auto written = picture ? picture->writePNG(path) : Result<void>(std::unexpected(picture.error()));
    if (!written)
        return fail(std::string(path) + ": " + written.error().localizedDescription());
    return failure ? fail(*failure) : 0;
}

int showWindow(const URL& url)
{
    auto& application = UIApplication::shared();
    application.start();
    auto window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    window->setTitle(url.lastPathComponent());
    window->setRootViewController(makeController(url, [](const AsyncImagePhase&) { }));
    window->makeKeyAndVisible();
    return application.run();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    auto writes = argumentCount >= 4 && argumentCount <= 5 && arguments[2] == std::string_view("--output");
    if (argumentCount != 2 && !writes) {
        std::fprintf(stderr, "usage: remote-image URL [--output OUT.png [light|dark]]\n");
        return 2;
    }
    auto url = URL::parse(arguments[1]);
    if (!url)
        return fail(std::string(arguments[1]) + " is not a URL");
    if (writes)
        return writePicture(*url, arguments[3],
                            argumentCount == 5 && arguments[4] == std::string_view("dark"));
    if (!displayIsAvailable())
        return fail("there is no display; try --output OUT.png");
    return showWindow(*url);
}
