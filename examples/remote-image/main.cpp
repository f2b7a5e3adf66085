// SPDX-License-Identifier: MIT
// A picture from the network in a window, through all its phases: remote-image URL, or
// remote-image URL --output OUT.png [dark] [rtl] for a picture of the window without a display. What it has loaded once it
// shows at once the next time. Exit status: 0 the window was closed or written, 1 there is no picture or no display, 2 wrong
// usage.
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
#include <vector>

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

int fail(const std::string& text, int status = 1)
{
    std::fprintf(stderr, "remote-image: %s\n", text.c_str());
    return status;
}

struct Output {
    std::string path;
    UITraitCollection traits;
};

// Loads as in a window, but writes what it would show once that has come to rest.
int writePicture(const URL& url, const Output& output)
{
    constexpr auto rest =
        std::chrono::milliseconds(500); // the animation, and a sharper picture after the first
    std::optional<std::string> failure;
    Token end;
    auto window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    window->setBaseTraits(output.traits);
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
        windowSize, output.traits.displayScale,
        [&](CGContext& context) { window->paint(context, {{}, windowSize}); },
        output.traits.colorAppearance());
    window->close();
    auto written = picture ? picture->writePNG(output.path) : Result<void>(std::unexpected(picture.error()));
    if (!written)
        return fail(output.path + ": " + written.error().bridged().localizedFailureReason());
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
    std::vector<std::string_view> words(arguments + 1, arguments + argumentCount);
    constexpr auto usage = "usage: remote-image URL [--output OUT.png [dark] [rtl]]";
    if (words.size() == 1 && words[0] == "--help")
        return std::puts(usage) < 0 ? 1 : 0;
    if (words.empty() || words.size() == 2 || (words.size() > 2 && words[1] != "--output"))
        return fail(usage, 2);
    Output output;
    output.traits.displayScale = 2;
    output.traits.userInterfaceStyle = UIUserInterfaceStyle::light;
    for (std::size_t i = 3; i < words.size(); ++i) {
        if (words[i] == "dark")
            output.traits.userInterfaceStyle = UIUserInterfaceStyle::dark;
        else if (words[i] == "rtl")
            output.traits.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft;
        else
            return fail(usage, 2);
    }
    auto url = URL::parse(words[0]);
    if (!url || url->scheme().empty())
        return fail("this is no URL: " + std::string(words[0]), 2);
    if (words.size() > 2) {
        output.path = words[2];
        return writePicture(*url, output);
    }
    if (!displayIsAvailable())
        return fail("there is no display; try --output OUT.png");
    return showWindow(*url);
}
