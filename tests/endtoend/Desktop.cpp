// SPDX-License-Identifier: MIT
#include "tests/endtoend/Desktop.h"

#include <gtest/gtest.h>

namespace endtoend {

namespace {

std::uint32_t bigEndian(const std::string& bytes, std::size_t at)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | static_cast<std::uint8_t>(bytes[at + i]);
    return value;
}

// The X window dump format, version 7, true colour with 32 bits a pixel: a header of big-endian words, a colour map of
// 12-byte entries, then rows of pixels (XWDFile.h).
std::optional<Picture> parseWindowDump(const std::string& bytes)
{
    constexpr std::size_t headerWords = 25;
    if (bytes.size() < headerWords * 4)
        return std::nullopt;
    auto word = [&](std::size_t index) { return bigEndian(bytes, index * 4); };
    auto headerSize = word(0);
    auto width = word(4), height = word(5), bitsPerPixel = word(11), bytesPerLine = word(12),
         colors = word(19);
    bool littleEndian = word(7) == 0;
    std::size_t start = headerSize + std::size_t{12} * colors;
    if (bitsPerPixel != 32 || !littleEndian || bytes.size() < start + std::size_t{bytesPerLine} * height)
        return std::nullopt;

    Picture picture{static_cast<int>(width), static_cast<int>(height), {}};
    picture.pixels.reserve(std::size_t{width} * height);
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            auto at = reinterpret_cast<const std::uint8_t*>(bytes.data()) + start
                + std::size_t{y} * bytesPerLine + x * 4;
            picture.pixels.push_back({at[2], at[1], at[0]});
        }
    }
    return picture;
}

} // namespace

int Picture::darkPixels(int x, int y, int w, int h) const
{
    int count = 0;
    for (int row = std::max(0, y); row < std::min(height, y + h); ++row) {
        for (int column = std::max(0, x); column < std::min(width, x + w); ++column)
            count += at(column, row).luminance() < 128;
    }
    return count;
}

Desktop::Desktop(int width, int height)
{
    auto screen = std::to_string(width) + "x" + std::to_string(height) + "x24";
    server_ = std::make_unique<Process>(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0",
                                                                 screen, "-nolisten", "tcp", "-noreset"});
    if (auto number = server_->readLine())
        display_ = ":" + *number;
    else
        ADD_FAILURE() << "the X server did not start";
}

Environment Desktop::environment(Environment more) const
{
    more.insert({{"DISPLAY", display_}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", ""}});
    return more;
}

Outcome Desktop::tool(std::vector<std::string> arguments)
{
    auto name = arguments.front();
    auto outcome = run(std::move(arguments), environment());
    EXPECT_EQ(outcome.exitStatus, 0) << name << ": " << outcome.errors;
    return outcome;
}

std::optional<std::string> Desktop::findWindow(const std::string& title)
{
    std::string found;
    eventually([&] {
        // xdotool gives several windows when a title is part of another; the program has only one.
        auto outcome = run({"xdotool", "search", "--onlyvisible", "--name", title}, environment());
        found = outcome.output.substr(0, outcome.output.find('\n'));
        return outcome.exitStatus == 0 && !found.empty();
    });
    return found.empty() ? std::nullopt : std::optional(found);
}

bool Desktop::activate(const std::string& window)
{
    tool({"xdotool", "windowmove", "--sync", window, "0", "0"});
    tool({"xdotool", "windowfocus", "--sync", window});
    return eventually(
        [&] { return run({"xdotool", "getwindowfocus"}, environment()).output.starts_with(window); });
}

Picture Desktop::picture(const std::string& window)
{
    auto dump = run({"xwd", "-silent", "-id", window}, environment());
    return parseWindowDump(dump.output).value_or(Picture{});
}

void Desktop::key(const std::string& chord)
{
    tool({"xdotool", "key", "--clearmodifiers", chord});
}

void Desktop::type(const std::string& text)
{
    tool({"xdotool", "type", "--delay", "5", text});
}

void Desktop::drag(int fromX, int fromY, int toX, int toY)
{
    auto x = [](int value) { return std::to_string(value); };
    tool({"xdotool", "mousemove", x(fromX), x(fromY), "mousedown", "1", "mousemove", x((fromX + toX) / 2),
          x((fromY + toY) / 2), "mousemove", x(toX), x(toY), "mouseup", "1"});
}

void Desktop::click(int x, int y, int button)
{
    tool({"xdotool", "mousemove", std::to_string(x), std::to_string(y), "click", std::to_string(button)});
}

std::string Desktop::clipboard()
{
    return run({"xclip", "-selection", "clipboard", "-o"}, environment()).output;
}

} // namespace endtoend
