// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class AccessibleText;
class CGContext;
class NSLayoutConstraint;
class NSLayoutDimension;
class NSLayoutXAxisAnchor;
class NSLayoutYAxisAnchor;
class UIApplication;
class UIGestureRecognizer;
class UILayoutGuide;
class UIResponder;
class UIScrollView;
class UITextView;
class UIView;
class UIViewController;
class UIWindow;

struct LayoutState;
struct UIPress;
struct UIScrollWheel;
struct UITouch;

} // namespace platform
