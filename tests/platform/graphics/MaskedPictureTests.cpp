// SPDX-License-Identifier: MIT
// What is kept of a masked picture must look as if all of it were painted anew.
#include "platform/graphics/MaskedPicture.h"

#include "tests/platform/graphics/Painting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace platform {
namespace {

constexpr CGSize size{120, 90};
const auto area = CGRect::make(8, 6, 90.5, 60.25);

// One colour from side to side, translucent ones over one another, ink, a hole, and nothing.
void drawContent(CGContext& context)
{
    context.fill(UIBezierPath::roundedRect(CGRect::make(10, 8, 80, 20), 6), UIColor::systemGray3());
    context.fill(CGRect::make(12, 32, 50, 20), UIColor(0.9, 0.2, 0.1, 0.5));
    context.fill(CGRect::make(40, 26, 70, 14), UIColor(0.1, 0.3, 0.9, 0.6));
    context.stroke(UIBezierPath::oval(CGRect::make(60, 34, 40, 30)), UIColor::systemGreen(),
                   {.lineWidth = 3});
    context.clear(CGRect::make(20, 34, 9, 9));
}

struct Case {
    const char* name;
    CGPoint start, end;
    std::vector<CGFloat> alphas{0.3, 1, 0.3};
    CGAffineTransform map{};
    CGFloat scale = 1, alpha = 1;
    enum Ground { none, plain, drawn } ground = plain;
    bool isClipped = false;
    std::vector<CGFloat> places{}; // of the stops; none: evenly
};

UIImage picture(const Case& each, MaskedPicture* kept)
{
    MaskGradient mask{{{}, each.start, each.end}, CGAffineTransform::scale(1.1, 0.9), {}};
    for (std::size_t i = 0; i < each.alphas.size(); ++i)
        mask.line.stops.push_back(
            {each.places.empty() ? CGFloat(i) / CGFloat(each.alphas.size() - 1) : each.places[i],
             UIColor::gray(0, each.alphas[i])});
    auto wasKept = false;
    auto image = painted(size, each.scale, [&](CGContext& context) {
        if (each.ground != Case::none)
            context.fill({{}, size}, UIColor::systemYellow());
        if (each.ground == Case::drawn)
            context.fill(UIBezierPath::oval(CGRect::make(20, 10, 60, 60)), UIColor::systemBlue());
        if (each.isClipped)
            context.clip(UIBezierPath::oval({{}, size}));
        context.concat(each.map);
        wasKept = kept && kept->paint(context, area, area, mask, each.alpha, drawContent);
        if (wasKept)
            return;
        context.beginLayer(area, each.alpha);
        drawContent(context);
        maskLayer(context, mask);
        context.endLayer();
    });
    EXPECT_EQ(wasKept, kept != nullptr) << each.name;
    return image;
}

int greatestDifference(const UIImage& a, const UIImage& b)
{
    double most = 0;
    for (int y = 0; y < a.pixelHeight(); ++y) {
        for (int x = 0; x < a.pixelWidth(); ++x) {
            auto p = a.pixel(x, y).components(), q = b.pixel(x, y).components();
            // As painted: what is nearly clear has hardly a colour.
            for (auto [one, other] : {std::pair{p.red * p.alpha, q.red * q.alpha},
                                      {p.green * p.alpha, q.green * q.alpha},
                                      {p.blue * p.alpha, q.blue * q.alpha},
                                      {p.alpha, q.alpha}})
                most = std::max(most, std::abs(one - other) * 255);
        }
    }
    return int(std::lround(most));
}

TEST(MaskedPicture, looks_as_if_it_were_painted_anew)
{
    auto turned = CGAffineTransform::rotation(0.3).concatenating(CGAffineTransform::translation(22.5, -3));
    const Case cases[]{
        {"a sweep", {0, 0}, {50, 20}},
        {"from the right", {90, -10}, {40, 30}},
        {"from right to left, mirrored", {0, 0}, {50, 20}, {0.3, 1, 0.3}, {-1, 0, 0, 1, 110, 0}},
        {"across", {20, 0}, {70, 0}},
        {"down, over what is there", {0, 10}, {0, 40}, {1, 0, 0.7}, {}, 1, 1, Case::drawn},
        {"nearly down", {0, 10}, {1, 40}},
        {"steep", {40, 10}, {43, 11}, {0, 1}},
        {"a step", {40, 10}, {40.001, 10}, {0, 1}},
        {"of no length", {40, 10}, {40, 10}, {0.2, 0.6}},
        {"turned", {0, 0}, {50, 20}, {0.3, 1, 0.3}, turned},
        {"turned, over what is there", {0, 0}, {50, 20}, {0.3, 1, 0.3}, turned, 2, 1, Case::drawn},
        {"at twice the scale", {0, 0}, {50, 20}, {0, 1, 0.5, 1}, {}, 2},
        {"between pixels",
         {0, 0},
         {50, 20},
         {0, 1},
         CGAffineTransform::translation(3.3, 4.7),
         1.5,
         1,
         Case::none},
        {"translucent", {0, 0}, {50, 20}, {0.3, 1, 0.3}, {}, 1, 0.6, Case::drawn},
        {"clipped to an oval", {0, 0}, {50, 20}, {0.3, 1, 0.3}, {}, 1, 0.6, Case::drawn, true},
        {"partly out of the picture", {0, 0}, {50, 20}, {0.3, 1}, CGAffineTransform::translation(-40, 50)},
    };
    for (const auto& each : cases) {
        MaskedPicture kept;
        auto first = Case{each};
        for (int frame = 0; frame < 2; ++frame) { // it is new
            auto image = painted(size, each.scale, [&](CGContext& context) {
                context.concat(each.map);
                EXPECT_FALSE(kept.paint(context, area, area, {}, 1, drawContent)) << each.name;
            });
        }
        // Wherever the gradient is by then.
        for (auto way : {0.0, 37.0}) {
            first.start.x = each.start.x + way;
            first.end.x = each.end.x + way;
            // The library rounds once more where a layer is translucent.
            EXPECT_LE(greatestDifference(picture(first, &kept), picture(first, nullptr)),
                      each.alpha < 1 ? 2 : 1)
                << each.name << " after " << way;
        }
    }
}

TEST(MaskedPicture, of_odd_stops_looks_as_that_of_plain_ones)
{
    using Places = std::vector<CGFloat>;
    for (const auto& [odd, plain] : {std::pair{Places{0, 0.5, 0.5, 1}, Places{0, 0.5, 0.5 + 1e-9, 1}},
                                     {Places{NAN, 0.5, 0.7, 1}, Places{0, 0.5, 0.7, 1}}}) {
        Case each{"odd stops", {10, 0}, {90, 31}, {0.2, 0.3, 1, 0.9}};
        each.places = odd;
        auto image = picture(each, nullptr);
        each.places = plain;
        EXPECT_LE(greatestDifference(image, picture(each, nullptr)), 1) << odd[0];
    }
}

constexpr int never = 100;
int framesUntilKept(MaskedPicture& kept, CGFloat scale = 1,
                    const std::function<void(CGContext&)>& draw = drawContent)
{
    auto wasKept = false;
    for (int frame = 0; frame < never; ++frame) {
        painted(size, scale,
                [&](CGContext& context) { wasKept = kept.paint(context, area, area, {}, 1, draw); });
        if (wasKept)
            return frame;
    }
    return never;
}

TEST(MaskedPicture, is_made_seldom_of_what_changes_often_and_not_of_what_changes_meanwhile)
{
    MaskedPicture kept;
    std::vector<int> waits;
    for (auto framesServed : {0, 0, 0, 12, 0}) {
        waits.push_back(framesUntilKept(kept));
        for (int frame = 0; frame < framesServed; ++frame)
            framesUntilKept(kept);
        kept.contentDidChange();
    }
    EXPECT_EQ(waits, (std::vector{2, 4, 8, 16, 2}));
    MaskedPicture another;
    auto changesOnce = [&, isNew = true](CGContext&) mutable {
        if (std::exchange(isNew, false))
            another.contentDidChange();
    };
    EXPECT_EQ(framesUntilKept(another, 1, changesOnce), 2 + 1 + 4);
}

TEST(MaskedPicture, takes_little_room_by_itself_and_with_all_others)
{
    auto drawManyColors = [](CGContext& context) {
        const GradientStop stops[]{{0, UIColor::white()}, {1, UIColor::black()}};
        context.drawLinearGradient(stops, area.origin, {area.maxX(), 0});
    };
    auto isKept = [&](MaskedPicture& each) { return framesUntilKept(each, 3, drawManyColors) < never; };
    {
        std::vector<MaskedPicture> many(100); // of about 200 kB
        EXPECT_NEAR(double(std::ranges::count_if(many, isKept)), 85, 5);
    }
    MaskedPicture another, large;
    EXPECT_TRUE(isKept(another)) << "the others are gone";
    EXPECT_EQ(framesUntilKept(large, 4, drawManyColors), never);
}

} // namespace
} // namespace platform
