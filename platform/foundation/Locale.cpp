// SPDX-License-Identifier: MIT
#include "platform/foundation/Locale.h"

#include "platform/foundation/Locale_p.h"

#include <unicode/localebuilder.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

namespace platform {

namespace {

// Longer names are no locales; the limit keeps what an environment says from costing anything.
constexpr std::size_t longestIdentifier = 256;

std::optional<std::string> processEnvironment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

// A variable that is set to nothing counts as not set.
std::optional<std::string> firstSet(const Locale::Environment& environment,
                                    std::initializer_list<const char*> names)
{
    for (const char* name : names)
        if (auto value = environment(name); value && !value->empty())
            return value;
    return std::nullopt;
}

bool isPlain(std::string_view posixName)
{
    return posixName == "C" || posixName == "POSIX";
}

struct Modifier {
    std::string_view name, script, variant;
};
constexpr Modifier modifiers[] = {
    {"latin", "Latn", ""},  {"cyrillic", "Cyrl", ""}, {"devanagari", "Deva", ""},
    {"arabic", "Arab", ""}, {"hebrew", "Hebr", ""},   {"hans", "Hans", ""},
    {"hant", "Hant", ""},   {"iqtelif", "Latn", ""},  {"valencia", "", "valencia"},
    {"latn", "Latn", ""},   {"cyrl", "Cyrl", ""},     {"deva", "Deva", ""},
};

std::string_view cutAt(std::string_view& text, char separator)
{
    auto place = std::min(text.find(separator), text.size());
    auto head = text.substr(0, place);
    text.remove_prefix(std::min(place + 1, text.size()));
    return head;
}

// Reads language_REGION.codeset@modifier, and language tags too. Absent when it is neither.
std::optional<icu::Locale> localeOfPosixName(std::string_view name)
{
    if (name.size() > longestIdentifier)
        return std::nullopt;
    auto modifier = name;
    auto rest = cutAt(modifier, '@');
    rest = cutAt(rest, '.');
    if (isPlain(rest))
        return icu::Locale("en");
    UErrorCode status = U_ZERO_ERROR;
    icu::LocaleBuilder builder;
    if (rest.find('-') != rest.npos) {
        builder.setLanguageTag(icu::StringPiece(rest.data(), static_cast<int>(rest.size())));
    } else {
        auto language = cutAt(rest, '_');
        if (language.size() < 2 || language.size() > 3)
            return std::nullopt;
        builder.setLanguage(icu::StringPiece(language.data(), static_cast<int>(language.size())));
        builder.setRegion(icu::StringPiece(rest.data(), static_cast<int>(rest.size())));
        auto known = std::ranges::find(modifiers, modifier, &Modifier::name);
        if (known != std::end(modifiers)) {
            builder.setScript(icu::StringPiece(known->script.data(), static_cast<int>(known->script.size())));
            builder.setVariant(
                icu::StringPiece(known->variant.data(), static_cast<int>(known->variant.size())));
        }
    }
    auto locale = builder.build(status);
    locale.canonicalize(status); // old names of languages become what they are now
    if (U_FAILURE(status) || locale.isBogus() || *locale.getLanguage() == '\0')
        return std::nullopt;
    return locale;
}

std::string tagOf(const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    auto tag = locale.toLanguageTag<std::string>(status);
    return U_SUCCESS(status) ? tag : "und";
}

std::string likelyScript(icu::Locale locale)
{
    UErrorCode status = U_ZERO_ERROR;
    locale.addLikelySubtags(status);
    return U_SUCCESS(status) ? locale.getScript() : "";
}

// Language, script and region alone, the script where the declaration promises it.
std::string preferredTag(const icu::Locale& locale)
{
    std::string script = locale.getScript();
    auto usual = likelyScript(icu::Locale(locale.getLanguage()));
    if (script.empty() && *locale.getCountry() != '\0') {
        auto likely = likelyScript(locale);
        if (likely != usual || std::string_view(locale.getLanguage()) == "zh")
            script = likely;
    }
    UErrorCode status = U_ZERO_ERROR;
    auto reduced = icu::LocaleBuilder()
                       .setLanguage(locale.getLanguage())
                       .setScript(script)
                       .setRegion(locale.getCountry())
                       .build(status);
    return U_SUCCESS(status) ? tagOf(reduced) : tagOf(locale);
}

std::optional<std::string> present(const char* code)
{
    return *code == '\0' ? std::nullopt : std::optional<std::string>(code);
}

} // namespace

icu::Locale icuLocale(const Locale& locale)
{
    const auto& identifier = locale.identifier();
    if (identifier.size() > longestIdentifier || identifier.find('\0') != identifier.npos)
        return icu::Locale::getRoot();
    // A tag is recognised by its hyphens, and may be an identifier all the same ("de-DE@collation=phonebook").
    UErrorCode status = U_ZERO_ERROR;
    if (identifier.find('@') == identifier.npos) {
        auto result = icu::Locale::forLanguageTag(identifier, status);
        if (U_SUCCESS(status) && !result.isBogus())
            return result;
    }
    auto result = icu::Locale::createCanonical(identifier.c_str());
    std::string_view language = result.getLanguage();
    bool isLocale = !result.isBogus()
        && std::ranges::all_of(language, [](char letter) { return letter >= 'a' && letter <= 'z'; });
    return isLocale ? result : icu::Locale::getRoot();
}

Locale::Locale(std::string_view identifier)
    : identifier_(identifier)
{
}

Locale Locale::current()
{
    return current(processEnvironment);
}

Locale Locale::current(const Environment& environment)
{
    auto name = firstSet(environment, {"LC_ALL", "LC_TIME", "LANG"});
    auto locale = name ? localeOfPosixName(*name) : std::nullopt;
    return Locale(locale ? locale->getName() : "en");
}

std::vector<std::string> Locale::preferredLanguages()
{
    return preferredLanguages(processEnvironment);
}

std::vector<std::string> Locale::preferredLanguages(const Environment& environment)
{
    std::vector<std::string> tags;
    auto add = [&](std::string_view posixName) {
        auto locale = localeOfPosixName(posixName);
        if (!locale)
            return;
        auto tag = preferredTag(*locale);
        if (std::ranges::find(tags, tag) == tags.end())
            tags.push_back(std::move(tag));
    };
    auto messages = firstSet(environment, {"LC_ALL", "LC_MESSAGES", "LANG"});
    auto list = environment("LANGUAGE").value_or("");
    if (!messages || !isPlain(*messages))
        for (std::string_view rest = list; !rest.empty();)
            add(cutAt(rest, ':'));
    if (messages)
        add(*messages);
    if (tags.empty())
        tags.emplace_back("en");
    return tags;
}

const std::vector<std::string>& Locale::isoRegionCodes()
{
    // Never destroyed: threads may still run while the process exits.
    static const auto& codes = *new std::vector<std::string>([] {
        std::vector<std::string> result;
        for (const char* const* code = icu::Locale::getISOCountries(); *code; ++code)
            result.emplace_back(*code);
        std::ranges::sort(result);
        return result;
    }());
    return codes;
}

std::string Locale::languageTag() const
{
    return tagOf(icuLocale(*this));
}

std::optional<std::string> Locale::languageCode() const
{
    return present(icuLocale(*this).getLanguage());
}

std::optional<std::string> Locale::scriptCode() const
{
    return present(icuLocale(*this).getScript());
}

std::optional<std::string> Locale::regionCode() const
{
    return present(icuLocale(*this).getCountry());
}

} // namespace platform
