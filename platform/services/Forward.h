// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class ASAuthorizationAppleIDButton;
class AVPlayerViewController;
class MKMapView;

} // namespace platform
