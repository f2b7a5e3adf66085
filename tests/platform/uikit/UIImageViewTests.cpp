// SPDX-License-Identifier: MIT
#include "platform/uikit/UIImageView.h"

#include "platform/graphics/CGContext.h"
#include "platform/uikit/snapshot.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(UIViewContentMode, PlacesContentInItsBounds)
{
    using enum UIViewContentMode;
    constexpr CGSize wide{20, 10};
    const std::tuple<std::string_view, UIViewContentMode, CGSize, CGRect> cases[] = {
        {"scaleToFill", scaleToFill, wide, CGRect::make(10, 10, 100, 100)},
        {"scaleAspectFit", scaleAspectFit, wide, CGRect::make(10, 35, 100, 50)},
        {"scaleAspectFill", scaleAspectFill, wide, CGRect::make(-40, 10, 200, 100)},
        {"center", center, wide, CGRect::make(50, 55, 20, 10)},
        {"topLeft", topLeft, wide, CGRect::make(10, 10, 20, 10)},
        {"topRight", topRight, wide, CGRect::make(90, 10, 20, 10)},
        {"bottomLeft", bottomLeft, wide, CGRect::make(10, 100, 20, 10)},
        {"bottomRight", bottomRight, wide, CGRect::make(90, 100, 20, 10)},
        {"larger than the bounds", center, {300, 10}, CGRect::make(-90, 55, 300, 10)},
        {"without area", scaleAspectFill, {0, 10}, CGRect::make(60, 55, 0, 10)},
    };
    for (auto& [name, mode, size, place] : cases)
        EXPECT_EQ(contentRect(mode, size, CGRect::make(10, 10, 100, 100)), place) << name;
}

TEST(UIImageView, ATemplateIsPaintedInTheTintColour)
{
    auto red = makeImage(
        {4, 4}, 1, [](CGContext& context) { context.fill(CGRect::make(0, 0, 4, 4), UIColor(1, 0, 0)); });
    ASSERT_TRUE(red);
    auto view = std::make_shared<UIImageView>(*red);
    view->setTintColor(UIColor(0, 0, 1));
    auto middle = [&] {
        auto image = snapshot(*view, {4, 4}, 1);
        return image ? image->pixel(2, 2).components() : ColorComponents{};
    };
    EXPECT_GT(middle().red, 0.95);
    view->setImage(red->withRenderingMode(UIImage::RenderingMode::alwaysTemplate));
    EXPECT_GT(middle().blue, 0.95);
    EXPECT_LT(middle().red, 0.05);
    EXPECT_EQ(view->intrinsicContentSize(), (CGSize{4, 4}));
    view->setImage({});
    EXPECT_EQ(view->intrinsicContentSize().width, noIntrinsicMetric);
    EXPECT_EQ(middle().alpha, 0);
}

} // namespace
} // namespace platform
