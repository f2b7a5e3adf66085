// SPDX-License-Identifier: MIT
#include "platform/services/CameraPreviewView.h"

#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIImageView.h"

#include <utility>

namespace platform {

CameraPreviewView::CameraPreviewView()
{
    setClipsToBounds(true);
    setBackgroundColor(UIColor::black());
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
    if (std::exchange(showsAll_, showsAll) != showsAll)
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
