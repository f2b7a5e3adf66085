// SPDX-License-Identifier: MIT
#include "kit/foundation/bundleFacts.h"

#include "platform/foundation/BundleReceipt.h"

namespace zelk {

namespace {

constexpr std::string_view shortVersionKey = "CFBundleShortVersionString";
constexpr std::string_view missing = "<null>";

} // namespace

std::optional<std::string> bundleID(const platform::Bundle& bundle)
{
    return bundle.bundleIdentifier();
}

std::string appVersion(const platform::Bundle& bundle)
{
    return bundle.stringForInfoDictionaryKey(shortVersionKey).value_or(std::string(missing));
}

std::string bundleVersion(const platform::Bundle& bundle)
{
    return bundle.stringForInfoDictionaryKey(platform::kCFBundleVersionKey).value_or(std::string(missing));
}

std::string displayName(const platform::Bundle& bundle, std::string_view fallback)
{
    return bundle.stringForInfoDictionaryKey("CFBundleDisplayName").value_or(std::string(fallback));
}

std::optional<std::string> versionIdentifier(const platform::Bundle& bundle)
{
    auto version = bundle.stringForInfoDictionaryKey(shortVersionKey);
    if (!version)
        return std::nullopt;
    return *version + " (" + bundleVersion(bundle) + ")";
}

} // namespace zelk
