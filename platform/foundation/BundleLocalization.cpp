// SPDX-License-Identifier: MIT
// The part of Bundle that has to do with languages.
#include "platform/foundation/Bundle.h"
#include "platform/foundation/BundleStringTables_p.h"
#include "platform/foundation/LocalizationMatching.h"
#include "platform/foundation/PreferredLanguagesOverride.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace platform {

namespace {

constexpr std::string_view baseLocalization = "Base";

} // namespace

std::vector<std::string> Bundle::localizations() const
{
    std::vector<std::string> names;
    std::error_code error; // a directory that cannot be read holds nothing for us
    std::filesystem::directory_iterator entry(resourceURL().path(), error), end;
    for (; !error && entry != end; entry.increment(error)) {
        std::error_code unknown;
        if (entry->path().extension() == ".lproj" && entry->is_directory(unknown))
            names.push_back(entry->path().stem());
    }
    std::ranges::sort(names);
    return names;
}

std::string Bundle::developmentLocalization() const
{
    auto region = stringForInfoDictionaryKey("CFBundleDevelopmentRegion").value_or("");
    return region.empty() ? "en" : region;
}

std::vector<std::string> Bundle::preferredLocalizations() const
{
    auto available = localizations();
    auto development = developmentLocalization();
    if (std::erase(available, baseLocalization)
        && std::ranges::find(available, development) == available.end())
        available.push_back(development);
    if (auto matches = matchLocalizations(available, localizationLanguages()); !matches.empty())
        return matches;
    if (std::ranges::find(available, development) != available.end())
        return {development};
    available.resize(std::min<std::size_t>(available.size(), 1));
    return available;
}

std::string Bundle::localizedString(std::string_view key, std::string_view value,
                                    std::string_view table) const
{
    if (auto text = stringTables_->find(*this, table.empty() ? "Localizable" : table, key))
        return std::move(*text);
    return std::string(value.empty() ? key : value);
}

} // namespace platform
