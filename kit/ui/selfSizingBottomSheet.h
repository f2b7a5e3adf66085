// SPDX-License-Identifier: MIT
#pragma once

#include "kit/ui/SelfSizingBottomSheet.h"

#include <utility>

namespace zelk {

struct SelfSizingBottomSheetOptions {
    bool showsTopIndicator = true;
    platform::UIColor backgroundColor = bottomsheet::sheetColor();
};

// Shows a sheet as high as its content over the view while `isPresented` holds true:
// `page | selfSizingBottomSheet(isShown, {}, [] { return Menu{}; })`.
template <class MakeContent>
auto selfSizingBottomSheet(platform::Binding<bool> isPresented, SelfSizingBottomSheetOptions options,
                           MakeContent content)
{
    return SelfSizingBottomSheet<MakeContent>{.isPresented = std::move(isPresented),
                                              .showsTopIndicator = options.showsTopIndicator,
                                              .backgroundColor = std::move(options.backgroundColor),
                                              .content = std::move(content)};
}
template <class MakeContent>
auto selfSizingBottomSheet(platform::Binding<bool> isPresented, MakeContent content)
{
    return selfSizingBottomSheet(std::move(isPresented), {}, std::move(content));
}

} // namespace zelk
