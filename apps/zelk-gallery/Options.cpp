// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/Options.h"

#include "apps/zelk-gallery/pages/pages.h"

#include <charconv>
#include <cmath>

namespace gallery {

namespace {

constexpr double leastScale = 0.5, greatestScale = 4;

std::unexpected<std::string> fault(std::string_view what, std::string_view word)
{
    return std::unexpected(std::string(what).append(" ").append(word));
}

} // namespace

std::expected<Options, std::string> parseOptions(std::span<const std::string_view> words)
{
    Options options;
    bool hasScale = false;
    for (std::size_t index = 0; index < words.size(); ++index) {
        auto word = words[index];
        if (word == "--help" || word == "-h")
            return Options{.action = Options::Action::help};
        if (word == "--version")
            return Options{.action = Options::Action::version};
        if (word == "--list") {
            options.action = Options::Action::listPages;
            continue;
        }
        auto equals = word.starts_with("--") ? word.find('=') : std::string_view::npos;
        auto name = word.substr(0, equals);
        if (name != "--page" && name != "--shoot" && name != "--scale")
            return fault("does not know", word);
        if (equals == std::string_view::npos && index + 1 == words.size())
            return fault("misses the value of", name);
        auto value = equals == std::string_view::npos ? words[++index] : word.substr(equals + 1);
        if (name == "--page") {
            if (!pageNamed(value))
                return fault("has no page", value);
            options.page = value;
        } else if (name == "--shoot") {
            if (value.empty())
                return fault("misses the value of", name);
            options.action = Options::Action::shoot;
            options.folder = value;
        } else {
            auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), options.scale);
            if (error != std::errc() || end != value.data() + value.size() || !std::isfinite(options.scale)
                || options.scale < leastScale || options.scale > greatestScale)
                return fault("takes a scale from 0.5 to 4, not", value);
            hasScale = true;
        }
    }
    if (hasScale && options.action != Options::Action::shoot)
        return fault("takes --scale together with", "--shoot");
    return options;
}

std::string_view usage()
{
    return "usage: zelk-gallery [--page NAME]\n"
           "       zelk-gallery --shoot FOLDER [--page NAME] [--scale NUMBER]\n"
           "\n"
           "Shows the components of the kit, live, each beside its code.\n"
           "\n"
           "  --page NAME     open this page; or paint this one only\n"
           "  --shoot FOLDER  paint each page in light, dark, right-to-left and large text\n"
           "                  into FOLDER, as NAME-light.png, -dark.png, -rtl.png, -large.png\n"
           "  --scale NUMBER  pixels a point of the pictures, 0.5 to 4; above 1 their names\n"
           "                  end in @NUMBERx.png\n"
           "  --list          print the names of the pages\n"
           "  -h, --help      print this\n"
           "  --version       print the version\n"
           "\n"
           "Exit status: 0 when all is well, 1 for a failure, 2 for a wrong command line.\n";
}

} // namespace gallery
