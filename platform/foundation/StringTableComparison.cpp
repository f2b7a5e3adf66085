// SPDX-License-Identifier: MIT
#include "platform/foundation/StringTableComparison.h"

#include "platform/foundation/FormatString.h"

namespace platform {

namespace {

std::string_view nameOf(FormatArgumentType type)
{
    switch (type) {
    case FormatArgumentType::text:
        return "text";
    case FormatArgumentType::integer:
        return "whole number";
    case FormatArgumentType::number:
        return "number";
    case FormatArgumentType::character:
        return "character";
    }
    return {};
}

// "(1 text, 2 number)"
std::string described(const std::map<std::size_t, FormatArgumentType>& arguments)
{
    std::string text = "(";
    for (auto& [place, type] : arguments) {
        text += text.size() > 1 ? ", " : "";
        text += std::to_string(place + 1) + " " + std::string(nameOf(type));
    }
    return text + ")";
}

} // namespace

std::vector<StringTableDiagnostic> compareStringTables(const StringTable& translation,
                                                       const StringTable& reference)
{
    std::vector<StringTableDiagnostic> faults;
    for (auto& entry : reference.entries()) {
        if (!translation.find(entry.key))
            faults.push_back({.message = "the key \"" + entry.key + "\" is missing"});
    }
    for (auto& [key, value, line] : translation.entries()) {
        auto* original = reference.find(key);
        if (!original) {
            faults.push_back({.line = line, .message = "the key \"" + key + "\" is not in the reference"});
            continue;
        }
        if (value.empty() && !original->empty())
            faults.push_back({.line = line, .message = "the text of \"" + key + "\" is empty"});
        auto taken = formatArguments(value);
        auto given = formatArguments(*original);
        if (taken != given)
            faults.push_back({.line = line,
                              .message = "the format of \"" + key + "\" takes the arguments "
                                  + described(taken) + ", the reference's " + described(given)});
    }
    return faults;
}

} // namespace platform
