// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/URL.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class BundleStringTables;

// A directory of resources with an Info.plist that describes it. Read once when it is opened, its string tables
// at their first use; never changes, so any thread.
class Bundle : public NSObject {
public:
    // The running program's: see forExecutable. Made at first use, kept for the life of the process.
    static const std::shared_ptr<Bundle>& main();

    // The bundle of a program at DIR/NAME: DIR/../share/NAME when that has an Info.plist (both an installed
    // program and a build tree have this form), else DIR. Never fails: informationError() tells.
    static std::shared_ptr<Bundle> forExecutable(const URL& executable);

    // The resources that came with the program or library that `address` (of a function or an object of static
    // duration) lies in: of a file in PREFIX/bin, or in PREFIX/lib or a subdirectory of that, PREFIX/share/zelk;
    // else, or when that does not exist, the file's own directory. A build tree has the same form.
    // Null when no file holds the address.
    static std::shared_ptr<Bundle> forCode(const void* address);

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

    // The names of the NAME.lproj directories of the resources, sorted; "Base" is one.
    std::vector<std::string> localizations() const;
    // CFBundleDevelopmentRegion: the language that the resources were written in. "en" when it is missing.
    std::string developmentLocalization() const;
    // Those localizations that the user is shown, best first: what matchLocalizations() finds for the user's
    // languages, else the development localization, else the first. Base stands for the development localization.
    std::vector<std::string> preferredLocalizations() const;

    // The text of `key` in the string table `table` ("Localizable" when empty): of the file TABLE.strings in the
    // resources themselves, else in the first preferred localization that has one, else in the development
    // localization, else in Base. When that has no such key, or there is no such file: `value`, or the key when
    // `value` is empty. Files are read once; what is wrong with one is logged once.
    std::string localizedString(std::string_view key, std::string_view value = {},
                                std::string_view table = {}) const;

private:
    struct Token { }; // makes the constructor ours alone, yet open to std::make_shared

public:
    Bundle(Token, URL bundleURL, PropertyListDictionary information, std::optional<Error> informationError);

private:
    URL bundleURL_;
    PropertyListDictionary infoDictionary_;
    std::optional<Error> informationError_;
    std::shared_ptr<BundleStringTables> stringTables_; // never null; guards itself
};

} // namespace platform
