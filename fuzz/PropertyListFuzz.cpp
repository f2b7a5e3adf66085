// SPDX-License-Identifier: MIT
// Any bytes are a property list within its limits, or refused with a reason; what was read is written and read again
// as the same.
#include "platform/foundation/Precondition.h"
#include "platform/foundation/PropertyListWriter.h"

#include <cstdint>
#include <string_view>

using namespace platform;

namespace {

struct Extent {
    std::size_t values = 1;
    std::size_t depth = 0;

    void add(const Extent& inner)
    {
        values += inner.values;
        depth = std::max(depth, inner.depth + 1);
    }
};

Extent extent(const PropertyListValue& value)
{
    Extent result;
    if (auto* array = value.as<PropertyListArray>()) {
        result.depth = 1;
        for (auto& element : *array)
            result.add(extent(element));
    } else if (auto* dictionary = value.as<PropertyListDictionary>()) {
        result.depth = 1;
        for (auto& [key, element] : *dictionary)
            result.add(extent(element));
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr PropertyListLimits limits{.bytes = 1 << 16, .depth = 8, .values = 100};
    auto value = parsePropertyList({reinterpret_cast<const char*>(data), size}, limits);
    if (!value) {
        precondition(!value.error().bridged().localizedFailureReason().empty(), "a refusal has no reason");
        return 0;
    }
    auto found = extent(*value);
    precondition(found.values <= limits.values && found.depth <= limits.depth, "a limit was passed");

    // The layout may take more bytes than the original had. Texts are compared because no NaN equals itself.
    constexpr PropertyListLimits roomier{.bytes = 1 << 20, .depth = limits.depth, .values = limits.values};
    auto xml = propertyListXML(*value, roomier);
    precondition(xml.has_value(), "what was read cannot be written");
    auto again = parsePropertyList(*xml, roomier);
    precondition(again && propertyListXML(*again, roomier) == xml,
                 "what was written reads as something else");
    return 0;
}
