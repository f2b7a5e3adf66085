// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/ViewTypes/ScrollViewType.h"
#include "introspect/introspect.h"
#include "kit/ui/ScrollViewIndicators.h"
#include "platform/swiftui/ScrollView.h"
#include "platform/swiftui/padding.h"
#include "platform/uikit/UIScrollView.h"

#include <functional>
#include <utility>

namespace zelk {

struct ZelkScrollViewOptions {
    platform::AxisSet axes = platform::AxisSet::vertical;
    ScrollViewIndicators indicators = ScrollViewIndicators::all;
    bool enableScrollOnDrag = true;
    bool clipsToBounds = true;
};

// A scroll view whose indicators are switched by system and whose platform view clips as told: without clipping, what
// its content shows outside, a shadow say, stays in sight.
template <platform::View Content>
struct ZelkScrollView {
    platform::AxisSet axes;
    ScrollViewIndicators indicators;
    bool enableScrollOnDrag; // kept; a drag scrolls as the platform has it
    bool clipsToBounds;
    std::function<Content()> content;

    ZelkScrollView(const ZelkScrollViewOptions& options, std::function<Content()> makeContent)
        : axes(options.axes)
        , indicators(options.indicators)
        , enableScrollOnDrag(options.enableScrollOnDrag)
        , clipsToBounds(options.clipsToBounds)
        , content(std::move(makeContent))
    {
    }

    auto body() const
    {
        using introspect::iOS;
        using introspect::scrollView;
        return platform::ScrollView{
                   {.axes = axes, .showsIndicators = indicators.contains(ScrollViewIndicators::iOS)},
                   content() | platform::padding(platform::EdgeSet::bottom, 0)}
        | introspect::introspect(
                   scrollView,
                   iOS(scrollView.iOS.v13, scrollView.iOS.v14, scrollView.iOS.v15, scrollView.iOS.v16,
                       scrollView.iOS.v17),
                   [clips = clipsToBounds](platform::UIScrollView& view) { view.setClipsToBounds(clips); });
    }
};

template <class MakeContent>
ZelkScrollView(ZelkScrollViewOptions, MakeContent)
    -> ZelkScrollView<decltype(std::declval<const MakeContent&>()())>;

} // namespace zelk
