// SPDX-License-Identifier: MIT
// One frame of a window: what is dirty, layout, painting. The phases are a state, and each refuses to run inside another.
#include "platform/uikit/UIWindow.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/graphics/MaskedPicture.h"
#include "platform/uikit/ScreenSight.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindowDispatch_p.h"
#include "platform/uikit/ViewPainter.h"

#include <cmath>

namespace platform {

namespace {

// Appearing may ask for layout, and layout bring up new controllers; each round shows more of the tree.
constexpr int maximumRounds = 32;

} // namespace

void UIWindow::addDirty(CGRect rect)
{
    auto all = CGRect{{}, bounds().size};
    // A fraction of a point, or of a pixel where those are no whole part of a point, is painted as a whole.
    auto scale = traitCollection().displayScale;
    auto margin = scale == std::floor(scale) ? 0 : 1;
    if (rect.isEmpty())
        return;
    auto left = std::floor(rect.minX()) - margin, top = std::floor(rect.minY()) - margin;
    auto right = std::ceil(rect.maxX()) + margin, bottom = std::ceil(rect.maxY()) + margin;
    dirty_.add(CGRect::make(left, top, right - left, bottom - top).intersection(all));
    requestFrame();
    screenDidChange();
}

void UIWindow::requestFrame()
{
    if (isVisible_)
        RunLoop::main().requestTurn();
}

DirtyRegion UIWindow::takeDirtyRegion()
{
    if (isAllDirty())
        MaskedPicture::anythingMayChange(); // until now changes were not looked at
    return std::exchange(dirty_, {});
}

void UIWindow::layoutNow()
{
    assertOnMainThread();
    precondition(phase_ == Phase::idle,
                 phase_ == Phase::paint ? "layout asked during paint"
                                        : "layout of the window asked during layout");
    auto keptAlive = weak_from_this().lock();
    for (int round = 0; round < maximumRounds && (wantsLayout() || !appearing_.empty()); ++round) {
        {
            PhaseScope scope(*this, Phase::layout);
            layoutIfNeeded();
        }
        auto cameToRest = !wantsLayout();
        completeAppearances();
        if (!cameToRest)
            return; // it has been said; another try has the same end
    }
}

void UIWindow::completeAppearances()
{
    for (const auto& waiting : std::exchange(appearing_, {})) {
        auto controller = waiting.lock();
        // One that has left meanwhile has been told so already.
        if (controller && controller->responderWindow().get() == this)
            controller->endAppearance();
    }
}

void UIWindow::paint(CGContext& context, CGRect dirty)
{
    assertOnMainThread();
    precondition(phase_ == Phase::idle,
                 phase_ == Phase::paint ? "paint asked during paint" : "paint asked during layout");
    auto keptAlive = weak_from_this().lock();
    PhaseScope scope(*this, Phase::paint);
    ViewPainter(context).paint(*this, dirty);
}

} // namespace platform
