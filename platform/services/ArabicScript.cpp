// SPDX-License-Identifier: MIT
#include "platform/services/ArabicScript_p.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace platform {

namespace {

// Letters of one language, and of two that share some.
constexpr std::u32string_view urduLetters = U"ٹڈڑںھہۂۃےۓ";
constexpr std::u32string_view persianLetters = U"پچژگکی"; // Urdu's as well, but not Arabic's
constexpr std::u32string_view arabicLetters = U"كيةىإ";

struct OtherLanguage {
    NLLanguage language;
    std::u32string_view letters;
};
constexpr OtherLanguage otherLanguages[] = {
    {NLLanguagePashto, U"ټډړږښځڅڼۍې"},
    {NLLanguageSindhi, U"ٻڀٺٽٿڄڃڇڌڊڏڍڙڦڪڳڱڻ"},
    {NLLanguageKurdish, U"ڕڵێۆە"},
    {NLLanguageUyghur, U"ۇۈۋۆېە"},
};

// One letter in so many is enough. A name or a quotation in another text has fewer.
constexpr std::size_t otherLanguageShare = 20;
// Below this score a text that has no letter of Urdu's own is rather Persian.
constexpr double ordinaryUrdu = 900;

struct LetterCounts {
    std::size_t all = 0;
    std::size_t urdu = 0;
    std::size_t persian = 0;
    std::size_t arabic = 0;
    std::array<std::size_t, std::size(otherLanguages)> others{};

    void add(char32_t letter)
    {
        ++all;
        urdu += urduLetters.contains(letter);
        persian += persianLetters.contains(letter);
        arabic += arabicLetters.contains(letter);
        for (std::size_t at = 0; at < others.size(); ++at)
            others[at] += otherLanguages[at].letters.contains(letter);
    }
};

// The letters of the Arabic block are two bytes long and begin with D8 to DB.
LetterCounts countLetters(std::string_view text)
{
    LetterCounts counts;
    for (std::size_t at = 0; at + 1 < text.size(); ++at) {
        auto lead = static_cast<unsigned char>(text[at]);
        if (lead < 0xD8 || lead > 0xDB)
            continue;
        auto character = static_cast<char32_t>((lead & 0x1F) << 6 | (text[++at] & 0x3F));
        auto isMark = character < 0x620 || (character >= 0x640 && character < 0x641)
            || (character >= 0x64B && character < 0x66E) || character == 0x670;
        if (!isMark)
            counts.add(character);
    }
    return counts;
}

} // namespace

NLLanguage languageInArabicScript(std::string_view text, NLLanguage found, LanguageEvidence evidence,
                                  double score)
{
    auto counts = countLetters(text);
    auto most = std::ranges::max_element(counts.others);
    if (*most > 0 && *most * otherLanguageShare >= counts.all && *most > counts.urdu)
        return otherLanguages[most - counts.others.begin()].language;
    if (evidence == LanguageEvidence::reliable)
        return found;
    if (counts.urdu > 0)
        return NLLanguageUrdu;
    if (counts.persian > 0 && counts.arabic == 0) {
        auto isUrdu = found == NLLanguageUrdu && score >= ordinaryUrdu;
        return isUrdu ? NLLanguageUrdu : NLLanguagePersian;
    }
    return counts.arabic > counts.persian ? NLLanguageArabic : found;
}

} // namespace platform
