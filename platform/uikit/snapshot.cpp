// SPDX-License-Identifier: MIT
#include "platform/uikit/snapshot.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/ViewPainter.h"

#include <cmath>

namespace platform {

namespace {

// Views that update themselves in turns of the run loop come to rest in a few.
constexpr int maximumTurns = 16;

bool isPaintable(CGSize size, double scale)
{
    auto isPositive = [](double value) { return std::isfinite(value) && value > 0; };
    return isPositive(size.width) && isPositive(size.height) && isPositive(scale)
        && std::ceil(size.width * scale) * std::ceil(size.height * scale)
        <= double(UIImage::maximumPixelCount);
}

std::unexpected<Error> unpaintable()
{
    return failure(NSCocoaError::fileReadTooLarge,
                   {{std::string(NSLocalizedDescriptionKey), "The picture's size is empty or too large."}});
}

} // namespace

Result<UIImage> snapshot(std::shared_ptr<UIViewController> controller, const SnapshotOptions& options)
{
    assertOnMainThread();
    precondition(controller != nullptr, "a picture of no controller was asked for");
    // Before anything else happens, so that a refused size leaves the controller as it was.
    if (!isPaintable(options.size, options.scale))
        return unpaintable();
    precondition(!controller->viewIfLoaded() || !controller->viewIfLoaded()->superview(),
                 "a picture was asked for of a controller that is shown elsewhere");

    auto window = std::make_shared<UIWindow>(CGRect{{}, options.size});
    auto traits = options.traits;
    traits.displayScale = options.scale;
    window->setBaseTraits(traits);
    window->setRootViewController(std::move(controller));
    window->showOffscreen();
    for (int turn = 0; turn < maximumTurns && RunLoop::main().runPending(); ++turn) { }
    window->layoutNow();

    auto image = makeImage(
        options.size, options.scale, [&](CGContext& context) { window->paint(context, {{}, options.size}); },
        traits.colorAppearance());
    window->setRootViewController(nullptr);
    window->close();
    return image;
}

Result<UIImage> snapshot(UIView& view, CGSize size, double scale)
{
    assertOnMainThread();
    if (!isPaintable(size, scale))
        return unpaintable();
    view.layoutIfNeeded();
    auto origin = view.bounds().origin;
    return makeImage(
        size, scale,
        [&](CGContext& context) {
            context.translate(-origin.x, -origin.y);
            ViewPainter(context).paint(view, {origin, size});
        },
        view.traitCollection().colorAppearance());
}

} // namespace platform
