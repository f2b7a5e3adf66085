// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIFont.h"
#include "platform/graphics/UIImage.h"

#include <string_view>

namespace platform {

class CGContext;
class UIColor;

// Small pictures in one colour, by name ("play.fill", "chevron.forward"): drawn for text to stand beside them. What has no
// drawing here is looked for among the icons of the desktop's theme, by the name and by the name with "-symbolic". A name
// that neither knows draws nothing and has no size. Names that say left or right keep their side; those that say forward or
// backward, and others that point along the text, are mirrored where the text runs from right to left. Main thread only.

enum class SymbolScale { small, medium, large };
enum class SymbolDirection { leftToRight, rightToLeft };

struct SymbolConfiguration {
    CGFloat pointSize = 17; // of the text beside it
    FontWeight weight = FontWeight::regular;
    SymbolScale scale = SymbolScale::medium;
    bool operator==(const SymbolConfiguration&) const = default;
};

bool symbolExists(std::string_view name);

// Points; all symbols of one configuration are equally high. Zero for an unknown name.
CGSize symbolSize(std::string_view name, const SymbolConfiguration& configuration);

// How far below a symbol's top the baseline of the text beside it lies, so that its middle is that of the capitals.
CGFloat symbolBaseline(CGSize symbolSize, const UIFont& font);

struct SymbolDrawing {
    FontWeight weight = FontWeight::regular;
    SymbolDirection direction = SymbolDirection::leftToRight;
    // Edges go to whole pixels where the context is not turned. Not for what moves slowly: it would hop.
    bool isSharp = true;
};

// Stretches the symbol over `rect`, as sharp as the context is. The pictures are kept by size, weight and colour, so
// drawing one again costs no more than copying its pixels. An icon of the theme that is not symbolic keeps its colours.
void drawSymbol(CGContext& context, std::string_view name, const CGRect& rect, const UIColor& color,
                const SymbolDrawing& drawing = {});

// The symbol as a template picture, for what takes no names. `displayScale` is pixels per point. Empty for an unknown name.
UIImage symbolImage(std::string_view name, const SymbolConfiguration& configuration = {},
                    CGFloat displayScale = 1, SymbolDirection direction = SymbolDirection::leftToRight);

} // namespace platform
