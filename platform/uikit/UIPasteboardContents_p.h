// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIPasteboardItem.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// What this program offers, as other programs are to see it: under MIME types, and nothing once its time is over. Never
// changes. Main thread only.
class UIPasteboardContents {
public:
    UIPasteboardContents(std::vector<UIPasteboardItem> items, const UIPasteboardOptions& options);

    bool hasExpired() const;
    // None once it has expired.
    std::vector<UIPasteboardItem> items() const;
    // The MIME types that it is offered under, the texts' several names among them.
    std::vector<std::string> formats() const;
    // Under a MIME type: what the first item that has it says; texts and lists of URLs of several items are put together.
    // Nothing when there is none, it has expired, or its file is gone. `Bytes` is a byte buffer that is made to measure.
    template <class Bytes>
    std::optional<Bytes> bytes(std::string_view format) const;
    bool hasText() const;
    std::optional<String> text() const;
    // Whether it must not outlive the program.
    bool isFleeting() const;

private:
    std::vector<const UIPasteboardValue*> valuesFor(std::string_view format) const;

    std::vector<UIPasteboardItem> items_;
    UIPasteboardOptions options_;
};

// The MIME type of a pasteboard type.
std::string mimeTypeOfPasteboardType(std::string_view type);
// What tells clipboard managers to keep nothing.
inline constexpr std::string_view pasteboardSecretType = "x-kde-passwordManagerHint";

// Whether that is plain text, under any of its names.
bool isPasteboardText(std::string_view type);
String textOf(const UIPasteboardValue& value);

// Appends the value's bytes; false when its file is gone.
template <class Bytes>
bool appendBytes(Bytes& bytes, const UIPasteboardValue& value)
{
    auto append = [&](std::string_view text) {
        bytes.append(text.data(), static_cast<std::ptrdiff_t>(text.size()));
    };
    if (const auto* data = std::get_if<std::shared_ptr<const NSData>>(&value)) {
        if (!*data)
            return false;
        auto begin = static_cast<std::size_t>(bytes.size());
        bytes.resize(begin + (*data)->length());
        return (*data)->copyBytes({bytes.data() + begin, (*data)->length()});
    }
    auto text = textOf(value); // held while it is copied
    append(text.utf8());
    return true;
}

template <class Bytes>
std::optional<Bytes> UIPasteboardContents::bytes(std::string_view format) const
{
    if (hasExpired())
        return std::nullopt;
    auto self = *this; // a provider may put something else in its place
    auto values = self.valuesFor(format);
    if (values.empty())
        return std::nullopt;
    Bytes joined;
    for (const auto* value : values) {
        if (joined.size() > 0)
            joined.append(isPasteboardText(format) ? "\n" : "\r\n", isPasteboardText(format) ? 1 : 2);
        if (!appendBytes(joined, *value))
            return std::nullopt;
    }
    return joined;
}

} // namespace platform
