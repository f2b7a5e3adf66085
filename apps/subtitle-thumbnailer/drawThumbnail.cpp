// SPDX-License-Identifier: MIT
#include "apps/subtitle-thumbnailer/drawThumbnail.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/TextLayout.h"

#include <algorithm>
#include <cmath>

namespace thumbnail {

namespace {

using namespace platform;

// Below this the page is drawn larger and shrunk: glyphs of less than nine pixels are no letters.
constexpr double smallestPage = 96;

const UIColor paper{1, 1, 1}, ink{0.11, 0.11, 0.13}, faintInk{0.52, 0.54, 0.60};

// The sheet's measures for a picture `side` points wide.
struct Sheet {
    explicit Sheet(double side)
        : textSize(std::round(11.5 * std::pow(side / 128, 0.62)))
        , timeSize(std::round(std::max(8.0, textSize * 0.66)))
        , padding(std::round(side * 0.065))
        , fade(textSize * 2.2)
        , radius(side * 0.05)
        , border(side / 256)
        , frame{
              {std::round(side * 0.05), std::round(side * 0.02)},
              {side - 2 * std::round(side * 0.05), side - std::round(side * 0.02) - std::round(side * 0.06)}}
    {
    }

    double textSize, timeSize, padding, fade, radius, border;
    CGRect frame;
};

void drawSheet(CGContext& context, const Sheet& sheet)
{
    auto& frame = sheet.frame;
    // A soft shadow: rounded rectangles, each a little smaller, that add up.
    constexpr int steps = 16;
    auto reach = sheet.radius * 0.9;
    for (int i = 0; i < steps; ++i) {
        auto grow = reach * (1 - 2.0 * i / steps);
        CGRect shade{{frame.origin.x - grow / 2, frame.origin.y + reach * 0.55 - grow / 2},
                     {frame.size.width + grow, frame.size.height + grow}};
        context.fill(UIBezierPath::roundedRect(shade, sheet.radius + std::max(0.0, grow / 2)),
                     UIColor{0.05, 0.06, 0.12, 0.016});
    }
    context.fill(UIBezierPath::roundedRect(frame, sheet.radius), paper);
}

void drawEdge(CGContext& context, const Sheet& sheet)
{
    auto& frame = sheet.frame;
    CGRect edge{{frame.origin.x + sheet.border / 2, frame.origin.y + sheet.border / 2},
                {frame.size.width - sheet.border, frame.size.height - sheet.border}};
    context.stroke(UIBezierPath::roundedRect(edge, sheet.radius), UIColor{0.05, 0.06, 0.12, 0.16},
                   {.lineWidth = sheet.border});
}

// The text goes on beyond the page.
void drawFade(CGContext& context, const Sheet& sheet)
{
    auto& frame = sheet.frame;
    auto bottom = frame.origin.y + frame.size.height;
    CGRect end{{frame.origin.x, bottom - sheet.fade}, {frame.size.width, sheet.fade + 1}};
    context.clip(end);
    const GradientStop stops[] = {{0, paper.withAlphaComponent(0)}, {0.8, paper}};
    context.drawLinearGradient(stops, end.origin, {end.origin.x, bottom});
}

// Paints the cue with its top at `top`, and gives where the next one may begin.
double drawCue(CGContext& context, const Sheet& sheet, const Cue& cue, double top)
{
    auto left = sheet.frame.origin.x + sheet.padding;
    auto width = sheet.frame.size.width - 2 * sheet.padding;
    auto bottom = sheet.frame.origin.y + sheet.frame.size.height;

    TextStyle style{.font = UIFont::systemFont(sheet.textSize)};
    std::vector<TextLayout> paragraphs;
    for (std::string_view rest = cue.text; !rest.empty();) {
        auto end = std::min(rest.find('\n'), rest.size());
        paragraphs.emplace_back(rest.substr(0, end), style, width);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    TextStyle timeStyle{.font = UIFont::systemFont(sheet.timeSize), .lineBreak = LineBreak::none};
    TextLayout time(cue.time, timeStyle);
    // The time stands where the text begins: on the right of Arabic and Hebrew.
    bool isRightToLeft = !paragraphs.empty() && paragraphs.front().isRightToLeft();
    time.draw(context, {isRightToLeft ? left + width - time.size().width : left, top}, faintInk);
    top += time.size().height * 1.02;
    for (auto& paragraph : paragraphs) {
        if (top < bottom)
            paragraph.draw(context, {left, top}, ink);
        top += paragraph.size().height;
    }
    return top + sheet.textSize * 0.6;
}

} // namespace

Result<UIImage> drawThumbnail(std::span<const Cue> cues, int size)
{
    auto side = std::max<double>(size, smallestPage);
    Sheet sheet(side);
    return makeImage({side, side}, size / side, [&](CGContext& context) {
        drawSheet(context, sheet);
        {
            CGContextState state(context);
            context.clip(UIBezierPath::roundedRect(sheet.frame, sheet.radius));
            auto bottom = sheet.frame.origin.y + sheet.frame.size.height;
            auto top = sheet.frame.origin.y + sheet.padding * 0.9;
            for (auto& cue : cues) {
                // A cue of which no more than the time could be seen is left to the reader's imagination.
                if (top < bottom - sheet.fade)
                    top = drawCue(context, sheet, cue, top);
            }
            if (top > bottom)
                drawFade(context, sheet);
        }
        drawEdge(context, sheet);
    });
}

} // namespace thumbnail
