// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

namespace platform {

// A map of a part of the world. Its identity: there is no source of maps on the desktop yet, it draws nothing. Main thread only.
class MKMapView : public UIView {
public:
    using UIView::UIView;
};

} // namespace platform
