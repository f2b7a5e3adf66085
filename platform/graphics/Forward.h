// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class CGColor;
class CGContext;
class CGContextState;
class TextLayout;
class UIBezierPath;
class UIColor;
class UIFont;
class UIImage;
struct CGAffineTransform;
struct CGPoint;
struct CGRect;
struct CGSize;
struct ColorAppearance;
struct TextStyle;

} // namespace platform
