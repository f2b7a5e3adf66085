// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/UITraitCollection.h"

#include <memory>

namespace platform {

class UIView;
class UIViewController;

struct SnapshotOptions {
    CGSize size;      // points
    double scale = 1; // pixels a point
    UITraitCollection traits;
};

// Paints `controller`'s view as a window of that size would, into a picture, without a display: the controller
// gets all of its appearance events first, and disappears afterwards. Errors: a size that is empty, not finite or too
// large for a picture.
[[nodiscard]] Result<UIImage> snapshot(std::shared_ptr<UIViewController> controller,
                                       const SnapshotOptions& options);

// Paints a view as it stands, with what it holds.
[[nodiscard]] Result<UIImage> snapshot(UIView& view, CGSize size, double scale);

} // namespace platform
