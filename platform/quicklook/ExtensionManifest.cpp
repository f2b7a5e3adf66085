// SPDX-License-Identifier: MIT
#include "platform/quicklook/ExtensionManifest.h"

#include "platform/foundation/Bundle.h"

#include <initializer_list>

namespace platform {

namespace {

std::unexpected<Error> fault(std::string reason)
{
    return failure(
        NSCocoaError::propertyListReadCorrupt,
        {{std::string(NSLocalizedDescriptionKey), "The extension’s manifest can’t be used: " + reason + "."},
         {std::string(NSLocalizedFailureReasonErrorKey), reason}});
}

// Follows keys through nested dictionaries; null where one is missing.
const PropertyListValue* find(const Bundle& bundle, std::initializer_list<std::string_view> keys)
{
    const PropertyListValue* value = nullptr;
    for (auto key : keys) {
        value = key == *keys.begin() ? bundle.objectForInfoDictionaryKey(key) : value->find(key);
        if (!value)
            return nullptr;
    }
    return value;
}

Result<std::string> text(const Bundle& bundle, std::initializer_list<std::string_view> keys)
{
    std::string name(*(keys.end() - 1));
    auto* value = find(bundle, keys);
    if (!value)
        return fault("the key " + name + " is missing");
    auto* found = value->as<std::string>();
    if (!found || found->empty())
        return fault("the key " + name + " is not a text");
    return *found;
}

Result<std::vector<std::string>> texts(const Bundle& bundle, std::initializer_list<std::string_view> keys)
{
    std::string name(*(keys.end() - 1));
    auto* value = find(bundle, keys);
    auto* array = value ? value->as<PropertyListArray>() : nullptr;
    if (!array || array->empty())
        return fault("the key " + name + " is not a list of texts");
    std::vector<std::string> result;
    for (auto& entry : *array) {
        auto* found = entry.as<std::string>();
        if (!found)
            return fault("the key " + name + " holds something that is not a text");
        result.push_back(*found);
    }
    return result;
}

} // namespace

Result<ExtensionManifest> ExtensionManifest::read(const Bundle& bundle)
{
    if (auto& error = bundle.informationError())
        return failure(*error);
    ExtensionManifest manifest;
    manifest.identifier = TRY(text(bundle, {"CFBundleIdentifier"}));
    manifest.name = bundle.stringForInfoDictionaryKey("CFBundleName").value_or(manifest.identifier);
    manifest.version = TRY(text(bundle, {"CFBundleShortVersionString"}));
    manifest.extensionPoint = TRY(text(bundle, {"NSExtension", "NSExtensionPointIdentifier"}));
    if (manifest.extensionPoint != QLPreviewExtensionPoint)
        return fault("the extension point " + manifest.extensionPoint + " is not that of previews");
    manifest.principalClass = TRY(text(bundle, {"NSExtension", "NSExtensionPrincipalClass"}));
    manifest.supportedContentTypes =
        TRY(texts(bundle, {"NSExtension", "NSExtensionAttributes", "QLSupportedContentTypes"}));
    return manifest;
}

} // namespace platform
