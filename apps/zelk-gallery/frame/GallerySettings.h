// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/Published.h"
#include "platform/graphics/UIColor.h"
#include "platform/uikit/UITraitCollection.h"

#include <optional>
#include <string>
#include <vector>

namespace gallery {

struct NamedTint {
    std::string name;
    platform::UIColor color;
};
// The first is the kit's own.
const std::vector<NamedTint>& tints();

// What the switches above the pages say, and which page is open. Main thread only.
class GallerySettings : public platform::ObservableObject {
public:
    explicit GallerySettings(std::string firstPage)
        : page(this, std::move(firstPage))
    {
    }

    platform::Published<std::string> page;                               // a page's name
    platform::Published<std::optional<bool>> isDark{this, std::nullopt}; // none: as the desktop is
    platform::Published<std::size_t> tint{this, 0};
    platform::Published<int> textSize{this, 0}; // steps above or below the desktop's
    platform::Published<bool> isRightToLeft{this, false};
    platform::Published<bool> reducesMotion{this, false};
    platform::Published<bool> showsCode{this, true};
    platform::Published<bool> showsPages{this, false}; // the list, in a window too narrow for both

    // What a window of the gallery is given, on a desktop that has these.
    platform::UITraitCollection traits(const platform::UITraitCollection& desktop) const;
    platform::UIColor tintColor() const;
    // Of text on the tint: black where that is light.
    platform::UIColor colorOnTint() const;

    static constexpr int leastTextSize = -2, greatestTextSize = 5;
};

} // namespace gallery
