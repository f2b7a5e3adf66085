// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/Options.h"
#include "apps/zelk-gallery/frame/GalleryView.h"
#include "apps/zelk-gallery/pages/pages.h"
#include "apps/zelk-gallery/shoot.h"

#include "platform/graphics/GraphicsRuntime.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"

#include <cstdio>
#include <string_view>
#include <vector>

namespace {

using namespace platform;
using gallery::Options;

constexpr CGSize preferredSize{1280, 820};

int openWindow(const std::string& page)
{
    if (!displayIsAvailable()) {
        std::fprintf(stderr, "zelk-gallery: there is no display; try --shoot FOLDER\n");
        return 1;
    }
    auto& application = UIApplication::shared();
    application.setIdentifier("org.zelk.Gallery");
    application.start();
    auto settings = std::make_shared<gallery::GallerySettings>(page);
    auto screen = UIWindow::availableScreenBounds().size;
    auto window = std::make_shared<UIWindow>(CGRect::make(0, 0, std::min(preferredSize.width, screen.width),
                                                          std::min(preferredSize.height, screen.height)));
    window->setTitle("Zelk Gallery");
    window->setMinimumSize({360, 420});
    window->setRootViewController(gallery::makeGallery(settings));
    auto desktop = application.desktopTraits();
    // The desktop's scale is the window's own, which it knows when it is shown.
    auto apply = [&window = *window, &settings = *settings, desktop] {
        auto traits = settings.traits(desktop);
        traits.displayScale = window.baseTraits().displayScale;
        if (traits != window.baseTraits())
            window.setBaseTraits(traits);
        if (!(settings.tintColor() == window.tintColor()))
            window.setTintColor(settings.tintColor());
    };
    window->setTintColor(settings->tintColor());
    auto observation = settings->objectWillChange().sink([apply](Void) { apply(); });
    window->makeKeyAndVisible();
    return application.run();
}

int shootPages(const Options& options)
{
    auto done = gallery::shoot({.folder = options.folder, .page = options.page, .scale = options.scale});
    if (!done)
        std::fprintf(stderr, "zelk-gallery: %s: %s\n", options.folder.c_str(),
                     done.error().localizedDescription().c_str());
    return done ? 0 : 1;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    std::vector<std::string_view> words(arguments + 1, arguments + argumentCount);
    auto options = gallery::parseOptions(words);
    if (!options) {
        std::fprintf(stderr, "zelk-gallery: %s\n%s", options.error().c_str(), "Try zelk-gallery --help.\n");
        return 2;
    }
    switch (options->action) {
    case Options::Action::help:
        std::fputs(gallery::usage().data(), stdout);
        return 0;
    case Options::Action::version:
        std::printf("zelk-gallery %s\n", ZELK_VERSION);
        return 0;
    case Options::Action::listPages:
        for (const auto& page : gallery::allPages())
            std::printf("%s\n", page.name.c_str());
        return 0;
    case Options::Action::shoot:
        return shootPages(*options);
    case Options::Action::open:
        break;
    }
    return openWindow(options->page.value_or(gallery::allPages().front().name));
}
