// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace gallery {

// What the command line asks for.
struct Options {
    enum class Action { open, shoot, listPages, help, version };
    Action action = Action::open;
    std::optional<std::string> page; // one that exists
    std::string folder;              // to shoot into
    double scale = 1;                // pixels a point of the pictures
    bool operator==(const Options&) const = default;
};

// Without the program's name. The error says in a sentence what is wrong with the line.
std::expected<Options, std::string> parseOptions(std::span<const std::string_view> words);

// What --help prints.
std::string_view usage();

} // namespace gallery
