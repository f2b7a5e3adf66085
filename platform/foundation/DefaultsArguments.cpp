// SPDX-License-Identifier: MIT
#include "platform/foundation/DefaultsArguments_p.h"

#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/URL.h"
#include "platform/foundation/UTF8.h"

#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace platform {

namespace {

bool isKey(std::string_view argument)
{
    return argument.size() > 1 && argument[0] == '-' && argument[1] != '-';
}

// "-3" or "-.5"
bool isNegativeNumber(std::string_view argument)
{
    auto digits = argument.substr(argument.starts_with("-.") ? 2 : 1);
    return !digits.empty() && digits[0] >= '0' && digits[0] <= '9';
}

PropertyListValue valueOf(const std::string& argument)
{
    auto begin = argument.find_first_not_of(" \t\r\n");
    if (begin != std::string::npos && argument[begin] == '<') {
        for (auto& xml : {argument, "<plist>" + argument + "</plist>"}) {
            if (auto value = parsePropertyList(xml))
                return std::move(*value);
        }
    }
    return repairedUTF8(argument);
}

} // namespace

PropertyListDictionary defaultsFromArguments(std::span<const std::string> arguments)
{
    PropertyListDictionary defaults;
    for (std::size_t i = 0; i + 1 < arguments.size() && arguments[i] != "--"; ++i) {
        auto& value = arguments[i + 1];
        if (!isKey(arguments[i]) || (value.starts_with('-') && !isNegativeNumber(value)))
            continue;
        defaults.insert_or_assign(arguments[i].substr(1), valueOf(value));
        ++i;
    }
    return defaults;
}

const PropertyListDictionary& argumentDefaults()
{
    static const auto& defaults = *new PropertyListDictionary([] {
        // main() does not hand its arguments on; where the system does not show them there are none.
        auto line = readFileHead(URL::fileURL("/proc/self/cmdline"), std::numeric_limits<std::size_t>::max());
        std::vector<std::string> arguments;
        for (std::size_t begin = 0, end; line && begin < line->size(); begin = end + 1) {
            end = std::min(line->find('\0', begin), line->size());
            arguments.push_back(line->substr(begin, end - begin));
        }
        return arguments.empty() ? PropertyListDictionary()
                                 : defaultsFromArguments(std::span(arguments).subspan(1));
    }());
    return defaults;
}

} // namespace platform
