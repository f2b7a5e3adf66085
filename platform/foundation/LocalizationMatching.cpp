// SPDX-License-Identifier: MIT
#include "platform/foundation/LocalizationMatching.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <unicode/localebuilder.h>
#include <unicode/localematcher.h>
#include <unicode/locid.h>

namespace platform {

namespace {

struct Tag {
    icu::Locale canonical; // "no_NO" is "nb_NO", "iw" is "he"
    icu::Locale maximal;   // with its likely script and region

    bool isReadableFor(const Tag& other) const
    {
        return std::string_view(maximal.getLanguage()) == other.maximal.getLanguage()
            && std::string_view(maximal.getScript()) == other.maximal.getScript();
    }
};

// Nothing when `name` is no language tag.
std::optional<Tag> tagOf(std::string name)
{
    std::ranges::replace(name, '_', '-');
    UErrorCode status = U_ZERO_ERROR;
    auto locale = icu::Locale::forLanguageTag(name, status);
    if (U_FAILURE(status) || locale.isBogus() || !*locale.getLanguage())
        return std::nullopt;
    // Without variants and extensions, which no localization differs in.
    locale = icu::LocaleBuilder()
                 .setLanguage(locale.getLanguage())
                 .setScript(locale.getScript())
                 .setRegion(locale.getCountry())
                 .build(status);
    locale.canonicalize(status);
    // The written language of Norway is Bokmål unless it is said to be the other.
    if (std::string_view(locale.getLanguage()) == "no")
        locale = icu::Locale("nb", locale.getCountry());
    auto maximal = locale;
    maximal.addLikelySubtags(status);
    if (U_FAILURE(status))
        return std::nullopt;
    return Tag{std::move(locale), std::move(maximal)};
}

struct Candidate {
    std::string name;
    Tag tag;
};

// The place of the one nearest to `wanted`.
std::size_t nearest(const std::vector<Candidate>& candidates, const Tag& wanted)
{
    auto exact = std::ranges::find_if(
        candidates, [&](const Candidate& candidate) { return candidate.tag.canonical == wanted.canonical; });
    if (exact != candidates.end())
        return static_cast<std::size_t>(exact - candidates.begin());
    UErrorCode status = U_ZERO_ERROR;
    icu::LocaleMatcher::Builder builder;
    for (auto& candidate : candidates)
        builder.addSupportedLocale(candidate.tag.canonical);
    auto found = builder.build(status).getBestMatchResult(wanted.canonical, status).getSupportedIndex();
    return U_SUCCESS(status) && found > 0 ? static_cast<std::size_t>(found) : 0;
}

std::vector<std::string> sortedByDistance(std::vector<Candidate> candidates, const Tag& wanted)
{
    std::vector<std::string> names;
    while (!candidates.empty()) {
        auto place = candidates.begin() + static_cast<std::ptrdiff_t>(nearest(candidates, wanted));
        names.push_back(std::move(place->name));
        candidates.erase(place);
    }
    return names;
}

} // namespace

std::vector<std::string> matchLocalizations(std::span<const std::string> localizations,
                                            std::span<const std::string> languages)
{
    for (auto& language : languages) {
        auto wanted = tagOf(language);
        if (!wanted) {
            if (std::ranges::find(localizations, language) != localizations.end())
                return {language};
            continue;
        }
        std::vector<Candidate> candidates;
        for (auto& name : localizations) {
            auto tag = tagOf(name);
            if (tag && tag->isReadableFor(*wanted))
                candidates.push_back({name, std::move(*tag)});
        }
        if (!candidates.empty())
            return sortedByDistance(std::move(candidates), *wanted);
    }
    return {};
}

} // namespace platform
