// SPDX-License-Identifier: MIT
#include "platform/graphics/GradientRows_p.h"

#include "platform/graphics/CGContextBackend_p.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

GradientRows::GradientRows(const MaskGradient& mask, const CGAffineTransform& toPixels, QRect pixels,
                           double alpha)
    : width_(std::size_t(pixels.width()))
    , height_(pixels.height())
{
    auto& [stops, start, end] = mask.line;
    for (auto& stop : stops) {
        auto place = std::isnan(stop.location) ? 0 : std::clamp(stop.location, 0.0, 1.0);
        knots_.push_back({knots_.empty() ? place : std::max(place, knots_.back().place),
                          qColor(stop.color, mask.appearance).alpha() * std::clamp(alpha, 0.0, 1.0)});
    }
    if (knots_.empty())
        knots_.push_back({0, 0}); // nothing is left
    for (std::size_t i = 0; i + 1 < knots_.size(); ++i) {
        auto slope = (knots_[i + 1].alpha - knots_[i].alpha) / (knots_[i + 1].place - knots_[i].place);
        knots_[i].slope = std::isfinite(slope) ? slope : 0; // a step
    }

    // A pixel's place on the line: the same for steps across it, and growing evenly along it.
    CGPoint way = end - start;
    auto length = way.x * way.x + way.y * way.y;
    auto fromPixels = mask.toContext.concatenating(toPixels).inverted();
    auto placeOf = [&](CGPoint pixel) {
        auto from = fromPixels.apply(pixel) - start;
        return length > 0 ? (from.x * way.x + from.y * way.y) / length : 2; // after the last stop
    };
    CGPoint corner{pixels.left() + 0.5, pixels.top() + 0.5};
    first_ = placeOf(corner);
    right_ = placeOf(corner + CGPoint{1, 0}) - first_;
    down_ = placeOf(corner + CGPoint{0, 1}) - first_;

    if (!std::isfinite(first_ + right_ + down_)) {
        knots_.erase(knots_.begin(), knots_.end() - 1);
        first_ = right_ = down_ = 0;
    }
    if (right_ == 0)
        return;
    shift_ = down_ / right_;
    lowest_ = std::floor(std::min(shift_ * height_, 0.0)) - 1;
    double steepest = 1; // levels a pixel
    for (std::size_t i = 0; i + 1 < knots_.size(); ++i) {
        auto isStep = knots_[i].slope == 0 && knots_[i].alpha != knots_[i + 1].alpha;
        steepest = std::max(steepest, isStep ? INFINITY : std::abs(knots_[i].slope * right_));
    }
    // The nearest of them is off by half a level at most.
    constexpr double most = 64;
    constexpr double mostFactors = 65536; // they are kept
    auto bits = shift_ == 0 ? 0 : int(std::ceil(std::log2(std::min(steepest, most))));
    if (steepest <= most && double(1 << bits) * longest() <= std::min(double(width_) * height_, mostFactors))
        phaseBits_ = bits;
    if (isTable())
        phases_.resize(phaseCount());
}

double GradientRows::longest() const
{
    return double(width_) + std::ceil(std::max(shift_ * height_, 0.0)) + 1 - lowest_;
}

bool GradientRows::looksLike(const GradientRows& other) const
{
    constexpr double invisible = 1e-7; // of the line
    auto isNear = [&](double a, double b, double pixels) { return std::abs(a - b) * pixels < invisible; };
    return width_ == other.width_ && height_ == other.height_ && knots_ == other.knots_
        && isNear(first_, other.first_, 1) && isNear(right_, other.right_, double(width_))
        && isNear(down_, other.down_, height_);
}

const std::vector<PixelFactor>& GradientRows::phase(std::size_t number)
{
    auto& phase = phases_[number];
    if (phase.empty()) {
        phase.resize(std::size_t(longest()));
        sample(first_ + right_ * (lowest_ + double(number) / double(phaseCount())), right_, phase);
    }
    return phase;
}

// At places one step apart.
void GradientRows::sample(double start, double step, std::vector<PixelFactor>& factors) const
{
    auto isBehind = [](double place, const Knot& knot) { return place < knot.place; };
    for (std::size_t i = 0; i < factors.size();) {
        auto place = start + step * double(i);
        auto next = std::upper_bound(knots_.begin(), knots_.end(), place, isBehind);
        auto isInside = next != knots_.begin() && next != knots_.end();
        auto& from = next == knots_.begin() ? *next : *(next - 1);
        auto alpha = isInside ? from.alpha + from.slope * (place - from.place) : from.alpha;
        auto slope = isInside ? from.slope * step : 0;
        // As far as the next knot on the way.
        auto rest = double(factors.size() - i), count = rest;
        if (step > 0 && next != knots_.end())
            count = std::ceil((next->place - place) / step);
        else if (step < 0 && next != knots_.begin())
            count = std::floor((from.place - place) / step) + 1;
        auto end = i + std::size_t(count < rest ? std::max(count, 1.0) : rest);
        for (int number = 0; i < end; ++i, ++number)
            factors[i] = pixelFactor(std::uint8_t(std::clamp(alpha + slope * number, 0.0, 255.0) + 0.5));
    }
}

const PixelFactor* GradientRows::row(int y)
{
    if (isTable()) {
        auto [number, offset] = place(y);
        return phase(number).data() + offset;
    }
    if (std::exchange(rowNumber_, y) != y) {
        row_.resize(width_);
        sample(first_ + down_ * y, right_, row_);
    }
    return row_.data();
}

const QRgb* MaskedColor::row(GradientRows& rows, int y)
{
    if (!rows.isTable()) {
        if (std::exchange(rowNumber_, y) != y)
            paint(row_, rows.row(y), rows.width());
        return row_.data();
    }
    auto [number, offset] = rows.place(y);
    if (phases_.empty())
        phases_.resize(rows.phaseCount());
    auto& phase = phases_[number];
    if (phase.empty())
        paint(phase, rows.phase(number).data(), rows.phase(number).size());
    return phase.data() + offset;
}

void MaskedColor::paint(std::vector<QRgb>& pixels, const PixelFactor* factors, std::size_t count) const
{
    pixels.assign(count, color_);
    multiplyPixels(pixels.data(), factors, count);
    if (!ground_)
        return;
    std::vector<QRgb> painted(count, *ground_);
    blendPixels(painted.data(), pixels.data(), count);
    pixels = std::move(painted);
}

} // namespace platform
