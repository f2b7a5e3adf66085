// SPDX-License-Identifier: MIT
#include "apps/subtitle-thumbnailer/SandboxFonts.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <span>

#include <unistd.h>

namespace thumbnail {

namespace {

namespace fs = std::filesystem;

struct Range {
    char32_t first, last;
};

// A script, or several that one font serves, and how the names of such fonts' files begin, the best first.
struct Script {
    std::array<Range, 3> ranges;
    std::array<std::string_view, 8> names;
};

constexpr Script scripts[] = {
    // what every page needs: Latin, Greek, Cyrillic, digits
    {{{{0x20, 0x58F}}},
     {"DejaVuSans.", "NotoSans-Regular", "NotoSans[", "LiberationSans-Regular", "FreeSans.",
      "OpenSans-Regular", "Roboto-Regular", "NimbusSans-Regular"}},
    {{{{0x590, 0x5FF}, {0xFB1D, 0xFB4F}}},
     {"DejaVuSans.", "NotoSansHebrew", "LiberationSans-Regular", "FreeSans."}},
    {{{{0x600, 0x77F}, {0x8A0, 0x8FF}, {0xFB50, 0xFEFC}}},
     {"NotoSansArabic", "NotoNaskhArabic", "DejaVuSans.", "Vazir", "Amiri", "KacstOne", "FreeSans."}},
    {{{{0x900, 0x97F}}}, {"NotoSansDevanagari", "Lohit-Devanagari", "FreeSans."}},
    {{{{0x980, 0x9FF}}}, {"NotoSansBengali", "Lohit-Bengali", "FreeSans."}},
    {{{{0xA00, 0xA7F}}}, {"NotoSansGurmukhi", "Lohit-Gurmukhi"}},
    {{{{0xA80, 0xAFF}}}, {"NotoSansGujarati", "Lohit-Gujarati"}},
    {{{{0xB80, 0xBFF}}}, {"NotoSansTamil", "Lohit-Tamil"}},
    {{{{0xC00, 0xC7F}}}, {"NotoSansTelugu", "Lohit-Telugu"}},
    {{{{0xC80, 0xCFF}}}, {"NotoSansKannada", "Lohit-Kannada"}},
    {{{{0xD00, 0xD7F}}}, {"NotoSansMalayalam", "Lohit-Malayalam", "Meera"}},
    {{{{0xD80, 0xDFF}}}, {"NotoSansSinhala", "LKLUG", "lklug"}},
    {{{{0xE00, 0xE7F}}}, {"NotoSansThai", "Loma.", "Garuda.", "Waree.", "Laksaman."}},
    {{{{0xE80, 0xEFF}}}, {"NotoSansLao", "Phetsarath", "DejaVuSans."}},
    {{{{0x1000, 0x109F}}}, {"NotoSansMyanmar", "Padauk"}},
    {{{{0x10A0, 0x10FF}}}, {"DejaVuSans.", "NotoSansGeorgian"}},
    {{{{0x1200, 0x139F}}}, {"NotoSansEthiopic", "AbyssinicaSIL"}},
    {{{{0x1780, 0x17FF}}}, {"NotoSansKhmer", "KhmerOS"}},
    {{{{0x3040, 0x30FF}}},
     {"NotoSansCJK", "NotoSansJP", "SourceHanSans", "ipagp", "ipag", "TakaoPGothic", "VL-Gothic",
      "wqy-zenhei"}},
    {{{{0x1100, 0x11FF}, {0x3130, 0x318F}, {0xAC00, 0xD7A3}}},
     {"NotoSansCJK", "NotoSansKR", "SourceHanSans", "NanumGothic.", "UnDotum", "baekmuk"}},
    {{{{0x2E80, 0x303F}, {0x3400, 0x9FFF}, {0xF900, 0xFFEF}}},
     {"NotoSansCJK", "NotoSansSC", "NotoSansTC", "SourceHanSans", "wqy-microhei", "wqy-zenhei",
      "DroidSansFallback", "uming"}},
};

// The letters of `text`, as far as the table has use for them: well-formed UTF-8 beyond ASCII, without planes.
void markScripts(std::string_view text, std::span<bool> isWanted)
{
    for (std::size_t at = 0; at + 1 < text.size(); ++at) {
        auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
        char32_t c = 0;
        if (byte(0) >= 0xC2 && byte(0) < 0xE0)
            c = (byte(0) & 0x1FU) << 6 | (byte(1) & 0x3FU);
        else if (byte(0) >= 0xE0 && byte(0) < 0xF0 && at + 2 < text.size())
            c = (byte(0) & 0xFU) << 12 | (byte(1) & 0x3FU) << 6 | (byte(2) & 0x3FU);
        if (c == 0)
            continue;
        for (std::size_t i = 0; i < isWanted.size(); ++i) {
            for (auto& range : scripts[i].ranges)
                isWanted[i] = isWanted[i] || (c >= range.first && c <= range.last);
        }
    }
}

bool isFontFile(std::string_view name)
{
    return name.ends_with(".ttf") || name.ends_with(".otf") || name.ends_with(".ttc");
}

// How well a file's name fits: the place in the list of names, weights other than regular behind.
std::size_t rank(const Script& script, std::string_view name)
{
    std::size_t place = 0;
    for (auto prefix : script.names) {
        if (!prefix.empty() && name.starts_with(prefix)) {
            bool isRegular = prefix.ends_with('.') || prefix.find('-') != prefix.npos
                || name.find("Regular") != name.npos || name.find('[') != name.npos;
            return place * 2 + !isRegular;
        }
        ++place;
    }
    return std::string_view::npos;
}

std::string programFolder()
{
    char path[4096];
    auto size = ::readlink("/proc/self/exe", path, sizeof path);
    return size > 0 ? fs::path(std::string_view(path, static_cast<std::size_t>(size))).parent_path()
                    : fs::path();
}

} // namespace

std::vector<std::string> sandboxFontsFor(std::string_view text)
{
    std::error_code unknown; // what cannot be read has no fonts
    if (fs::exists("/etc/fonts/fonts.conf", unknown) || std::getenv("FONTCONFIG_FILE"))
        return {};
    constexpr auto count = std::size(scripts);
    std::array<bool, count> isWanted{true};
    markScripts(text, isWanted);

    std::array<std::size_t, count> bestRanks;
    bestRanks.fill(std::string_view::npos);
    std::array<std::string, count> best;
    for (auto* folder : {"/usr/share/fonts", "/usr/local/share/fonts"}) {
        fs::recursive_directory_iterator files(folder, fs::directory_options::skip_permission_denied,
                                               unknown);
        for (; !unknown && files != fs::recursive_directory_iterator(); files.increment(unknown)) {
            auto name = files->path().filename().string();
            if (!isFontFile(name))
                continue;
            for (std::size_t i = 0; i < count; ++i) {
                auto fit = isWanted[i] ? rank(scripts[i], name) : bestRanks[i];
                if (fit < bestRanks[i]) {
                    bestRanks[i] = fit;
                    best[i] = files->path().string();
                }
            }
        }
    }
    // Without a font for the page itself, the library's own search of everything is better, though slow.
    if (best[0].empty())
        return {};
    auto configuration = programFolder() + "/../share/zelk/fonts.conf";
    if (fs::exists(configuration, unknown))
        ::setenv("FONTCONFIG_FILE", configuration.c_str(), 1);
    std::vector<std::string> files;
    for (auto& file : best) {
        if (!file.empty() && std::ranges::find(files, file) == files.end())
            files.push_back(file);
    }
    return files;
}

} // namespace thumbnail
