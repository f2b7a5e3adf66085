// SPDX-License-Identifier: MIT
// Draws stills of a video, evenly spread, onto one sheet.
//
//   contact-sheet IN OUT.png [--count N] [--size WxH] [--tolerance SECONDS]
//
// Each still is at most W x H pixels. With a tolerance it may be of a moment so much earlier or later, which is faster.
#include "kit/media/thumbnailsPublisher.h"

#include "platform/avfoundation/AVURLAsset.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIImage.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

using namespace platform;

namespace {

struct Arguments {
    std::string_view input, output;
    int count = 20;
    int width = 320, height = 180;
    double tolerance = 0;
};

template <class Number>
bool read(std::string_view text, Number& number)
{
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

std::optional<Arguments> parse(int count, char** values)
{
    if (count < 3 || count % 2 == 0)
        return std::nullopt;
    Arguments arguments{.input = values[1], .output = values[2]};
    bool isRight = true;
    for (int i = 3; i < count; i += 2) {
        std::string_view name = values[i], value = values[i + 1];
        auto cross = value.find('x');
        if (name == "--count")
            isRight &= read(value, arguments.count);
        else if (name == "--size" && cross != value.npos)
            isRight &= read(value.substr(0, cross), arguments.width)
                && read(value.substr(cross + 1), arguments.height);
        else if (name == "--tolerance")
            isRight &= read(value, arguments.tolerance) && std::isfinite(arguments.tolerance);
        else
            return std::nullopt;
    }
    auto isWithin = [](int number, int greatest) { return number >= 1 && number <= greatest; };
    isRight &= isWithin(arguments.count, 10'000) && isWithin(arguments.width, 4096)
        && isWithin(arguments.height, 4096) && arguments.tolerance >= 0;
    return isRight ? std::optional(arguments) : std::nullopt;
}

int fail(const Error& error)
{
    std::fprintf(stderr, "contact-sheet: %s\n", error.localizedDescription().c_str());
    return 1;
}

// Rows of as many stills as a square of them has, each in the middle of its place.
Result<UIImage> drawSheet(const std::vector<UIImage>& stills)
{
    constexpr double gap = 8;
    const auto columns = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(stills.size()))));
    const auto rows = (stills.size() + columns - 1) / columns;
    CGSize place;
    for (auto& still : stills)
        place = {std::max(place.width, still.size().width), std::max(place.height, still.size().height)};
    const CGSize sheet{gap + static_cast<double>(columns) * (place.width + gap),
                       gap + static_cast<double>(rows) * (place.height + gap)};
    return makeImage(sheet, 1, [&](CGContext& context) {
        context.fill({{}, sheet}, UIColor::gray(0.13));
        for (std::size_t i = 0; i < stills.size(); ++i) {
            auto size = stills[i].size();
            const double left = gap + static_cast<double>(i % columns) * (place.width + gap);
            const double top = gap + static_cast<double>(i / columns) * (place.height + gap);
            context.drawImage(stills[i],
                              {{std::floor(left + (place.width - size.width) / 2),
                                std::floor(top + (place.height - size.height) / 2)},
                               size});
        }
    });
}

} // namespace

int main(int argc, char** argv)
{
    auto arguments = parse(argc, argv);
    if (!arguments) {
        std::fprintf(stderr,
                     "usage: contact-sheet IN OUT.png [--count N] [--size WxH] [--tolerance SECONDS]\n");
        return 2;
    }
    auto asset = std::make_shared<AVURLAsset>(URL::fileURL(arguments->input));
    if (auto error = asset->loadError())
        return fail(*error);

    // Each still shows the middle of its part of the video.
    const double step = asset->duration().seconds() / arguments->count;
    std::vector<double> times;
    for (int i = 0; i < arguments->count; ++i)
        times.push_back((i + 0.5) * step);
    const auto tolerance = CMTime::makeWithSeconds(arguments->tolerance, 90'000);

    std::vector<UIImage> stills;
    std::optional<Error> error;
    auto subscription =
        zelk::thumbnailsPublisher(
            asset,
            zelk::ThumbnailsAtTimes{.times = times,
                                    .maximumSize = {double(arguments->width), double(arguments->height)},
                                    .requestedTimeToleranceBefore = tolerance,
                                    .requestedTimeToleranceAfter = tolerance})
            .sink(
                [&](const std::vector<UIImage>& soFar) {
                    stills = soFar;
                    if (stills.size() == times.size())
                        RunLoop::main().stop();
                },
                [&](const Completion& completion) {
                    error = *completion.error(); // it never finishes
                    RunLoop::main().stop();
                });
    RunLoop::main().run();
    if (error)
        return fail(*error);
    auto sheet = drawSheet(stills);
    if (!sheet)
        return fail(sheet.error());
    auto written = sheet->writePNG(arguments->output);
    return written ? 0 : fail(written.error());
}
