// SPDX-License-Identifier: MIT
#include "platform/graphics/rtf/RTFWords_p.h"

#include "platform/foundation/TextAttributes.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

using enum RTFAction;

constexpr auto single = static_cast<std::int32_t>(NSUnderlineStyle::single);
constexpr auto thick = static_cast<std::int32_t>(NSUnderlineStyle::thick);
constexpr auto doubled = static_cast<std::int32_t>(NSUnderlineStyle::doubled);

constexpr RTFWord to(std::string_view name, RTFDestination destination)
{
    return {name, enter, static_cast<std::int32_t>(destination)};
}
constexpr RTFWord skip(std::string_view name)
{
    return to(name, RTFDestination::skipped);
}

constexpr auto words = [] {
    auto all = std::to_array<RTFWord>({
        {"par", paragraphEnd, 0, "\n"},
        {"sect", paragraphEnd, 0, "\n"},
        {"row", paragraphEnd, 0, "\n"},
        {"nestrow", paragraphEnd, 0, "\n"},
        {"line", paragraphEnd, 0, "\u2028"},
        {"page", paragraphEnd, 0, "\f"},
        {"cell", paragraphEnd, 0, "\t"},
        {"nestcell", paragraphEnd, 0, "\t"},
        {"tab", character, 0, "\t"},
        {"emdash", character, 0, "—"},
        {"endash", character, 0, "–"},
        {"bullet", character, 0, "•"},
        {"lquote", character, 0, "‘"},
        {"rquote", character, 0, "’"},
        {"ldblquote", character, 0, "“"},
        {"rdblquote", character, 0, "”"},
        {"emspace", character, 0, "\u2003"},
        {"enspace", character, 0, "\u2002"},
        {"qmspace", character, 0, "\u2005"},
        {"zwbo", character, 0, "\u200B"},
        {"zwnbo", character, 0, "\u2060"},
        {"zwj", character, 0, "\u200D"},
        {"zwnj", character, 0, "\u200C"},
        {"ltrmark", character, 0, "\u200E"},
        {"rtlmark", character, 0, "\u200F"},

        {"b", bold},
        {"i", italic},
        {"ul", underline, single},
        {"uld", underline, single},
        {"uldash", underline, single},
        {"uldashd", underline, single},
        {"uldashdd", underline, single},
        {"ulw", underline, single},
        {"ulwave", underline, single},
        {"ulth", underline, thick},
        {"ulhwave", underline, thick},
        {"uldb", underline, doubled},
        {"ululdbwave", underline, doubled},
        {"ulnone", underline, 0},
        {"strike", strikethrough, single},
        {"striked", strikethrough, doubled},
        {"super", raise, 1},
        {"sub", raise, -1},
        {"nosupersub", raise, 0},
        {"up", raiseBy},
        {"dn", lowerBy},
        {"v", hide},
        {"plain", plain},
        {"fs", fontSize},
        {"f", font},
        {"cf", textColor},
        {"cb", backgroundColor},
        {"chcbpat", backgroundColor},
        {"highlight", backgroundColor},

        {"ansi", codePage, 1252},
        {"mac", codePage, 10000},
        {"pc", codePage, 437},
        {"pca", codePage, 850},
        {"ansicpg", codePage, 0},
        {"deff", defaultFont},
        {"u", unicode},
        {"uc", unicodeSkip},
        {"fcharset", fontCharset},
        {"cpg", fontCodePage},
        {"fmodern", fontIsMonospaced},
        {"red", red},
        {"green", green},
        {"blue", blue},

        {"field", field},
        to("fldinst", RTFDestination::fieldInstruction),
        to("fldrslt", RTFDestination::fieldResult),
        to("fonttbl", RTFDestination::fontTable),
        to("colortbl", RTFDestination::colorTable),
        to("pict", RTFDestination::picture),
        to("shppict", RTFDestination::shapePicture),
        skip("nonshppict"),
        skip("stylesheet"),
        skip("info"),
        skip("filetbl"),
        skip("revtbl"),
        skip("pgptbl"),
        skip("header"),
        skip("headerl"),
        skip("headerr"),
        skip("headerf"),
        skip("footer"),
        skip("footerl"),
        skip("footerr"),
        skip("footerf"),
        skip("footnote"),
        skip("annotation"),
        skip("ftnsep"),
        skip("ftnsepc"),
        skip("ftncn"),
        skip("aftnsep"),
        skip("aftnsepc"),
        skip("aftncn"),
        skip("objclass"),
        skip("objdata"),
        skip("xe"),
        skip("tc"),
        skip("txe"),
        skip("rxe"),
        skip("bxe"),
        skip("falt"),
        skip("panose"),
        skip("fontemb"),
        skip("mmathPr"),
        skip("private"),
    });
    std::ranges::sort(all, {}, &RTFWord::name);
    return all;
}();

} // namespace

RTFWord findRTFWord(std::string_view name)
{
    auto found = std::ranges::lower_bound(words, name, {}, &RTFWord::name);
    return found != words.end() && found->name == name ? *found : RTFWord{name};
}

} // namespace platform
