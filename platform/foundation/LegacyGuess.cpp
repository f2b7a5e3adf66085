// SPDX-License-Identifier: MIT
#include "platform/foundation/LegacyGuess_p.h"

#include "platform/foundation/LegacyDecoding_p.h"
#include "platform/foundation/TextEncodingTable_p.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <utility>

#include <uchardet/uchardet.h>
#include <unicode/uchar.h>
#include <unicode/ulocdata.h>
#include <unicode/uscript.h>
#include <unicode/uset.h>

namespace platform {

namespace {

constexpr std::size_t sampleSize = 64 * 1024;

bool isASCIIByte(char c)
{
    return c >= 0;
}

// The lines with bytes beyond ASCII, from places spread over the text: the others say nothing.
std::string sampleOf(std::string_view bytes)
{
    constexpr std::size_t windows = 32, windowSize = sampleSize;
    std::string sample;
    bool isWhole = bytes.size() <= windows * windowSize;
    std::size_t count = isWhole ? 1 : windows;
    std::size_t quota = sampleSize / count;
    for (std::size_t i = 0; i < count && sample.size() < sampleSize; ++i) {
        auto window = isWhole ? bytes : bytes.substr(bytes.size() / windows * i, windowSize);
        if (i > 0)
            window.remove_prefix(std::min(window.find('\n'), window.size()));
        std::size_t taken = 0;
        while (!window.empty() && taken < quota) {
            auto line = window.substr(0, window.find('\n') + (window.find('\n') < window.size() ? 1 : 0));
            if (line.empty())
                line = window;
            window.remove_prefix(line.size());
            if (std::ranges::all_of(line, isASCIIByte))
                continue;
            line = line.substr(0, quota - taken);
            sample += line;
            taken += line.size();
        }
    }
    return sample;
}

// --- Languages ----------------------------------------------------------------------------------------

struct Language {
    std::string name;
    std::set<char16_t> letters; // both cases
};

const Language& languageNamed(std::string_view name)
{
    static std::mutex mutex;
    // Guarded by mutex; entries never change. Never destroyed: threads may still run while the process exits.
    static auto& languages = *new std::map<std::string, Language, std::less<>>;
    std::lock_guard lock(mutex);
    if (auto found = languages.find(name); found != languages.end())
        return found->second;
    Language language{.name = std::string(name)};
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<ULocaleData, decltype(&ulocdata_close)> data(
        ulocdata_open(language.name.c_str(), &status), ulocdata_close);
    std::unique_ptr<USet, decltype(&uset_close)> set(
        ulocdata_getExemplarSet(data.get(), nullptr, USET_ADD_CASE_MAPPINGS, ULOCDATA_ES_STANDARD, &status),
        uset_close);
    for (UChar32 c = 0x80; U_SUCCESS(status) && c < 0x2000; ++c) {
        if (uset_contains(set.get(), c))
            language.letters.insert(static_cast<char16_t>(c));
    }
    // Romanian was written with the cedilla where the comma was missing.
    if (name == "ro")
        language.letters.insert({u'\u015E', u'\u015F', u'\u0162', u'\u0163'});
    if (name == "vi") // written with marks of their own
        language.letters.insert({u'\u0300', u'\u0301', u'\u0303', u'\u0309', u'\u0323'});
    return languages.emplace(std::string(name), std::move(language)).first->second;
}

// --- Marks of one reading ---------------------------------------------------------------------------

bool isTypographic(char16_t c)
{
    return std::u16string_view(
               u"\u00A0\u00AB\u00BB\u2018\u2019\u201A\u201C\u201D\u201E\u2013\u2014\u2026\u2039\u203A"
               u"\u00BF\u00A1\u266A\u266B\u00B7\u2022\u00B0\u00A7\u00A9\u00AE\u2122\u20AC\u00A3"
               u"\u00B4\u00D7\u00BA\u00AA\u2116\u060C\u061B\u061F")
               .find(c)
        != std::u16string_view::npos;
}

struct Classes {
    bool isLetter = false, isUpper = false, isLower = false, isMark = false, isLatin = false;
};

Classes classesOf(char16_t c)
{
    UErrorCode status = U_ZERO_ERROR;
    auto type = u_charType(c);
    return {.isLetter = u_isalpha(c) != 0,
            .isUpper = u_isupper(c) != 0,
            .isLower = u_islower(c) != 0,
            .isMark = type == U_NON_SPACING_MARK,
            .isLatin = uscript_getScript(c, &status) == USCRIPT_LATIN};
}

// What one encoding makes of the sample, seen without a language.
struct Reading {
    std::array<std::uint32_t, 128> counts{}; // of the upper bytes
    double total = 0;
    double faults = 0; // breaks of what words look like, in places
};

Reading readingOf(const UpperHalf& half, std::string_view sample)
{
    std::array<Classes, 256> classes;
    for (int byte = 0; byte < 256; ++byte)
        classes[static_cast<std::size_t>(byte)] =
            classesOf(byte < 128 ? static_cast<char16_t>(byte) : half[static_cast<std::size_t>(byte - 128)]);
    Reading reading;
    Classes before;
    std::size_t run = 0;
    double lower = 0, upper = 0;
    bool wasASCII = true, isSignAfterWord = false;
    for (char c : sample) {
        auto byte = static_cast<unsigned char>(c);
        auto now = classes[byte];
        bool isASCII = byte < 128;
        if (!isASCII) {
            ++reading.counts[byte - 128u];
            ++reading.total;
            lower += now.isLower;
            upper += now.isUpper;
        }
        bool isWord = now.isLetter || now.isMark;
        bool wasWord = before.isLetter || before.isMark;
        if (isWord && wasWord && (!isASCII || !wasASCII)) {
            if (before.isLower && now.isUpper)
                reading.faults += 1;
            if (now.isLatin != before.isLatin && !now.isMark && !before.isMark)
                reading.faults += 1.5;
        }
        // A symbol inside a word, on either side of which are letters.
        if (!isASCII && !isWord && wasWord && !isTypographic(half[byte - 128u]))
            reading.faults += 0.5;
        // A sign between two letters; only the apostrophe belongs there.
        if (isWord && isSignAfterWord)
            reading.faults += 1;
        isSignAfterWord = !isASCII && !isWord && wasWord && half[byte - 128u] != u'\u2019';
        run = !isASCII && now.isLetter && now.isLatin ? run + 1 : 0;
        if (run == 4) // no Latin script has words of accented letters alone
            reading.faults += 4;
        else if (run > 4)
            reading.faults += 1;
        before = now;
        wasASCII = isASCII;
    }
    if (upper > lower)
        reading.faults += (upper - lower) * 0.4;
    return reading;
}

// From about 1 (every character belongs to the language) downwards.
double likeness(const Reading& reading, const UpperHalf& half, const Language& language)
{
    double sum = 0;
    for (std::size_t i = 0; i < half.size(); ++i) {
        if (reading.counts[i] == 0)
            continue;
        auto c = half[i];
        double weight = -1.5;
        if (language.letters.contains(c))
            weight = 1;
        else if (isTypographic(c))
            weight = 0.97;
        else if (u_isalpha(c))
            weight = -0.8;
        sum += weight * reading.counts[i];
    }
    return (sum - reading.faults) / reading.total;
}

// --- Encodings ----------------------------------------------------------------------------------------

double prior(TextEncoding encoding)
{
    using enum TextEncoding;
    if (encoding == windows1252)
        return 0.03;
    if (encoding >= windows1250 && encoding <= windows874)
        return 0.02;
    if (encoding == koi8R || encoding == koi8U || encoding == iso8859_2 || encoding == iso8859_15)
        return 0;
    if (encoding == iso8859_16)
        return -0.05; // its letters with commas are read with cedillas elsewhere, and hardly anybody wrote it
    if (encoding >= iso8859_2 && encoding <= iso8859_16)
        return -0.01;
    if (encoding >= ibm437 && encoding <= ibm866)
        return -0.03;
    return -0.05;
}

std::optional<TextEncoding> detectorsAnswer(std::string_view sample)
{
    std::unique_ptr<uchardet, decltype(&uchardet_delete)> detector(uchardet_new(), uchardet_delete);
    if (uchardet_handle_data(detector.get(), sample.data(), sample.size()) != 0)
        return std::nullopt;
    uchardet_data_end(detector.get());
    auto found = textEncodingNamed(uchardet_get_charset(detector.get()));
    return found && !isUnicode(*found) ? found : std::nullopt;
}

// Encodings that detectors mistake for one another, because the texts in them differ in a few bytes only.
bool areSiblings(TextEncoding a, TextEncoding b)
{
    using enum TextEncoding;
    static constexpr std::pair<TextEncoding, TextEncoding> pairs[] = {
        {koi8R, koi8U},
        {windows1250, iso8859_2},
        {windows1250, iso8859_16},
        {iso8859_2, iso8859_16},
        {windows1252, iso8859_15},
        {windows1253, iso8859_7},
        {windows1257, iso8859_13},
        {iso8859_4, iso8859_13},
        {windows1255, iso8859_8},
        {ibm850, ibm852},
        {ibm850, ibm437},
        {ibm850, ibm857},
        {windows1252, iso8859_13},
        {windows1252, windows1258},
        {macRoman, macCentralEurope},
        {windows1257, iso8859_4},
    };
    return a == b || std::ranges::any_of(pairs, [&](auto& pair) {
               return (pair.first == a && pair.second == b) || (pair.first == b && pair.second == a);
           });
}

// Short words that are frequent in a language and hold no letter beyond ASCII. They tell languages apart where few
// letters do.
constexpr std::pair<std::string_view, std::string_view> frequentWords[] = {
    {"en", "the and you to of is it in that this have for not what your are with can me my"},
    {"fr", "je de la le pas et vous que les des un une est pour dans ce il qui tu elle ne sur du"},
    {"de", "ich und die der das nicht ist du sie es ein eine wir den mit zu auf von was nach"},
    {"es", "que de la el no en los un una se por con lo para las mi del ha este al"},
    {"it", "che non di la il un una per sono ho del della con le mi si ha ma nel da"},
    {"pt", "que de o a um uma os para com se do da em as no na por eu ele foi seu"},
    {"nl", "de het een ik je niet van en dat is te we hij wat op in zijn ze er voor om"},
    {"sv", "jag och att det som en inte den vi han kan du ett med av till om har"},
    {"da", "jeg og at det er en ikke den vi til har med af der han kan et som de"},
    {"nb", "jeg og at det er en ikke den vi til har med av han kan et som de ikke"},
    {"fi", "ja on ei se hän en mutta kun niin minun sinun tai kuin ole mikä mitä ovat voi"},
    {"is", "og ekki er að til af sem um en hann var ég"},
    {"ca", "que de la el no un una els les per amb es del al en ho si"},
    {"et", "ja on ei ma sa see ta kui mis oma et ole aga või"},
    {"sq", "dhe nuk i e nga me se ka do ju"},
    {"pl", "nie to na w i jest do z co jak ale tak tego mnie ci sie o za by od dla"},
    {"cs", "je to na se v a ne si co ale jsem tak jak za do ten po ve pro s z"},
    {"sk", "je to na sa v a nie si som ale tak ako do po pre s z ten zo"},
    {"hu", "a az nem hogy is egy van de ez ha meg csak mi ki mint vagy"},
    {"sl", "je v in na se da ne za to so ki pa po kot ali iz"},
    {"hr", "je u i na se da ne za to su što od kao ili iz sam"},
    {"bs_Latn", "je u i na se da ne za to su od kao ili iz sam"},
    {"sr_Latn", "je u i na se da ne za to su od kao ili iz sam"},
    {"ro", "de nu la un o este pe cu ce din care mai sa pentru sunt am"},
    {"tr", "bir bu ve ne de da bana sen ben var yok evet olarak ile veya"},
    {"lt", "ir ne kad tai su bet yra kaip jis ar iš"},
    {"lv", "un ir ne no ar par ka vai kas tas es"},
    {"eo", "la de kaj en ne mi vi estas al por"},
    {"vi", "anh em ta con cho ra khi trong cái"},
};

class WordCounts {
public:
    explicit WordCounts(std::string_view text)
    {
        std::string word;
        for (char c : text) {
            bool isLetter = c < 0 || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
            if (isLetter) {
                word += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
                continue;
            }
            if (!word.empty() && word.size() < 8)
                ++counts_[word];
            word.clear();
        }
        for (auto& [language, words] : frequentWords) {
            double hits = 0;
            for (auto rest = words; !rest.empty();) {
                auto one = rest.substr(0, rest.find(' '));
                rest.remove_prefix(std::min(rest.size(), one.size() + 1));
                if (auto found = counts_.find(one); found != counts_.end())
                    hits += std::max(1.0, static_cast<double>(one.size()) - 1) * found->second;
            }
            hits_[language] = hits;
            most_ = std::max(most_, hits);
        }
    }

    // From 0 to 1, the likeliest language getting 1; 0 for all where nothing can be said.
    double share(std::string_view language) const
    {
        auto found = hits_.find(language);
        return found == hits_.end() || most_ < 3 ? 0 : found->second / most_;
    }

private:
    std::map<std::string, int, std::less<>> counts_;
    std::map<std::string_view, double> hits_;
    double most_ = 0;
};

double weightOf(const LegacyHints& hints, std::string_view language)
{
    double weight = 0;
    for (auto& hint : hints) {
        auto name = std::string_view(hint.language).substr(0, hint.language.find_first_of("-_"));
        if (name == language.substr(0, language.find('_')))
            weight = std::max(weight, hint.weight);
    }
    return weight;
}

// Of the bytes beyond ASCII that are pairs, how many are of the rows with the common characters.
double commonness(TextEncoding encoding, std::string_view sample)
{
    using enum TextEncoding;
    double pairs = 0, common = 0;
    for (std::size_t i = 0; i + 1 < sample.size(); ++i) {
        auto lead = static_cast<unsigned char>(sample[i]);
        if (lead < 0x80)
            continue;
        if (encoding == shiftJIS && lead >= 0xA1 && lead <= 0xDF) {
            ++pairs; // half-width kana are rare
            continue;
        }
        ++pairs;
        bool isCommon = false;
        switch (encoding) {
        case shiftJIS:
            isCommon = lead == 0x81 || lead == 0x82 || lead == 0x83 || (lead >= 0x88 && lead <= 0x97);
            break;
        case eucJP:
            isCommon = lead == 0xA1 || lead == 0xA4 || lead == 0xA5 || (lead >= 0xB0 && lead <= 0xCF);
            break;
        case gb18030:
            isCommon = lead == 0xA1 || lead == 0xA3 || (lead >= 0xB0 && lead <= 0xD7);
            break;
        case big5:
            isCommon = lead == 0xA1 || (lead >= 0xA4 && lead <= 0xC6);
            break;
        case eucKR:
            isCommon = lead == 0xA1 || (lead >= 0xB0 && lead <= 0xC8);
            break;
        default:
            break;
        }
        common += isCommon;
        ++i;
    }
    return pairs > 0 ? common / pairs : 0;
}

struct Candidate {
    TextEncoding encoding;
    double score;
};

double scoreOf(TextEncoding encoding, std::string_view sample, std::optional<TextEncoding> answer,
               const WordCounts& words, const LegacyHints& hints)
{
    using enum TextEncoding;
    // What is usual decides where the text says little.
    auto upper = static_cast<double>(std::ranges::count_if(sample, [](char c) { return c < 0; }));
    double bonus = prior(encoding) * std::min(1.0, 50 / std::max(upper, 1.0))
        + (answer && areSiblings(*answer, encoding) ? 0.15 : 0);
    auto& row = textEncodingRow(encoding);
    auto* half = upperHalf(encoding);
    if (!half) {
        // Pairs of letters of a script of one byte decode as rare characters; running text is mostly common ones.
        auto language = encoding == shiftJIS || encoding == eucJP ? "ja" : encoding == eucKR ? "ko" : "zh";
        return commonness(encoding, sample) * 1.2 - 0.3 + bonus + (answer == encoding ? 0.25 : 0)
            + weightOf(hints, language);
    }
    auto reading = readingOf(*half, sample);
    double best = -10;
    for (std::string_view rest = row.languages; !rest.empty();) {
        auto name = rest.substr(0, rest.find(' '));
        rest.remove_prefix(std::min(rest.size(), name.size() + 1));
        best = std::max(best,
                        likeness(reading, *half, languageNamed(name)) + words.share(name) * 0.25
                            + weightOf(hints, name));
    }
    return best + bonus;
}

} // namespace

std::vector<TextEncoding> guessLegacyEncodings(std::string_view bytes, const LegacyHints& hints)
{
    auto sample = sampleOf(bytes);
    auto answer = detectorsAnswer(sample);
    WordCounts words(bytes.substr(0, sampleSize));
    std::vector<Candidate> candidates;
    for (auto encoding : legacyTextEncodings()) {
        if (encoding == TextEncoding::iso2022JP || encoding == TextEncoding::iso2022KR)
            continue; // they are of ASCII bytes alone
        if (decodesStrictly(encoding, sample, Ending::mayBeCut))
            candidates.push_back({encoding, scoreOf(encoding, sample, answer, words, hints)});
    }
    // Of equal ones the earlier in the table.
    std::ranges::sort(candidates, [](const Candidate& a, const Candidate& b) {
        return a.score != b.score ? a.score > b.score : a.encoding < b.encoding;
    });
    std::vector<TextEncoding> result;
    for (auto& candidate : candidates) {
        if (decodesStrictly(candidate.encoding, bytes))
            result.push_back(candidate.encoding);
    }
    return result;
}

std::string languageOfFileName(std::string_view name)
{
    auto end = name.rfind('.');
    if (end == std::string_view::npos || end == 0)
        return {};
    auto begin = name.find_last_of("._ ", end - 1);
    if (begin == std::string_view::npos)
        return {};
    auto tag = name.substr(begin + 1, end - begin - 1);
    auto language = std::string(tag.substr(0, tag.find('-')));
    bool isTag = (language.size() == 2 || language.size() == 3) && std::ranges::all_of(language, [](char c) {
                     return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
                 });
    if (!isTag)
        return {};
    std::array<char, 16> canonical{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_getLanguage(language.c_str(), canonical.data(), canonical.size(), &status);
    return U_SUCCESS(status) ? std::string(canonical.data()) : std::string();
}

} // namespace platform
