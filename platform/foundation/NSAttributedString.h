// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSRange.h"
#include "platform/foundation/String.h"
#include "platform/foundation/TextAttributes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace platform {

// A text whose pieces have attributes. A value: copies share everything, so a long text costs nothing to hand
// around, and may cross threads. Ranges and offsets count UTF-16 units, as the platform does; one that reaches
// past the text stops the process, and so does a piece that would begin or end between the two units of one
// character, since half a character is no text. Neighbouring pieces with equal attributes are one run.
class NSAttributedString {
public:
    NSAttributedString() = default;
    // The whole text with the same attributes. Shares the storage of `text`.
    explicit NSAttributedString(String text, TextAttributes attributes = {});

    // UTF-8. Valid until this is assigned to, changed or gone.
    std::string_view string() const;
    std::int64_t length() const; // UTF-16 units
    bool isEmpty() const { return length() == 0; }
    NSRange range() const { return {0, length()}; }
    std::string_view string(NSRange range) const;

    // Attributes, and the widest piece around that has exactly them. Valid as string() is.
    struct Run {
        const TextAttributes& attributes;
        NSRange range;
    };
    // Requires: offset < length().
    Run attributes(Utf16Offset at) const;
    // One attribute, null where there is none, and the widest piece around, within `within`, that has the
    // same value of it. Requires: `at` is in `within`.
    struct AttributeRun {
        const AttributeValue* value;
        NSRange range;
    };
    AttributeRun attribute(std::string_view key, Utf16Offset at, NSRange within) const;
    AttributeRun attribute(std::string_view key, Utf16Offset at) const { return attribute(key, at, range()); }

    NSAttributedString attributedSubstring(NSRange from) const;

    // Calls `body` with each run in order, cut to `range`; true in `stop` ends it. The text does not change
    // under the walk, whatever `body` does.
    using RunBody = std::function<void(const TextAttributes& attributes, NSRange range, bool& stop)>;
    void enumerateAttributes(NSRange range, const RunBody& body) const;
    void enumerateAttributes(const RunBody& body) const { enumerateAttributes(range(), body); }
    // The same for one attribute: pieces that differ in others only are one, and so are those without it.
    using AttributeBody = std::function<void(const AttributeValue* value, NSRange range, bool& stop)>;
    void enumerateAttribute(std::string_view key, NSRange range, const AttributeBody& body) const;

    // Of the text and the run lengths.
    std::size_t hash() const;
    friend bool operator==(const NSAttributedString& a, const NSAttributedString& b);

protected:
    struct Storage;

    const Storage& storage() const;

    std::shared_ptr<Storage> storage_; // null when empty and never changed
};

} // namespace platform

template <>
struct std::hash<platform::NSAttributedString> {
    std::size_t operator()(const platform::NSAttributedString& text) const noexcept { return text.hash(); }
};
