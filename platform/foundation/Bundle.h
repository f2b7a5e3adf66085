// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/URL.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// A directory of resources with an Info.plist that describes it. Read once when it is opened; immutable, so
// any thread.
class Bundle : public NSObject {
public:
    // The running program's: see forExecutable. Made at first use, kept for the life of the process.
    static const std::shared_ptr<Bundle>& main();

    // The bundle of a program at DIR/NAME: DIR/../share/NAME when that has an Info.plist (both an installed
    // program and a build tree have this form), else DIR. Never fails: informationError() tells.
    static std::shared_ptr<Bundle> forExecutable(const URL& executable);

    // The bundle in `directory`. An Info.plist may be missing. Errors: the file-read codes when the directory
    // or its Info.plist cannot be read, propertyListReadCorrupt when the latter is not a property list.
    [[nodiscard]] static Result<std::shared_ptr<Bundle>> open(const URL& directory);

    const URL& bundleURL() const { return bundleURL_; }
    const URL& resourceURL() const { return bundleURL_; }

    // Empty when there is no Info.plist, or none that can be read.
    const PropertyListDictionary& infoDictionary() const { return infoDictionary_; }
    // Null when there is none. Valid while the bundle lives.
    const PropertyListValue* objectForInfoDictionaryKey(std::string_view key) const;
    // The text under `key`; nothing when it is missing or not text.
    std::optional<std::string> stringForInfoDictionaryKey(std::string_view key) const;
    // CFBundleIdentifier.
    std::optional<std::string> bundleIdentifier() const;
    // Why an Info.plist that exists could not be used.
    const std::optional<Error>& informationError() const { return informationError_; }

    // The file NAME.EXTENSION of the resources, or NAME when `extension` is empty; nothing when it does not
    // exist. `name` may lead into subdirectories but not out of the bundle.
    std::optional<URL> urlForResource(std::string_view name, std::string_view extension = {}) const;

private:
    struct Token { }; // makes the constructor ours alone, yet open to std::make_shared

public:
    Bundle(Token, URL bundleURL, PropertyListDictionary information, std::optional<Error> informationError);

private:
    URL bundleURL_;
    PropertyListDictionary infoDictionary_;
    std::optional<Error> informationError_;
};

} // namespace platform
