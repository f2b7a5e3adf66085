// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSAttributedString.h"

namespace platform {

// A styled text under construction. Handing it over as an NSAttributedString costs nothing; changing it
// afterwards copies first, so nobody sees a text change. Changes at the end cost what they add, others also
// what follows. Ranges as in NSAttributedString. One thread at a time.
class NSMutableAttributedString : public NSAttributedString {
public:
    NSMutableAttributedString() = default;
    explicit NSMutableAttributedString(String text, TextAttributes attributes = {})
        : NSAttributedString(std::move(text), std::move(attributes))
    {
    }
    explicit NSMutableAttributedString(NSAttributedString text)
        : NSAttributedString(std::move(text))
    {
    }

    void append(NSAttributedString text);
    void insert(NSAttributedString text, Utf16Offset at);
    void replaceCharacters(NSRange range, NSAttributedString replacement);
    // The new text takes the attributes of the first character replaced; of an empty range those of the
    // character before it, or at the start of the one after.
    void replaceCharacters(NSRange range, String replacement);
    void deleteCharacters(NSRange range);

    // In place of all that the range had.
    void setAttributes(const TextAttributes& attributes, NSRange range);
    // Beside what the range has under other keys.
    void addAttributes(const TextAttributes& attributes, NSRange range);
    void addAttribute(std::string_view key, AttributeValue value, NSRange range);
    void removeAttribute(std::string_view key, NSRange range);

private:
    Storage& ownStorage();
    template <class Change>
    void changeAttributes(NSRange range, Change change);
};

} // namespace platform
