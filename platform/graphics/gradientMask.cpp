// SPDX-License-Identifier: MIT
#include "platform/graphics/gradientMask.h"

#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContextBackend_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace platform {

namespace {

// --- How opaque the gradient is --------------------------------------------------------------------

// The mask's alpha along its line, straight from stop to stop, and the same before the first and after the last.
class AlphaRamp {
public:
    AlphaRamp(const std::vector<GradientStop>& stops, ColorAppearance appearance)
    {
        for (auto& stop : stops) {
            auto place = std::clamp(stop.location, 0.0, 1.0);
            knots_.push_back({knots_.empty() ? place : std::max(place, knots_.back().place),
                              double(qColor(stop.color, appearance).alpha())});
        }
        for (std::size_t i = 0; i + 1 < knots_.size(); ++i) {
            auto length = knots_[i + 1].place - knots_[i].place;
            knots_[i].slope = length > 0 ? (knots_[i + 1].alpha - knots_[i].alpha) / length : 0;
        }
    }
    // Calls `take` with the alpha, 0 to 255, at so many places one step apart.
    void sample(double start, double step, std::size_t count, auto take) const
    {
        std::size_t next = 0; // knot, the first behind the place
        for (std::size_t i = 0; i < count; ++i) {
            auto place = start + step * double(i);
            while (next < knots_.size() && knots_[next].place <= place)
                ++next;
            while (next > 0 && knots_[next - 1].place > place)
                --next;
            if (next == 0)
                take(knots_.front().alpha);
            else if (next == knots_.size())
                take(knots_.back().alpha);
            else
                take(knots_[next - 1].alpha + knots_[next - 1].slope * (place - knots_[next - 1].place));
        }
    }

private:
    struct Knot {
        double place, alpha, slope = 0; // to the next one
    };
    std::vector<Knot> knots_;
};

// --- Pixels ----------------------------------------------------------------------------------------

// The four channels of a pixel are multiplied by the same.
using Factor = std::uint64_t;

Factor factorOf(double alpha)
{
    return Factor(alpha + 0.5) * 0x0001'0001'0001'0001;
}

#if defined(__SSE2__)
__m128i scaled(__m128i colors, const Factor* factors)
{
    auto products =
        _mm_add_epi16(_mm_mullo_epi16(colors, _mm_loadu_si128(reinterpret_cast<const __m128i*>(factors))),
                      _mm_set1_epi16(128));
    return _mm_srli_epi16(_mm_add_epi16(products, _mm_srli_epi16(products, 8)), 8);
}
#endif

// Premultiplied pixels.
void multiply(std::uint8_t* pixels, const Factor* factors, std::size_t count)
{
#if defined(__SSE2__)
    auto zero = _mm_setzero_si128();
    for (; count >= 4; count -= 4, pixels += 16, factors += 4) {
        auto* four = reinterpret_cast<__m128i*>(pixels);
        auto colors = _mm_loadu_si128(four);
        _mm_storeu_si128(four,
                         _mm_packus_epi16(scaled(_mm_unpacklo_epi8(colors, zero), factors),
                                          scaled(_mm_unpackhi_epi8(colors, zero), factors + 2)));
    }
#endif
    for (; count > 0; --count, pixels += 4, ++factors) {
        for (int i = 0; i < 4; ++i) {
            auto product = pixels[i] * (*factors & 255) + 128;
            pixels[i] = std::uint8_t((product + (product >> 8)) >> 8);
        }
    }
}

// What rows of pixels are multiplied by. One row looks like the one above, moved by a part of a pixel or a few: all are
// windows onto one ramp, which is worked out at each quarter of a pixel.
class RampRows {
public:
    // Of an area's pixels: the place on the ramp of the first one, and what each one to the right or below adds.
    RampRows(const AlphaRamp& ramp, double first, double right, double down, QSize size)
        : ramp_(ramp)
        , first_(first)
        , right_(right)
        , down_(down)
        , width_(std::size_t(size.width()))
    {
        constexpr double steepest = 3; // pixels that a row may be moved against the one above
        auto shift = right == 0 ? INFINITY : down / right;
        if (!(std::abs(shift) <= steepest))
            return;
        shift_ = shift;
        lowest_ = std::floor(std::min(shift * size.height(), 0.0)) - 1;
        auto length = width_ + std::size_t(std::ceil(std::max(shift * size.height(), 0.0)) + 1 - lowest_);
        for (auto& phase : phases_)
            phase.reserve(length);
        std::size_t number = 0;
        ramp.sample(first + right * lowest_, right / double(phases_.size()), length * phases_.size(),
                    [&](double alpha) { phases_[number++ % phases_.size()].push_back(factorOf(alpha)); });
    }
    const Factor* row(int y)
    {
        if (!phases_.front().empty()) {
            auto number = std::size_t(std::round((shift_ * y - lowest_) * double(phases_.size())));
            return phases_[number % phases_.size()].data() + number / phases_.size();
        }
        row_.clear();
        if (right_ == 0)
            ramp_.sample(first_ + down_ * y, 0, 1,
                         [&](double alpha) { row_.assign(width_, factorOf(alpha)); });
        else
            ramp_.sample(first_ + down_ * y, right_, width_,
                         [&](double alpha) { row_.push_back(factorOf(alpha)); });
        return row_.data();
    }

private:
    const AlphaRamp& ramp_;
    const double first_, right_, down_;
    const std::size_t width_;
    double shift_ = 0, lowest_ = 0; // pixels
    std::array<std::vector<Factor>, 4> phases_;
    std::vector<Factor> row_;
};

} // namespace

void maskLayer(CGContext& context, const LinearGradientLine& gradient)
{
    auto& backend = context.backend();
    precondition(!backend.layers.empty(), "maskLayer needs a layer that was begun");
    backend.painter(); // all that was drawn is in the picture
    auto& [image, pixels, opacity, painter] = *backend.layers.back();
    if (pixels.isEmpty())
        return;
    auto& [stops, start, end] = gradient;
    if (stops.empty()) {
        image.fill(Qt::transparent);
        return;
    }
    // A pixel's place on the line: the same for steps across it, and growing evenly along it.
    CGPoint way = end - start;
    auto length = way.x * way.x + way.y * way.y;
    auto fromPixels = context.pixelTransform().inverted();
    auto placeOf = [&](CGPoint pixel) {
        auto from = fromPixels.apply(pixel) - start;
        return length > 0 ? (from.x * way.x + from.y * way.y) / length : 2; // after the last stop
    };
    CGPoint corner{pixels.left() + 0.5, pixels.top() + 0.5};
    auto first = placeOf(corner);
    auto right = placeOf(corner + CGPoint{1, 0}) - first, down = placeOf(corner + CGPoint{0, 1}) - first;
    AlphaRamp ramp(stops, backend.appearance);
    RampRows rows(ramp, first, right, down, image.size());
    auto* bits =
        const_cast<std::uint8_t*>(image.constBits()); // its painter is at rest, and it is nobody else's
    for (int y = 0; y < image.height(); ++y)
        multiply(bits + y * image.bytesPerLine(), rows.row(y), std::size_t(image.width()));
}

// --- What moves ------------------------------------------------------------------------------------

namespace {

// The box around the part of `bounds` whose distance from the origin, along `way`, is in between.
CGRect band(const CGRect& bounds, CGPoint way, CGFloat low, CGFloat high)
{
    auto distance = [&](CGPoint p) { return p.x * way.x + p.y * way.y; };
    std::array<CGPoint, 4> corners{bounds.origin, CGPoint{bounds.maxX(), bounds.minY()},
                                   CGPoint{bounds.maxX(), bounds.maxY()},
                                   CGPoint{bounds.minX(), bounds.maxY()}};
    auto result = CGRect::null();
    for (std::size_t i = 0; i < corners.size(); ++i) {
        auto a = corners[i], b = corners[(i + 1) % corners.size()];
        auto from = distance(a), to = distance(b);
        if (from >= low && from <= high)
            result = result.unionWith({a, {}});
        for (auto limit : {low, high}) {
            if ((from < limit) == (to < limit))
                continue;
            auto part = (limit - from) / (to - from);
            result = result.unionWith({{a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part}, {}});
        }
    }
    return result;
}

} // namespace

CGRect changedArea(const LinearGradientLine& before, const LinearGradientLine& after, CGRect bounds)
{
    auto isSameColor = [](const GradientStop& a, const GradientStop& b) { return a.color == b.color; };
    auto way = before.end - before.start, wayAfter = after.end - after.start;
    auto length = std::hypot(way.x, way.y);
    auto isParallel = way.x * wayAfter.x + way.y * wayAfter.y > 0
        && std::abs(way.x * wayAfter.y - way.y * wayAfter.x)
            <= 1e-9 * length * std::hypot(wayAfter.x, wayAfter.y);
    if (before.stops.empty() || !isParallel || !std::ranges::equal(before.stops, after.stops, isSameColor))
        return bounds;
    CGPoint unit{way.x / length, way.y / length};
    auto reach = [&](const LinearGradientLine& line) {
        auto at = [&](CGFloat part) {
            auto along = line.end - line.start;
            CGPoint place{line.start.x + along.x * part, line.start.y + along.y * part};
            return place.x * unit.x + place.y * unit.y;
        };
        return std::pair{at(line.stops.front().location), at(line.stops.back().location)};
    };
    auto [low, high] = reach(before);
    auto [lowAfter, highAfter] = reach(after);
    // Where both ends look alike, nothing has changed between the two bands.
    auto changed = isSameColor(before.stops.front(), before.stops.back())
        ? band(bounds, unit, low, high).unionWith(band(bounds, unit, lowAfter, highAfter))
        : band(bounds, unit, std::min(low, lowAfter), std::max(high, highAfter));
    return changed.isNull() ? changed : changed.insetBy(-1, -1).intersection(bounds);
}

} // namespace platform
