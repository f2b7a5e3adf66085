// SPDX-License-Identifier: MIT
#include "kit/theme/swUIColor.h"

#include "kit/theme/uiColor.h"

namespace zelk {

platform::Binding<platform::Color> swUIColor(const platform::Binding<platform::UIColor>& source)
{
    return {[source] { return platform::Color{source.get()}; },
            [source](platform::Color color) {
                if (auto plain = uiColor(color))
                    source.set(*plain);
            }};
}

} // namespace zelk
