// SPDX-License-Identifier: MIT
#include "platform/graphics/CGContext.h"

#include "tests/platform/graphics/Painting.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

const auto whole = CGRect::make(0, 0, 40, 40);

UIImage square(const std::function<void(CGContext&)>& draw, double scale = 1)
{
    return painted({40, 40}, scale, draw);
}

TEST(CGContextTests, aFillCoversItsRectangleAtEveryScale)
{
    for (double scale : {1.0, 1.5, 2.0, 3.0}) {
        auto image = square([](auto& c) { c.fill(CGRect::make(10, 20, 10, 4), UIColor::red()); }, scale);
        EXPECT_EQ(image.size(), (CGSize{40, 40}));
        EXPECT_EQ(inkBox(image), CGRect::make(10 * scale, 20 * scale, 10 * scale, 4 * scale)) << scale;
    }
}

TEST(CGContextTests, dynamicColorsAreResolvedInTheContextsAppearance)
{
    for (bool isDark : {false, true}) {
        auto draw = [&](CGContext& context) {
            context.fill(CGRect::make(0, 0, 20, 40), UIColor::systemBackground());
            context.setAppearance({.isDark = !isDark});
            context.fill(CGRect::make(20, 0, 20, 40), UIColor::systemBackground());
        };
        auto image = painted({40, 40}, 1, draw, {.isDark = isDark});
        EXPECT_TRUE(hasColor(image, 5, 5, isDark ? UIColor::black() : UIColor::white()));
        EXPECT_TRUE(hasColor(image, 25, 5, isDark ? UIColor::white() : UIColor::black()));
    }
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

TEST(CGContextTests, aRoundedClipHasTheSoftEdgesOfAFill)
{
    auto path = UIBezierPath::roundedRect(whole, 12);
    auto filled = square([&](auto& c) { c.fill(path, UIColor::red()); });
    auto clipped = square([&](auto& c) {
        c.clip(path);
        c.fill(whole, UIColor::red());
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
        std::vector<CGRect> clips;
        CGRect ink; // null: nothing is painted
    };
    const auto corner = CGRect::make(0, 0, 20, 20);
    const Case cases[]{
        {"two rectangles", {corner, CGRect::make(10, 10, 20, 20)}, CGRect::make(10, 10, 10, 10)},
        {"apart", {CGRect::make(0, 0, 5, 5), CGRect::make(10, 10, 20, 20)}, CGRect::null()},
        {"beyond all", {corner, CGRect::make(-50, 10, 500, 500)}, CGRect::make(0, 10, 20, 10)},
        {"empty", {CGRect::make(5, 5, 0, 10)}, CGRect::null()},
        {"after an empty one nothing returns", {CGRect(), whole}, CGRect::null()},
        {"null", {CGRect::null()}, CGRect::null()},
    };
    for (auto& row : cases) {
        for (bool inLayer : {false, true}) {
            for (bool isPath : {false, true}) {
                auto image = square([&](CGContext& context) {
                    if (inLayer)
                        context.beginLayer(whole);
                    for (auto& clip : row.clips) {
                        if (isPath)
                            context.clip(clip.isEmpty() ? UIBezierPath() : UIBezierPath::rect(clip));
                        else
                            context.clip(clip);
                    }
                    EXPECT_EQ(context.clipBounds().isEmpty(), row.ink.isNull()) << row.name;
                    context.fill(whole, UIColor::red());
                    if (inLayer)
                        context.endLayer();
                });
                EXPECT_EQ(inkBox(image), row.ink) << row.name << inLayer << isPath;
            }
        }
    }
}

TEST(CGContextTests, aTransparencyLayerFadesItsContentAsOnePictureAndNests)
{
    auto image = square([](CGContext& context) {
        context.beginTransparencyLayer(whole, 0.5);
        context.fill(CGRect::make(0, 0, 30, 40), UIColor::red());
        context.fill(CGRect::make(10, 0, 10, 40), UIColor::blue());
        context.beginLayer(CGRect::make(20, 0, 20, 40), 0.5);
        context.fill(whole, UIColor::blue());
        context.endLayer();
        context.endTransparencyLayer();
    });
    EXPECT_TRUE(hasColor(image, 5, 10, UIColor(1, 0, 0, 0.5)));
    EXPECT_TRUE(hasColor(image, 15, 10, UIColor(0, 0, 1, 0.5))) << "the red under the blue does not show";
    EXPECT_TRUE(hasColor(image, 25, 10, UIColor(0.5, 0, 0.5, 0.5)));
    EXPECT_TRUE(hasColor(image, 35, 10, UIColor(0, 0, 1, 0.25)));
}

TEST(CGContextTests, aLayerKeepsNothingOutsideItsBoundsAndPaintsInPlaceUnderTransforms)
{
    auto draw = [](CGContext& context, bool inLayer) {
        context.translate(7, 9);
        context.concat(CGAffineTransform::scale(1.5, 1.5));
        const auto bounds = CGRect::make(0, 0, 10, 10);
        inLayer ? context.beginLayer(bounds) : context.clip(bounds);
        context.fill(UIBezierPath::oval(CGRect::make(-5, 2, 12, 12)), UIColor::green());
        if (inLayer)
            context.endLayer();
    };
    for (double scale : {1.0, 2.0}) {
        auto direct = square([&](CGContext& context) { draw(context, false); }, scale);
        auto layered = square([&](CGContext& context) { draw(context, true); }, scale);
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

TEST(CGContextTests, aLayerThatCannotBeSeenTakesDrawingAndPaintsNothing)
{
    for (double alpha : {0.0, 1.0}) {
        auto image = square([alpha](CGContext& context) {
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
    auto gradient = [](std::vector<GradientStop> stops, double from, double to) {
        return square([&](CGContext& context) { context.drawLinearGradient(stops, {from, 0}, {to, 0}); });
    };
    const std::vector<GradientStop> stops{{0, UIColor::red()}, {1, UIColor::blue()}};
    auto image = gradient(stops, 10, 30);
    EXPECT_TRUE(hasColor(image, 2, 5, UIColor::red()));
    EXPECT_TRUE(hasColor(image, 37, 5, UIColor::blue()));
    EXPECT_NEAR(image.pixel(20, 5).components().red, 0.5, 0.05);
    EXPECT_TRUE(hasColor(gradient(stops, 1, 1), 0, 0, UIColor::blue())) << "without a length, the last";
    EXPECT_TRUE(inkBox(gradient({}, 0, 4)).isNull());
}

TEST(CGContextTests, aStrokeLiesAstrideItsPathAndDashesLeaveGaps)
{
    UIBezierPath line;
    line.moveTo({0, 20});
    line.addLine({40, 20});
    auto stroked = [&](StrokeStyle style) {
        return square([&](CGContext& c) { c.stroke(line, UIColor::black(), style); });
    };
    EXPECT_EQ(inkBox(stroked({.lineWidth = 4})), CGRect::make(0, 18, 40, 4));
    EXPECT_TRUE(inkBox(stroked({.lineWidth = 0})).isNull()) << "a width of zero is no hairline";
    auto dashed = stroked({.lineWidth = 4, .dash = {10, 6}});
    for (auto [x, alpha] : {std::pair(5, 255), {13, 0}, {20, 255}})
        EXPECT_EQ(alphaAt(dashed, x, 20), alpha) << x;
}

TEST(CGContextTests, aTemplateTakesTheTintAndOtherPicturesKeepTheirColors)
{
    using enum UIImage::RenderingMode;
    auto dot = painted({10, 10}, 1, [](auto& c) { c.fill(CGRect::make(0, 0, 5, 10), UIColor::green()); });
    auto draw = [](const UIImage& picture) {
        return square(
            [&](CGContext& c) { c.drawImage(picture, CGRect::make(0, 0, 20, 20), UIColor::red()); });
    };
    auto original = dot.asSymbol().withRenderingMode(alwaysOriginal);
    EXPECT_TRUE(hasColor(draw(dot), 2, 10, UIColor::green()));
    EXPECT_TRUE(hasColor(draw(original), 2, 10, UIColor::green()));
    for (auto& tinted : {dot.withRenderingMode(alwaysTemplate), dot.asSymbol()}) {
        EXPECT_TRUE(hasColor(draw(tinted), 2, 10, UIColor::red()));
        EXPECT_EQ(alphaAt(draw(tinted), 15, 10), 0);
    }
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

TEST(CGContextTests, aPictureIsCopiedToThePixelWhereItNeedNotBeScaled)
{
    for (double scale : {1.0, 1.5, 2.0, 3.0}) {
        // Each pixel differs from those beside it.
        auto checks = painted({8, 8}, scale, [&](CGContext& c) {
            for (int y = 0; y < 8 * scale; ++y)
                for (int x = y % 2; x < 8 * scale; x += 2)
                    c.fill(CGRect::make(x / scale, y / scale, 1 / scale, 1 / scale), UIColor::black());
        });
        auto drawnAt = [&](CGFloat x, bool isMirrored = false) {
            return painted({16, 8}, scale, [&](CGContext& c) {
                c.clip(CGRect::make(0, 0, 14, 8));
                if (isMirrored)
                    c.concat(CGAffineTransform{-1, 0, 0, 1, 16, 0});
                c.drawImage(checks, CGRect::make(x, 0, 8, 8));
            });
        };
        auto first = static_cast<int>(4 * scale);
        auto alphas = [&](const UIImage& image, int left) {
            std::vector<int> all;
            for (int y = 0; y < checks.pixelHeight(); ++y)
                for (int x = 0; x < checks.pixelWidth(); ++x)
                    all.push_back(alphaAt(image, left + x, y));
            return all;
        };
        EXPECT_EQ(alphas(drawnAt(4), first), alphas(checks, 0)) << scale;
        EXPECT_EQ(alphaAt(drawnAt(4, true), first, 0), alphaAt(checks, checks.pixelWidth() - 1, 0))
            << "mirrored";
    }
}

TEST(CGContextDeathTests, unbalancedStatesStopTheProcess)
{
    auto run = [](std::function<void(CGContext&)> draw) { (void)makeImage({4, 4}, 1, draw); };
    EXPECT_DEATH(run([](CGContext& c) { c.save(); }), "not restored");
    EXPECT_DEATH(run([](CGContext& c) { c.restore(); }), "not saved");
    EXPECT_DEATH(run([](CGContext& c) { c.endLayer(); }), "not begun");
    EXPECT_DEATH(run([](CGContext& c) { c.save(), c.beginLayer(whole), c.restore(); }),
                 "outside of the layer");
}

} // namespace
} // namespace platform
