// SPDX-License-Identifier: MIT
#include "platform/foundation/PropertyList.h"

#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/PropertyListParser_p.h"
#include "platform/foundation/URL.h"

#include <utility>

namespace platform {

PropertyListValue::PropertyListValue(Storage storage)
    : storage_(std::move(storage))
{
}

PropertyListValue::PropertyListValue(std::string text)
    : storage_(std::move(text))
{
}

PropertyListValue::PropertyListValue(const char* text)
    : storage_(std::string(text))
{
}

const PropertyListValue* PropertyListValue::find(std::string_view key) const
{
    auto* dictionary = as<PropertyListDictionary>();
    if (!dictionary)
        return nullptr;
    auto found = dictionary->find(key);
    return found == dictionary->end() ? nullptr : &found->second;
}

Result<PropertyListValue> parsePropertyList(std::string_view xml, const PropertyListLimits& limits)
{
    PropertyListParser parser(limits);
    auto value = parser.parse(xml);
    if (value)
        return std::move(*value);
    const auto& reason = parser.fault();
    return failure(
        NSCocoaError::propertyListReadCorrupt,
        {{std::string(NSLocalizedDescriptionKey), "The property list can’t be read: " + reason + "."},
         {std::string(NSLocalizedFailureReasonErrorKey), reason}});
}

Result<PropertyListDictionary> readPropertyList(const URL& file, const PropertyListLimits& limits)
{
    // One byte above the limit is enough to tell that it is passed.
    auto bytes = TRY(readFileHead(file, limits.bytes + 1));
    auto value = parsePropertyList(bytes, limits);
    std::string reason;
    if (!value)
        reason = "it is not a valid property list (" + value.error().bridged().localizedFailureReason() + ")";
    else if (auto* dictionary = value->as<PropertyListDictionary>())
        return std::move(*dictionary);
    else
        reason = "the root of its property list is not a dictionary";
    return std::unexpected(fileError(NSCocoaError::propertyListReadCorrupt, file, reason));
}

} // namespace platform
