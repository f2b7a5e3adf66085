// SPDX-License-Identifier: MIT
#include "platform/graphics/rtf/RTFStyle_p.h"

#include "platform/graphics/UIFont.h"

#include <utility>

namespace platform {

namespace {

// A document may use more styles than anybody reads; they are made again then.
constexpr std::size_t keptStyleCount = 4096;

UIFont fontOf(const RTFStyle& style, const RTFTables& tables)
{
    auto found = tables.fonts.find(style.font);
    auto weight = style.isBold ? FontWeight::bold : FontWeight::regular;
    auto font = UIFont::systemFont(style.halfPoints / 2.0, weight);
    if (found != tables.fonts.end()) {
        if (found->second.isMonospaced)
            font = font.withDesign(FontDesign::monospaced);
        font = font.withFamily(found->second.name);
    }
    return style.isItalic ? font.italic() : font;
}

const UIColor* colorOf(std::int32_t number, const RTFTables& tables)
{
    auto at = static_cast<std::size_t>(number);
    if (number < 0 || at >= tables.colors.size() || !tables.colors[at])
        return nullptr;
    return &*tables.colors[at];
}

TextAttributes makeAttributes(const RTFStyle& style, const RTFTables& tables)
{
    TextAttributes attributes{{std::string(NSFontAttributeName), fontOf(style, tables)}};
    if (auto* color = colorOf(style.textColor, tables))
        attributes.set(NSForegroundColorAttributeName, *color);
    if (auto* color = style.backgroundColor == 0 ? nullptr : colorOf(style.backgroundColor, tables))
        attributes.set(NSBackgroundColorAttributeName, *color);
    if (style.underline != 0)
        attributes.set(NSUnderlineStyleAttributeName, static_cast<NSUnderlineStyle>(style.underline));
    if (style.strikethrough != 0)
        attributes.set(NSStrikethroughStyleAttributeName, static_cast<NSUnderlineStyle>(style.strikethrough));
    if (style.raise != 0)
        attributes.set(NSSuperscriptAttributeName, static_cast<int>(style.raise));
    if (auto& link = tables.links[style.link])
        attributes.set(NSLinkAttributeName, *link);
    return attributes;
}

} // namespace

const TextAttributes& RTFTextBuilder::attributes(const RTFStyle& style)
{
    auto found = known_.find(style);
    if (found == known_.end()) {
        if (known_.size() >= keptStyleCount)
            known_.clear();
        found = known_.emplace(style, makeAttributes(style, tables_)).first;
    }
    return found->second;
}

void RTFTextBuilder::endRun()
{
    if (run_.empty())
        return;
    text_.append(NSAttributedString(String(run_), attributes(style_)));
    run_.clear();
    ++runCount_;
}

void RTFTextBuilder::append(std::string_view text, const RTFStyle& style)
{
    if (style != style_) {
        endRun();
        style_ = style;
    }
    run_ += text;
}

NSAttributedString RTFTextBuilder::finish()
{
    endRun();
    return std::move(text_);
}

} // namespace platform
