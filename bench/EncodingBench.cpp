// SPDX-License-Identifier: MIT
// How many files of old encodings are decoded exactly.
//
//   EncodingBench                   subtitles made of the translations that the machine's packages have
//                                   (nautilus-data, evince-common, gedit-common), encoded as they would have been
//   EncodingBench FOLDER TABLE      files of a folder; each line of TABLE: a path in it, a tab, the true charset
#include "platform/foundation/LegacyDecoding_p.h"
#include "platform/foundation/LegacyGuess_p.h"
#include "platform/foundation/TextDecoding.h"
#include "platform/foundation/URL.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <unicode/normalizer2.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>

using namespace platform;

namespace {

struct Pair {
    const char* language;
    const char* charset; // as ICU names it
};
constexpr Pair pairs[] = {
    {"fr", "windows-1252"},    {"de", "windows-1252"}, {"es", "windows-1252"},   {"it", "windows-1252"},
    {"pt_BR", "windows-1252"}, {"nl", "windows-1252"}, {"sv", "windows-1252"},   {"da", "windows-1252"},
    {"nb", "windows-1252"},    {"fi", "windows-1252"}, {"is", "windows-1252"},   {"ca", "windows-1252"},
    {"sq", "windows-1252"},    {"fr", "ISO-8859-15"},  {"fi", "ISO-8859-15"},    {"fr", "ibm-850"},
    {"de", "ibm-850"},         {"pl", "windows-1250"}, {"pl", "ISO-8859-2"},     {"pl", "ibm-852"},
    {"cs", "windows-1250"},    {"cs", "ISO-8859-2"},   {"sk", "windows-1250"},   {"hu", "windows-1250"},
    {"hu", "ISO-8859-2"},      {"sl", "windows-1250"}, {"hr", "windows-1250"},   {"hr", "ISO-8859-2"},
    {"ro", "windows-1250"},    {"ro", "ISO-8859-2"},   {"ru", "windows-1251"},   {"ru", "KOI8-R"},
    {"ru", "ISO-8859-5"},      {"ru", "ibm-866"},      {"ru", "x-mac-cyrillic"}, {"uk", "windows-1251"},
    {"uk", "KOI8-U"},          {"bg", "windows-1251"}, {"be", "windows-1251"},   {"sr", "windows-1251"},
    {"mk", "windows-1251"},    {"el", "windows-1253"}, {"el", "ISO-8859-7"},     {"tr", "windows-1254"},
    {"he", "windows-1255"},    {"ar", "windows-1256"}, {"fa", "windows-1256"},   {"ar", "ISO-8859-6"},
    {"lt", "windows-1257"},    {"lv", "windows-1257"}, {"et", "windows-1257"},   {"lt", "ISO-8859-13"},
    {"vi", "windows-1258"},    {"th", "windows-874"},  {"ja", "windows-31j"},    {"ja", "EUC-JP"},
    {"ko", "windows-949"},     {"zh_CN", "GB18030"},   {"zh_TW", "windows-950"}, {"eo", "ISO-8859-3"},
};
constexpr int cueCounts[] = {3, 10, 30, 100, 300};
constexpr const char* domains[] = {"nautilus", "evince", "gedit"};
constexpr int filesEach = 6;

std::string bytesOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The translated messages of a catalogue that look like a line of talk.
std::vector<std::string> messagesOf(const std::string& catalogue)
{
    std::vector<std::string> messages;
    auto number = [&](std::size_t at) {
        std::uint32_t value = 0;
        std::memcpy(&value, catalogue.data() + at, sizeof value);
        return value;
    };
    if (catalogue.size() < 28)
        return messages;
    auto count = number(8), table = number(16);
    for (std::uint32_t i = 1; i < count; ++i) {
        auto text = catalogue.substr(number(table + i * 8 + 4), number(table + i * 8));
        std::string line;
        for (char c : text.substr(0, text.find('\0'))) {
            if (c != '_') // marks a key of a menu
                line += c == '\n' ? ' ' : c;
        }
        if (line.size() > 8 && line.size() < 160 && line.find('<') == std::string::npos)
            messages.push_back(line);
    }
    return messages;
}

class Encoder {
public:
    explicit Encoder(const Pair& pair)
        : pair_(pair)
    {
        UErrorCode status = U_ZERO_ERROR;
        converter_.reset(ucnv_open(pair.charset, &status));
        ucnv_setFromUCallBack(converter_.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                              &status);
    }

    // As somebody would have written `text` then; nothing when that cannot be undone. Sets `text` to what was written.
    std::optional<std::string> encode(icu::UnicodeString& text)
    {
        if (pair_.language == std::string("ro")) { // there were no commas, only cedillas
            constexpr std::pair<char16_t, char16_t> letters[] = {{u'\u0219', u'\u015F'},
                                                                 {u'\u021B', u'\u0163'},
                                                                 {u'\u0218', u'\u015E'},
                                                                 {u'\u021A', u'\u0162'}};
            for (auto [comma, cedilla] : letters)
                text.findAndReplace(icu::UnicodeString(comma), icu::UnicodeString(cedilla));
        }
        if (pair_.charset == std::string("windows-1258"))
            text = withMarks(text);
        auto bytes = encoded(text);
        if (!bytes)
            return std::nullopt;
        UErrorCode status = U_ZERO_ERROR;
        std::vector<UChar> back(bytes->size() * 2 + 2);
        auto size = ucnv_toUChars(converter_.get(), back.data(), static_cast<int>(back.size()), bytes->data(),
                                  static_cast<int>(bytes->size()), &status);
        return icu::UnicodeString(back.data(), size) == text ? bytes : std::nullopt;
    }

private:
    struct Closer {
        void operator()(UConverter* converter) const { ucnv_close(converter); }
    };

    std::optional<std::string> encoded(const icu::UnicodeString& text)
    {
        std::string bytes(static_cast<std::size_t>(text.length()) * 4 + 8, '\0');
        UErrorCode status = U_ZERO_ERROR;
        auto size = ucnv_fromUChars(converter_.get(), bytes.data(), static_cast<int>(bytes.size()),
                                    text.getBuffer(), text.length(), &status);
        if (U_FAILURE(status))
            return std::nullopt;
        bytes.resize(static_cast<std::size_t>(size));
        return bytes;
    }

    // Vietnamese letters that the charset has, and tone marks of their own where it has no letter with the tone.
    icu::UnicodeString withMarks(const icu::UnicodeString& text)
    {
        UErrorCode status = U_ZERO_ERROR;
        auto* decompose = icu::Normalizer2::getNFDInstance(status);
        auto* compose = icu::Normalizer2::getNFCInstance(status);
        icu::UnicodeString result;
        for (int i = 0; i < text.length(); ++i) {
            icu::UnicodeString letter(text[i]);
            if (!encoded(letter)) {
                auto parts = decompose->normalize(letter, status);
                for (int mark = 1; mark < parts.length(); ++mark) {
                    icu::UnicodeString rest = parts;
                    rest.remove(mark, 1);
                    auto base = compose->normalize(rest, status);
                    if (!encoded(base))
                        continue;
                    letter = base;
                    letter += parts[mark];
                    break;
                }
            }
            result += letter;
        }
        return result;
    }

    const Pair& pair_;
    std::unique_ptr<UConverter, Closer> converter_;
};

struct MadeFile {
    std::string bytes;
    std::string text;
};

std::optional<MadeFile> makeFile(const std::vector<std::string>& messages, Encoder& encoder, int cues,
                                 std::mt19937& random)
{
    MadeFile file;
    int made = 0;
    for (int attempt = 0; made < cues && attempt < cues * 20; ++attempt) {
        auto text = icu::UnicodeString::fromUTF8(messages[random() % messages.size()]);
        auto bytes = encoder.encode(text);
        if (!bytes)
            continue;
        char head[64];
        std::snprintf(head, sizeof head, "%d\r\n00:%02d:%02d,000 --> 00:%02d:%02d,500\r\n", made + 1,
                      made / 60, made % 60, made / 60, made % 60);
        file.bytes += head + *bytes + "\r\n\r\n";
        std::string line;
        text.toUTF8String(line);
        file.text += head + line + "\r\n\r\n";
        ++made;
    }
    bool isASCII = file.bytes == file.text
        && std::find_if(file.bytes.begin(), file.bytes.end(), [](char c) { return c < 0; })
            == file.bytes.end();
    return made < cues || isASCII ? std::nullopt : std::optional(std::move(file));
}

struct Score {
    int exact = 0;
    int all = 0;
    std::map<std::string, int> mistakenFor;

    void add(const Score& other)
    {
        exact += other.exact;
        all += other.all;
    }
    double percent() const { return all == 0 ? 0 : 100.0 * exact / all; }
};

// Decodes by the guess; gives what the encoding was taken for, when the text is not exact.
std::optional<std::string> mistake(const MadeFile& file)
{
    auto guesses = guessLegacyEncodings(file.bytes);
    if (guesses.empty())
        return "nothing";
    std::string text(legacyCapacity(file.bytes.size()), '\0');
    auto size = decodeLegacy(guesses.front(), file.bytes, text.data());
    text.resize(size.value_or(0));
    return text == file.text ? std::nullopt : std::optional<std::string>(charsetName(guesses.front()));
}

int measureTranslations()
{
    std::mt19937 random(7);
    std::map<int, Score> bySize;
    double microseconds = 0;
    std::printf("%-24s %6s %8s   %s\n", "language/charset", "files", "exact", "taken for");
    for (auto& pair : pairs) {
        Score all;
        Encoder encoder(pair);
        for (auto* domain : domains) {
            auto catalogue = std::filesystem::path("/usr/share/locale") / pair.language / "LC_MESSAGES"
                / (std::string(domain) + ".mo");
            auto messages = messagesOf(bytesOf(catalogue));
            if (messages.size() < 20)
                continue;
            for (int cues : cueCounts) {
                for (int i = 0; i < filesEach; ++i) {
                    auto file = makeFile(messages, encoder, cues, random);
                    if (!file)
                        continue;
                    auto begin = std::chrono::steady_clock::now();
                    auto wrong = mistake(*file);
                    microseconds +=
                        std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin)
                            .count();
                    Score one{.exact = wrong ? 0 : 1, .all = 1, .mistakenFor = {}};
                    all.add(one);
                    bySize[cues].add(one);
                    if (wrong)
                        ++all.mistakenFor[std::to_string(cues) + " cues: " + *wrong];
                }
            }
        }
        std::printf("%-24s %6d %7.1f%%  ", (std::string(pair.language) + "/" + pair.charset).c_str(), all.all,
                    all.percent());
        for (auto& [what, times] : all.mistakenFor)
            std::printf(" %s x%d;", what.c_str(), times);
        std::printf("\n");
    }
    int files = 0;
    for (auto& [cues, score] : bySize) {
        std::printf("%4d cues: %4d of %4d exact, %.2f %%\n", cues, score.exact, score.all, score.percent());
        files += score.all;
    }
    if (files == 0) {
        std::fprintf(
            stderr,
            "EncodingBench: no translations; install nautilus-data, evince-common and gedit-common\n");
        return 1;
    }
    std::printf("%.2f ms a file\n", microseconds / files / 1000);
    return 0;
}

int measureFolder(const std::filesystem::path& folder, const std::filesystem::path& table)
{
    std::map<std::string, Score> byCharset;
    Score all;
    std::istringstream lines(bytesOf(table));
    for (std::string line; std::getline(lines, line);) {
        auto tab = line.find('\t');
        if (tab == std::string::npos)
            continue;
        auto charset = line.substr(tab + 1);
        auto url = URL::fileURL((folder / line.substr(0, tab)).string());
        auto encoding = textEncodingNamed(charset);
        auto truth = encoding ? readText(url, *encoding) : readText(url);
        auto read = readText(url);
        bool isExact = encoding && truth && read && truth->text == read->text;
        auto& score = byCharset[charset];
        Score one{.exact = isExact ? 1 : 0, .all = 1, .mistakenFor = {}};
        score.add(one);
        all.add(one);
        if (!isExact)
            ++score.mistakenFor[read ? std::string(charsetName(read->encoding)) : "refused"];
    }
    for (auto& [charset, score] : byCharset) {
        std::printf("%-20s %4d of %4d exact  ", charset.c_str(), score.exact, score.all);
        for (auto& [what, times] : score.mistakenFor)
            std::printf(" %s x%d;", what.c_str(), times);
        std::printf("\n");
    }
    std::printf("%d of %d exact, %.2f %%\n", all.exact, all.all, all.percent());
    return all.all > 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 1)
        return measureTranslations();
    if (argc == 3)
        return measureFolder(argv[1], argv[2]);
    std::fprintf(stderr, "usage: EncodingBench [FOLDER TABLE]\n");
    return 2;
}
