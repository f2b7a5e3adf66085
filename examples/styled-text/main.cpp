// SPDX-License-Identifier: MIT
// Reads a document as styled text and prints its runs: styled-text plain|html|rtf FILE.
#include "kit/foundation/attributedStringFromContentsOf.h"
#include "kit/foundation/isRTL.h"
#include "platform/foundation/URL.h"
#include "platform/graphics/UIColor.h"
#include "platform/graphics/UIFont.h"

#include <cmath>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace {

using namespace platform;

std::optional<NSDocumentType> documentType(std::string_view name)
{
    if (name == "plain")
        return NSDocumentType::plain;
    if (name == "html")
        return NSDocumentType::html;
    if (name == "rtf")
        return NSDocumentType::rtf;
    return std::nullopt;
}

std::string described(const UIFont& font)
{
    std::string text(font.familyName().empty() ? "system" : font.familyName());
    text += " " + std::to_string(std::lround(font.pointSize()));
    text += font.weight() >= FontWeight::semibold ? " bold" : "";
    return text + (font.isItalic() ? " italic" : "");
}

std::string described(const AttributeValue& value)
{
    if (auto* font = value.as<UIFont>())
        return described(*font);
    if (auto* url = value.as<URL>())
        return url->absoluteString();
    if (auto* text = value.as<std::string>())
        return *text;
    if (auto* color = value.as<UIColor>()) {
        auto byte = [](double component) { return static_cast<int>(std::lround(component * 255)); };
        char hex[8];
        auto& of = color->components();
        std::snprintf(hex, sizeof hex, "#%02x%02x%02x", byte(of.red) & 0xFF, byte(of.green) & 0xFF,
                      byte(of.blue) & 0xFF);
        return hex;
    }
    return "yes";
}

std::string oneLine(std::string_view text)
{
    std::string line;
    for (auto byte : text)
        line += byte == '\n' ? "\\n" : byte == '\t' ? "\\t" : std::string(1, byte);
    return line;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    auto type = argumentCount == 3 ? documentType(arguments[1]) : std::nullopt;
    if (!type) {
        std::fprintf(stderr, "usage: styled-text plain|html|rtf FILE\n");
        return 2;
    }
    auto text = zelk::attributedStringFromContentsOf(URL::fileURL(arguments[2]), *type);
    if (!text) {
        std::fprintf(stderr, "styled-text: %s\n", text.error().localizedDescription().c_str());
        return 1;
    }
    text->enumerateAttributes([&](const TextAttributes& attributes, NSRange range, bool&) {
        std::printf("\"%s\"\n", oneLine(text->string(range)).c_str());
        for (auto& [key, value] : attributes.entries())
            std::printf("    %s: %s\n", key.c_str(), described(value).c_str());
    });
    std::printf("%s\n",
                zelk::isRTL(text->string()) ? "The language runs from right to left."
                                            : "The language runs from left to right, or is not known.");
    return 0;
}
