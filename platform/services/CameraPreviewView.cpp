// SPDX-License-Identifier: MIT
#include "platform/services/CameraPreviewView.h"

#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIImageView.h"

#include <utility>

namespace platform {

namespace {

constexpr double emptyGray = 0.09; // before there is anything

} // namespace

CameraPreviewView::CameraPreviewView()
{
    setClipsToBounds(true);
    setBackgroundColor(UIColor::gray(emptyGray));
}

void CameraPreviewView::setPicture(UIImage picture)
{
    picture_ = std::move(picture);
    setNeedsDisplay();
}

void CameraPreviewView::setMirrored(bool mirrored)
{
    if (std::exchange(isMirrored_, mirrored) != mirrored)
        setNeedsDisplay();
}

void CameraPreviewView::setShowsAll(bool showsAll)
{
    if (std::exchange(showsAll_, showsAll) == showsAll)
        return;
    setBackgroundColor(showsAll ? UIColor::black() : UIColor::gray(emptyGray));
    setNeedsDisplay();
}

void CameraPreviewView::draw(CGContext& context, CGRect)
{
    if (picture_.isEmpty())
        return;
    auto mode = showsAll_ ? UIViewContentMode::scaleAspectFit : UIViewContentMode::scaleAspectFill;
    CGContextState state(context);
    if (isMirrored_)
        context.concat({-1, 0, 0, 1, bounds().minX() + bounds().maxX(), 0});
    context.drawImage(picture_, contentRect(mode, picture_.size(), bounds()));
}

} // namespace platform
