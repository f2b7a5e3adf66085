// SPDX-License-Identifier: MIT
#pragma once

#include "tests/endtoend/Process.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace endtoend {

struct Pixel {
    std::uint8_t red = 0, green = 0, blue = 0;
    bool operator==(const Pixel&) const = default;
    int luminance() const { return (red * 299 + green * 587 + blue * 114) / 1000; }
};

struct Picture {
    int width = 0, height = 0;
    std::vector<Pixel> pixels;
    const Pixel& at(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
    bool operator==(const Picture&) const = default;
    // How many pixels of the rectangle are darker than half.
    int darkPixels(int x, int y, int w, int h) const;
};

// A real X server without a screen, for one test: keys, mouse and clipboard as a person has them.
class Desktop {
public:
    Desktop(int width = 1200, int height = 900);

    const std::string& display() const { return display_; }
    // The environment that a program needs to open its windows here.
    Environment environment(Environment more = {}) const;

    // The window of that title once it is on screen; nothing when none comes in time.
    std::optional<std::string> findWindow(const std::string& title);
    // Gives it the keyboard and puts it at the screen's corner.
    bool activate(const std::string& window);
    Picture picture(const std::string& window);

    void key(const std::string& chord); // as xdotool names it: "ctrl+a"
    void type(const std::string& text);
    void drag(int fromX, int fromY, int toX, int toY); // screen pixels
    void click(int x, int y, int button = 1);
    std::string clipboard(); // what it holds, exactly

private:
    Outcome tool(std::vector<std::string> arguments);

    std::unique_ptr<Process> server_;
    std::string display_;
};

} // namespace endtoend
