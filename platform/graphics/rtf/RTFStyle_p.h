// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSMutableAttributedString.h"
#include "platform/graphics/UIColor.h"

#include <compare>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// How characters look, in the format's own terms.
struct RTFStyle {
    std::int32_t font = 0;
    std::int32_t halfPoints = 24;
    std::int32_t textColor = 0; // numbers of the colour table; 0 is as a rule the reader's own
    std::int32_t backgroundColor = 0;
    std::int32_t underline = 0; // as NSUnderlineStyle
    std::int32_t strikethrough = 0;
    std::int32_t raise = 0;
    std::size_t link = 0; // 0: none
    bool isBold = false;
    bool isItalic = false;
    bool isHidden = false;

    auto operator<=>(const RTFStyle&) const = default;
};

struct RTFFont {
    std::string name;
    std::optional<std::int32_t> codePage;
    bool isMonospaced = false;
};

// What a document says before its text.
struct RTFTables {
    std::map<std::int32_t, RTFFont> fonts;
    std::vector<std::optional<UIColor>> colors; // nothing: whatever the reader's own colour is
    std::vector<std::optional<AttributeValue>> links{std::nullopt};
};

// Gathers text of one style after the other.
class RTFTextBuilder {
public:
    explicit RTFTextBuilder(const RTFTables& tables)
        : tables_(tables)
    {
    }
    void append(std::string_view text, const RTFStyle& style);
    NSAttributedString finish();
    std::size_t runCount() const { return runCount_; }

private:
    void endRun();
    const TextAttributes& attributes(const RTFStyle& style);

    const RTFTables& tables_;
    NSMutableAttributedString text_;
    std::size_t runCount_ = 0;
    // not yet in text_
    std::string run_;
    RTFStyle style_;
    std::map<RTFStyle, TextAttributes> known_;
};

} // namespace platform
