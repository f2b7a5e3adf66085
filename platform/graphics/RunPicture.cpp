// SPDX-License-Identifier: MIT
#include "platform/graphics/RunPicture_p.h"

#include <algorithm>
#include <cstring>

namespace platform {

namespace {

constexpr int shortestGap = 4;         // pixels; what is clear for less is painted with the rest
constexpr int shortestRun = 12;        // of one colour
constexpr std::size_t mostColors = 16; // each has tables of its own while it is painted

int lengthOfRun(const QRgb* pixels, int width)
{
    return int(std::find_if(pixels + 1, pixels + width, [&](QRgb pixel) { return pixel != *pixels; })
               - pixels);
}

} // namespace

RunPicture::RunPicture(const QImage& image)
    : size_(image.size())
{
    rows_.reserve(std::size_t(size_.height()) + 1);
    for (int y = 0; y < size_.height(); ++y) {
        rows_.push_back(std::uint32_t(runs_.size()));
        encodeRow(reinterpret_cast<const QRgb*>(image.constScanLine(y)), size_.width());
    }
    rows_.push_back(std::uint32_t(runs_.size()));
    runs_.shrink_to_fit();
    pixels_.shrink_to_fit();
}

std::size_t RunPicture::byteCount() const
{
    return runs_.size() * sizeof(Run) + (rows_.size() + pixels_.size() + colors_.size()) * sizeof(QRgb);
}

std::int32_t RunPicture::colorNumber(QRgb color)
{
    auto found = std::ranges::find(colors_, color);
    if (found == colors_.end() && colors_.size() == mostColors)
        return -1;
    auto number = std::int32_t(found - colors_.begin());
    if (found == colors_.end())
        colors_.push_back(color);
    return number;
}

void RunPicture::encodeRow(const QRgb* pixels, int width)
{
    auto rowBegins = runs_.size();
    for (int x = 0; x < width;) {
        auto length = lengthOfRun(pixels + x, width - x);
        if (pixels[x] == 0 && (length >= shortestGap || x == 0 || x + length == width)) {
            x += length;
            continue;
        }
        auto color = length >= shortestRun ? colorNumber(pixels[x]) : -1;
        auto place = std::uint32_t(pixels_.size());
        if (color < 0) {
            pixels_.insert(pixels_.end(), pixels + x, pixels + x + length);
            auto continues = runs_.size() > rowBegins && runs_.back().color < 0 && runs_.back().end() == x;
            if (continues)
                runs_.back().length += length;
            else
                runs_.push_back({x, length, color, place});
        } else {
            runs_.push_back({x, length, color, place});
        }
        x += length;
    }
}

namespace {

// What painting under a mask works out on its way. Placeholders of one size need the same, and often stand one below another:
// so the last is kept. Main thread only.
struct MaskTables {
    GradientRows rows;
    std::optional<QRgb> ground;
    std::vector<QRgb> colors;
    std::vector<MaskedColor> masked; // these colours
};

MaskTables& tablesFor(const GradientRows& rows, const std::optional<QRgb>& ground,
                      const std::vector<QRgb>& colors)
{
    static std::optional<MaskTables> last;
    if (last && last->ground == ground && last->colors == colors && last->rows.looksLike(rows))
        return *last;
    last = {rows, ground, colors, {}};
    for (auto color : colors)
        last->masked.emplace_back(color, ground);
    return *last;
}

} // namespace

void RunPicture::paint(const Target& target, QPoint place, QRect area, const GradientRows& mask) const
{
    auto& tables = tablesFor(mask, target.ground, colors_);
    auto* row = pixelsOf(*target.image, area.top() - target.origin.y()) + (area.left() - target.origin.x());
    auto stride = target.image->bytesPerLine() / qsizetype(sizeof(QRgb));
    // All in the picture's coordinates from here on.
    auto left = area.left() - place.x(), right = left + area.width();
    auto fill = [&](int from, int to) {
        if (target.ground && from < to)
            std::fill(row + (from - left), row + (to - left), *target.ground);
    };
    std::vector<QRgb> masked;
    for (int y = 0; y < area.height(); ++y, row += stride) {
        auto number = std::size_t(area.top() - place.y() + y);
        auto run = runs_.begin() + rows_[number], end = runs_.begin() + rows_[number + 1];
        auto x = left;
        for (run = std::partition_point(run, end, [&](const Run& each) { return each.end() <= left; });
             run != end && run->x < right; ++run) {
            auto from = std::max(run->x, left);
            fill(x, from);
            x = std::min(run->end(), right);
            auto count = std::size_t(x - from);
            if (run->color >= 0) {
                auto* colored = tables.masked[std::size_t(run->color)].row(tables.rows, y) + (from - left);
                if (target.ground)
                    std::memcpy(row + (from - left), colored, count * sizeof(QRgb));
                else
                    blendPixels(row + (from - left), colored, count);
                continue;
            }
            auto* own = pixels_.data() + run->pixels + (from - run->x);
            masked.assign(own, own + count);
            multiplyPixels(masked.data(), tables.rows.row(y) + (from - left), count);
            fill(from, x);
            blendPixels(row + (from - left), masked.data(), count);
        }
        fill(x, right);
    }
}

} // namespace platform
