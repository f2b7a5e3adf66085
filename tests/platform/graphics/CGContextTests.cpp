// SPDX-License-Identifier: MIT
#include "platform/graphics/CGContext.h"

#include "tests/platform/graphics/Painting.h"

#include <gtest/gtest.h>

#include <numbers>

namespace platform {
namespace {

const auto whole = CGRect::make(0, 0, 40, 40);

TEST(CGContextTests, aFillCoversItsRectangleAtEveryScale)
{
    for (double scale : {1.0, 1.5, 2.0, 3.0}) {
        auto image = painted({40, 40}, scale, [](CGContext& context) {
            context.fill(CGRect::make(10, 20, 10, 4), UIColor::red());
        });
        EXPECT_EQ(image.size(), (CGSize{40, 40}));
        EXPECT_EQ(inkBox(image), CGRect::make(10 * scale, 20 * scale, 10 * scale, 4 * scale)) << scale;
    }
}

TEST(CGContextTests, anEdgeWithinAPixelIsAntialiased)
{
    auto image = painted({40, 40}, 1, [](CGContext& context) {
        context.fill(CGRect::make(10.5, 10, 10, 10), UIColor::red());
    });
    EXPECT_NEAR(alphaAt(image, 10, 15), 128, 2);
    EXPECT_EQ(alphaAt(image, 11, 15), 255);
    EXPECT_NEAR(alphaAt(image, 20, 15), 128, 2);
}

TEST(CGContextTests, dynamicColorsAreResolvedInTheContextsAppearance)
{
    auto draw = [](CGContext& context) {
        context.fill(CGRect::make(0, 0, 20, 40), UIColor::systemBackground());
        CGContextState state(context);
        context.setAppearance({.isDark = !context.appearance().isDark});
        context.fill(CGRect::make(20, 0, 20, 40), UIColor::systemBackground());
    };
    auto light = painted({40, 40}, 1, draw);
    auto dark = painted({40, 40}, 1, draw, {.isDark = true});
    EXPECT_TRUE(hasColor(light, 5, 5, UIColor::white()));
    EXPECT_TRUE(hasColor(light, 25, 5, UIColor::black()));
    EXPECT_TRUE(hasColor(dark, 5, 5, UIColor::black()));
    EXPECT_TRUE(hasColor(dark, 25, 5, UIColor::white()));
}

TEST(CGContextTests, restoringBringsBackTransformClipAndAppearance)
{
    auto image = painted({40, 40}, 2, [](CGContext& context) {
        {
            CGContextState state(context);
            context.translate(10, 10);
            context.concat(CGAffineTransform::scale(2, 2));
            context.clip(CGRect::make(0, 0, 5, 5));
            EXPECT_EQ(context.clipBounds(), CGRect::make(0, 0, 5, 5));
            context.fill(CGRect::make(-100, -100, 1000, 1000), UIColor::red());
        }
        EXPECT_TRUE(context.transform().isIdentity());
        EXPECT_EQ(context.clipBounds(), whole);
        context.fill(CGRect::make(30, 30, 5, 5), UIColor::blue());
    });
    EXPECT_TRUE(hasColor(image, 20, 20, UIColor::red()));
    EXPECT_TRUE(hasColor(image, 39, 39, UIColor::red()));
    EXPECT_EQ(alphaAt(image, 40, 40), 0);
    EXPECT_EQ(alphaAt(image, 19, 19), 0);
    EXPECT_TRUE(hasColor(image, 60, 60, UIColor::blue()));
}

TEST(CGContextTests, aRoundedClipHasSoftEdgesAndOpenCorners)
{
    auto clipped = painted({40, 40}, 1, [](CGContext& context) {
        context.clip(UIBezierPath::roundedRect(whole, 12));
        context.fill(whole, UIColor::red());
    });
    auto filled = painted({40, 40}, 1, [](CGContext& context) {
        context.fill(UIBezierPath::roundedRect(whole, 12), UIColor::red());
    });
    int soft = 0;
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
            EXPECT_NEAR(alphaAt(clipped, x, y), alphaAt(filled, x, y), 4) << x << ", " << y;
            soft += alphaAt(clipped, x, y) > 10 && alphaAt(clipped, x, y) < 245;
        }
    }
    EXPECT_GT(soft, 20);
    EXPECT_EQ(alphaAt(clipped, 0, 0), 0);
}

TEST(CGContextTests, clipsOnlyEverShrink)
{
    struct Case {
        const char* name;
        std::function<void(CGContext&)> clip;
        CGRect ink; // null: nothing is painted
    };
    const Case cases[]{
        {"two rectangles",
         [](auto& c) {
             c.clip(CGRect::make(0, 0, 20, 20));
             c.clip(CGRect::make(10, 10, 20, 20));
         },
         CGRect::make(10, 10, 10, 10)},
        {"apart",
         [](auto& c) {
             c.clip(CGRect::make(0, 0, 5, 5));
             c.clip(CGRect::make(10, 10, 20, 20));
         },
         CGRect::null()},
        {"an empty rectangle", [](auto& c) { c.clip(CGRect::make(5, 5, 0, 10)); }, CGRect::null()},
        {"after an empty one nothing returns",
         [](auto& c) {
             c.clip(CGRect());
             c.clip(whole);
         },
         CGRect::null()},
        {"the null rectangle", [](auto& c) { c.clip(CGRect::null()); }, CGRect::null()},
        {"an empty path", [](auto& c) { c.clip(UIBezierPath()); }, CGRect::null()},
        {"a path after a rectangle",
         [](auto& c) {
             c.clip(CGRect::make(0, 0, 20, 40));
             c.clip(UIBezierPath::rect(CGRect::make(10, 0, 20, 40)));
         },
         CGRect::make(10, 0, 10, 40)},
        {"a rectangle in a layer",
         [](auto& c) {
             c.clip(CGRect::make(0, 0, 20, 20));
             c.clip(CGRect::make(-50, 10, 500, 500));
         },
         CGRect::make(0, 10, 20, 10)},
    };
    for (auto& row : cases) {
        SCOPED_TRACE(row.name);
        for (bool inLayer : {false, true}) {
            auto image = painted({40, 40}, 1, [&](CGContext& context) {
                if (inLayer)
                    context.beginLayer(whole);
                {
                    CGContextState state(context);
                    row.clip(context);
                    EXPECT_EQ(context.clipBounds().isEmpty(), row.ink.isNull());
                    context.fill(whole, UIColor::red());
                }
                if (inLayer)
                    context.endLayer();
            });
            EXPECT_EQ(inkBox(image), row.ink) << (inLayer ? "in a layer" : "directly");
        }
    }
}

TEST(CGContextTests, aTransparencyLayerFadesItsContentAsOnePicture)
{
    auto image = painted({40, 40}, 2, [](CGContext& context) {
        context.beginTransparencyLayer(whole, 0.5);
        context.fill(CGRect::make(0, 0, 30, 40), UIColor::red());
        context.fill(CGRect::make(10, 0, 30, 40), UIColor::blue());
        context.endTransparencyLayer();
    });
    EXPECT_TRUE(hasColor(image, 10, 10, UIColor(1, 0, 0, 0.5)));
    EXPECT_TRUE(hasColor(image, 40, 10, UIColor(0, 0, 1, 0.5))) << "the red under the blue does not show";
}

TEST(CGContextTests, aLayerKeepsNothingOutsideItsBoundsAndPaintsInPlaceUnderTransforms)
{
    auto draw = [](CGContext& context, bool inLayer) {
        context.translate(7, 9);
        context.concat(CGAffineTransform::scale(1.5, 1.5));
        if (inLayer)
            context.beginLayer(CGRect::make(0, 0, 10, 10));
        else
            context.clip(CGRect::make(0, 0, 10, 10));
        context.fill(UIBezierPath::oval(CGRect::make(-5, 2, 12, 12)), UIColor::green());
        if (inLayer)
            context.endLayer();
    };
    for (double scale : {1.0, 2.0}) {
        auto direct = painted({40, 40}, scale, [&](CGContext& context) { draw(context, false); });
        auto layered = painted({40, 40}, scale, [&](CGContext& context) { draw(context, true); });
        EXPECT_EQ(inkBox(direct), inkBox(layered));
        EXPECT_NEAR(inkAmount(direct), inkAmount(layered), 1);
        EXPECT_GT(inkAmount(direct), 50);
    }
}

TEST(CGContextTests, theMasksAlphaCutsTheContent)
{
    auto image = painted({40, 40}, 2, [](CGContext& context) {
        context.fill(whole, UIColor::white());
        context.translate(4, 0);
        context.beginLayer(CGRect::make(0, 0, 36, 40));
        context.translate(100, 100); // the content's own, which the mask does not see
        context.clip(CGRect::make(-100, -100, 40, 20));
        context.fill(CGRect::make(-100, -100, 40, 40), UIColor::red());
        context.maskLayer([](CGContext& mask) {
            mask.fill(CGRect::make(0, 0, 10, 40), UIColor::blue());
            mask.fill(CGRect::make(10, 0, 10, 40), UIColor::blue().withAlphaComponent(0.5));
        });
        context.endLayer();
    });
    EXPECT_TRUE(hasColor(image, 16, 10, UIColor::red()));
    EXPECT_TRUE(hasColor(image, 36, 10, UIColor(1, 0.5, 0.5)));
    EXPECT_TRUE(hasColor(image, 60, 10, UIColor::white()));
    EXPECT_TRUE(hasColor(image, 16, 60, UIColor::white())) << "the content was clipped there";
}

TEST(CGContextTests, layersNest)
{
    auto image = painted({40, 40}, 1, [](CGContext& context) {
        context.beginLayer(CGRect::make(5, 5, 30, 30), 0.5);
        context.beginLayer(CGRect::make(0, 0, 20, 20), 0.5);
        context.fill(whole, UIColor::red());
        context.endLayer();
        context.endLayer();
    });
    EXPECT_EQ(inkBox(image), CGRect::make(5, 5, 15, 15));
    EXPECT_NEAR(alphaAt(image, 10, 10), 64, 2);
}

TEST(CGContextTests, aLayerThatCannotBeSeenTakesDrawingAndPaintsNothing)
{
    for (double alpha : {0.0, 1.0}) {
        auto image = painted({40, 40}, 1, [alpha](CGContext& context) {
            context.beginLayer(alpha == 0 ? whole : CGRect::make(100, 100, 1e6, 1e6), alpha);
            EXPECT_TRUE(context.clipBounds().isEmpty());
            context.fill(CGRect::make(-1000, -1000, 2000, 2000), UIColor::red());
            context.maskLayer([](CGContext& mask) { mask.fill(whole, UIColor::red()); });
            context.endLayer();
            context.fill(CGRect::make(0, 0, 1, 1), UIColor::blue());
        });
        EXPECT_EQ(inkBox(image), CGRect::make(0, 0, 1, 1));
    }
}

TEST(CGContextTests, aGradientGoesFromItsFirstColorToItsLast)
{
    const GradientStop stops[]{{0, UIColor::red()}, {1, UIColor::blue()}};
    auto image = painted({40, 10}, 1,
                         [&](CGContext& context) { context.drawLinearGradient(stops, {10, 0}, {30, 0}); });
    EXPECT_TRUE(hasColor(image, 2, 5, UIColor::red()));
    EXPECT_TRUE(hasColor(image, 37, 5, UIColor::blue()));
    auto middle = image.pixel(20, 5).components();
    EXPECT_NEAR(middle.red, 0.5, 0.05);
    EXPECT_NEAR(middle.blue, 0.5, 0.05);
    auto point =
        painted({4, 4}, 1, [&](CGContext& context) { context.drawLinearGradient(stops, {1, 1}, {1, 1}); });
    EXPECT_TRUE(hasColor(point, 0, 0, UIColor::blue()));
    auto nothing =
        painted({4, 4}, 1, [&](CGContext& context) { context.drawLinearGradient({}, {0, 0}, {4, 4}); });
    EXPECT_TRUE(inkBox(nothing).isNull());
}

TEST(CGContextTests, aStrokeLiesAstrideItsPathAndDashesLeaveGaps)
{
    UIBezierPath line;
    line.moveTo({0, 20});
    line.addLine({40, 20});
    auto solid =
        painted({40, 40}, 1, [&](CGContext& c) { c.stroke(line, UIColor::black(), {.lineWidth = 4}); });
    EXPECT_EQ(inkBox(solid), CGRect::make(0, 18, 40, 4));
    auto dashed = painted({40, 40}, 1, [&](CGContext& c) {
        c.stroke(line, UIColor::black(), {.lineWidth = 4, .dash = {10, 6}});
    });
    EXPECT_EQ(alphaAt(dashed, 5, 20), 255);
    EXPECT_EQ(alphaAt(dashed, 13, 20), 0);
    EXPECT_EQ(alphaAt(dashed, 20, 20), 255);
    auto none =
        painted({40, 40}, 1, [&](CGContext& c) { c.stroke(line, UIColor::black(), {.lineWidth = 0}); });
    EXPECT_TRUE(inkBox(none).isNull()) << "a width of zero is no hairline";
}

TEST(CGContextTests, aTemplateTakesTheTintAndOtherPicturesKeepTheirColors)
{
    auto dot =
        painted({10, 10}, 1, [](CGContext& c) { c.fill(CGRect::make(0, 0, 5, 10), UIColor::green()); });
    auto draw = [](const UIImage& picture) {
        return painted({20, 20}, 1, [&](CGContext& c) {
            c.drawImage(picture, CGRect::make(0, 0, 20, 20), UIColor::red());
        });
    };
    EXPECT_TRUE(hasColor(draw(dot), 2, 10, UIColor::green()));
    auto asTemplate = draw(dot.withRenderingMode(UIImage::RenderingMode::alwaysTemplate));
    EXPECT_TRUE(hasColor(asTemplate, 2, 10, UIColor::red()));
    EXPECT_EQ(alphaAt(asTemplate, 15, 10), 0);
    EXPECT_TRUE(hasColor(draw(dot.asSymbol()), 2, 10, UIColor::red()));
    auto original = dot.asSymbol().withRenderingMode(UIImage::RenderingMode::alwaysOriginal);
    EXPECT_TRUE(hasColor(draw(original), 2, 10, UIColor::green()));
}

TEST(CGContextTests, aPictureDrawnMuchSmallerIsAveraged)
{
    auto stripes = painted({64, 64}, 1, [](CGContext& c) {
        for (int x = 0; x < 64; x += 2)
            c.fill(CGRect::make(x, 0, 1, 64), UIColor::black());
    });
    auto small = painted({8, 8}, 1, [&](CGContext& c) { c.drawImage(stripes, CGRect::make(0, 0, 8, 8)); });
    EXPECT_NEAR(alphaAt(small, 4, 4), 128, 6);
}

TEST(CGContextDeathTests, unbalancedStatesStopTheProcess)
{
    auto run = [](std::function<void(CGContext&)> draw) { (void)makeImage({4, 4}, 1, draw); };
    EXPECT_DEATH(run([](CGContext& c) { c.save(); }), "not restored");
    EXPECT_DEATH(run([](CGContext& c) { c.restore(); }), "not saved");
    EXPECT_DEATH(run([](CGContext& c) { c.endLayer(); }), "not begun");
    EXPECT_DEATH(run([](CGContext& c) {
                     c.save();
                     c.beginLayer(whole);
                     c.restore();
                 }),
                 "outside of the layer");
}

} // namespace
} // namespace platform
