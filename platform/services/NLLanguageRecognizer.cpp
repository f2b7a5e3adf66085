// SPDX-License-Identifier: MIT
// The library compares sequences of letters with what is usual in each language. It keeps silent about texts of
// a word or two, where a preview's title, a name or a button has no more. Then it is asked for its best guess,
// and the script says whether to believe that: Hebrew and Arabic script belong to few languages, and some of
// their letters to one of them; a Latin word has to look like its language.
#include "platform/services/NLLanguageRecognizer.h"

#include "platform/foundation/UTF8.h"
#include "platform/services/ArabicScript_p.h"

// The library's header lacks two that it needs.
#include <cstdio>

#include <cld2/public/encodings.h>

#include <cld2/public/compact_lang_det.h>

#include <algorithm>
#include <string>

namespace platform {

namespace {

// Texts up to this size are read whole, larger ones in pieces that make up as much.
constexpr std::size_t sampleSize = 64 * 1024;
constexpr std::size_t pieceSize = 4 * 1024;
// How usual the letters of a guess have to be where the script alone says little. Ordinary prose has 1000;
// keys struck at random stay below 310.
constexpr double believableScore = 400;

struct Finding {
    CLD2::Language language = CLD2::UNKNOWN_LANGUAGE;
    bool isReliable = false;
    double score = 0;
};

std::size_t characterStart(std::string_view text, std::size_t at)
{
    while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80)
        --at;
    return at;
}

std::string sampled(std::string_view text)
{
    std::string sample;
    if (text.size() <= sampleSize) {
        sample = text;
    } else {
        constexpr auto pieceCount = sampleSize / pieceSize;
        for (std::size_t piece = 0; piece < pieceCount; ++piece) {
            // Divided first: a text may be of any size.
            auto begin = characterStart(text, (text.size() - pieceSize) / (pieceCount - 1) * piece);
            auto end = characterStart(text, begin + pieceSize - 1);
            sample.append(text.substr(begin, end - begin)) += ' ';
        }
    }
    std::ranges::replace_if(
        sample, [](char byte) { return (byte >= 0 && byte < 0x20) || byte == 0x7F; }, ' ');
    return sample;
}

Finding detect(const std::string& text, int flags)
{
    const CLD2::CLDHints noHints{nullptr, nullptr, CLD2::UNKNOWN_ENCODING, CLD2::UNKNOWN_LANGUAGE};
    CLD2::Language languages[3];
    int percents[3];
    double scores[3];
    int letterBytes = 0;
    Finding finding;
    CLD2::ExtDetectLanguageSummary(text.data(), static_cast<int>(text.size()), true, &noHints, flags,
                                   languages, percents, scores, nullptr, &letterBytes, &finding.isReliable);
    // The one with the most text. The library's own summary takes English for the frame of a page in another
    // language, and passes over it.
    finding.language = languages[0];
    finding.score = scores[0];
    return finding;
}

// The platform's code where the library has another.
NLLanguage platformCode(CLD2::Language language)
{
    NLLanguage code = CLD2::LanguageCode(language);
    if (code == "iw")
        return NLLanguageHebrew;
    if (code == "zh")
        return NLLanguageSimplifiedChinese;
    if (code == "no")
        return "nb";
    if (code == "jw")
        return "jv";
    return code;
}

bool isInArabicScript(NLLanguage language)
{
    return language == NLLanguageArabic || language == NLLanguagePersian || language == NLLanguageUrdu;
}

bool hasYiddishLetters(std::string_view text)
{
    // The doubled vav and yod that Yiddish writes as one letter; Hebrew never does.
    return text.contains("װ") || text.contains("ױ") || text.contains("ײ") || text.contains("\uFB1F");
}

} // namespace

std::optional<NLLanguage> NLLanguageRecognizer::dominantLanguage(std::string_view text)
{
    if (text.empty() || !isWellFormedUTF8(text))
        return std::nullopt;
    auto sample = sampled(text);
    auto finding = detect(sample, 0);
    auto evidence = LanguageEvidence::reliable;
    if (finding.language == CLD2::UNKNOWN_LANGUAGE || !finding.isReliable) {
        finding = detect(sample, CLD2::kCLDFlagBestEffort);
        evidence = LanguageEvidence::guess;
    }
    if (finding.language == CLD2::UNKNOWN_LANGUAGE)
        return std::nullopt;
    auto language = platformCode(finding.language);
    if (isInArabicScript(language))
        return languageInArabicScript(sample, language, evidence, finding.score);
    if (language == NLLanguageYiddish)
        return language;
    if (language == NLLanguageHebrew)
        return evidence == LanguageEvidence::guess && hasYiddishLetters(sample) ? NLLanguageYiddish
                                                                                : language;
    if (evidence == LanguageEvidence::guess && finding.score < believableScore)
        return std::nullopt;
    return language;
}

} // namespace platform
