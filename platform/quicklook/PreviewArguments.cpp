// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewArguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

namespace platform {

namespace {

// No window system shows more; larger pictures are refused later by their number of pixels.
constexpr double largestSide = 32767;
constexpr double largestScale = 16;

std::optional<double> numberIn(std::string_view text)
{
    double value = 0;
    auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

// Panes are given by programs, which may have no room left for them: nothing counts as one.
constexpr std::int64_t mostRows = 1'000'000'000'000, largestSideInCells = 1'000'000;

std::optional<std::int64_t> countIn(std::string_view text)
{
    std::int64_t value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > mostRows)
        return std::nullopt;
    return value;
}

std::optional<CGSize> sizeIn(std::string_view text)
{
    auto cross = text.find('x');
    if (cross == std::string_view::npos)
        return std::nullopt;
    auto width = numberIn(text.substr(0, cross));
    auto height = numberIn(text.substr(cross + 1));
    auto isSide = [](std::optional<double> side) { return side && *side >= 1 && *side <= largestSide; };
    if (!isSide(width) || !isSide(height))
        return std::nullopt;
    return CGSize{*width, *height};
}

// Takes the arguments one by one; the first fault ends it.
class ArgumentReader {
public:
    explicit ArgumentReader(std::span<const std::string_view> arguments)
        : rest_(arguments)
    {
    }

    std::expected<PreviewArguments, std::string> read()
    {
        while (!rest_.empty() && fault_.empty()) {
            auto argument = take();
            if (argument == "--" && !onlyFiles_)
                onlyFiles_ = true;
            else if (onlyFiles_ || argument == "-" || !argument.starts_with('-'))
                takeFile(argument);
            else
                takeOption(argument);
        }
        if (fault_.empty())
            checkTogether();
        if (!fault_.empty())
            return std::unexpected(fault_);
        return std::move(result_);
    }

private:
    std::string_view take()
    {
        auto argument = rest_.front();
        rest_ = rest_.subspan(1);
        return argument;
    }

    void takeFile(std::string_view argument)
    {
        if (hasFile_)
            fault_ = "more than one file was named";
        else if (argument.empty())
            fault_ = "the file's name is empty";
        hasFile_ = true;
        result_.file = argument;
    }

    // The value of an option: behind its equals sign, or the next argument.
    std::optional<std::string_view> valueOf(std::string_view option, std::string_view inlineValue,
                                            bool hasInline)
    {
        if (hasInline)
            return inlineValue;
        if (rest_.empty()) {
            fault_ = std::string(option) + " needs a value";
            return std::nullopt;
        }
        return take();
    }

    void choose(PreviewAction action)
    {
        if (result_.action == PreviewAction::help || result_.action == PreviewAction::version)
            return; // the first of these wins, as in other programs
        bool isInformation = action == PreviewAction::help || action == PreviewAction::version;
        if (!isInformation && result_.action != PreviewAction::window && result_.action != action)
            fault_ = "--text and --snapshot exclude each other";
        result_.action = action;
    }

    void takeOption(std::string_view argument)
    {
        auto equals = argument.find('=');
        auto option = argument.substr(0, equals);
        bool hasInline = equals != std::string_view::npos;
        auto inlineValue = hasInline ? argument.substr(equals + 1) : std::string_view();

        if (!hasInline && (option == "--help" || option == "-h"))
            return choose(PreviewAction::help);
        if (!hasInline && option == "--version")
            return choose(PreviewAction::version);
        if (!hasInline && option == "--text")
            return choose(PreviewAction::text);
        constexpr std::string_view withValue[] = {"--snapshot", "--size",   "--scale", "--appearance",
                                                  "--width",    "--height", "--skip"};
        if (std::ranges::find(withValue, option) == std::end(withValue)) {
            fault_ = "unknown option " + std::string(argument);
            return;
        }
        auto value = valueOf(option, inlineValue, hasInline);
        if (!value)
            return;
        takeValue(option, *value);
    }

    void takeValue(std::string_view option, std::string_view value)
    {
        if (option == "--snapshot") {
            if (value.empty())
                fault_ = "--snapshot needs the picture's name";
            result_.snapshotPath = value;
            return choose(PreviewAction::snapshot);
        }
        if (option == "--width" || option == "--height" || option == "--skip")
            return takePane(option, value);
        if (option == "--size") {
            result_.size = sizeIn(value);
            if (!result_.size)
                fault_ =
                    "--size takes WIDTHxHEIGHT in points, each from 1 to 32767, not " + std::string(value);
        } else if (option == "--scale") {
            auto scale = numberIn(value);
            if (!scale || *scale < 0.5 || *scale > largestScale)
                fault_ = "--scale takes a number from 0.5 to 16, not " + std::string(value);
            else
                result_.scale = *scale;
            needsSnapshot_ = "--scale";
        } else if (value == "light") {
            result_.appearance = UIUserInterfaceStyle::light;
        } else if (value == "dark") {
            result_.appearance = UIUserInterfaceStyle::dark;
        } else {
            fault_ = "--appearance takes light or dark, not " + std::string(value);
        }
    }

    void takePane(std::string_view option, std::string_view value)
    {
        auto count = countIn(value);
        if (!count) {
            fault_ = std::string(option) + " takes a number of " + (option == "--width" ? "columns" : "rows")
                + ", not " + std::string(value);
            return;
        }
        auto& pane = result_.pane ? *result_.pane : result_.pane.emplace();
        if (option == "--skip")
            pane.skip = *count;
        else if (option == "--width")
            pane.width = static_cast<int>(std::clamp<std::int64_t>(*count, 1, largestSideInCells));
        else
            pane.height = static_cast<int>(std::clamp<std::int64_t>(*count, 1, largestSideInCells));
    }

    void checkTogether()
    {
        if (result_.action == PreviewAction::help || result_.action == PreviewAction::version)
            return;
        if (!hasFile_)
            fault_ = "no file was named";
        else if (!needsSnapshot_.empty() && result_.action != PreviewAction::snapshot)
            fault_ = std::string(needsSnapshot_) + " goes with --snapshot";
        else if (result_.pane && result_.action != PreviewAction::text)
            fault_ = "--width, --height and --skip go with --text";
    }

    std::span<const std::string_view> rest_;
    PreviewArguments result_;
    std::string fault_;
    std::string_view needsSnapshot_;
    bool onlyFiles_ = false;
    bool hasFile_ = false;
};

} // namespace

std::expected<PreviewArguments, std::string>
parsePreviewArguments(std::span<const std::string_view> arguments)
{
    return ArgumentReader(arguments).read();
}

std::string previewUsage(std::string_view program)
{
    std::string name(program);
    return "Usage: " + name
        + " [OPTION]... FILE\n"
          "Shows FILE, whole and unchanged, in a window.\n"
          "\n"
          "FILE is a path or a file: URL.\n"
          "\n"
          "  --snapshot OUT.png       paint the preview into a picture; needs no display\n"
          "  --size WIDTHxHEIGHT      the size of the window or the picture, in points\n"
          "  --scale NUMBER           pixels a point, for --snapshot (default 1)\n"
          "  --appearance light|dark  the appearance, instead of the desktop's\n"
          "  --text                   print the decoded text as UTF-8, exactly\n"
          "  --width N, --height N, --skip N\n"
          "                           with --text: print it for a terminal's pane of N columns and N rows,\n"
          "                           without its first N rows; harmless to the terminal; only subtitles\n"
          "  --help, --version\n"
          "\n"
          "In the window: Escape, Space, q and Ctrl+W close; Ctrl+A and Ctrl+C select and copy;\n"
          "Ctrl++, Ctrl+- and Ctrl+0 change the text size; arrows, Page Up, Page Down, Home, End,\n"
          "Ctrl+Home and Ctrl+End scroll.\n"
          "\n"
          "Exit status: 0 shown, 1 could not be read or shown, 2 wrong usage.\n";
}

} // namespace platform
