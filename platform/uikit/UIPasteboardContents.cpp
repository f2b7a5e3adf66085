// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPasteboardContents_p.h"

#include "platform/dispatch/currentDate.h"
#include "platform/foundation/UTF8.h"

#include <algorithm>
#include <array>
#include <utility>

namespace platform {

namespace {

constexpr std::string_view plainText = "text/plain";
constexpr std::string_view utf8PlainText = "text/plain;charset=utf-8";
constexpr std::string_view urlList = "text/uri-list";

constexpr std::array<std::pair<std::string_view, std::string_view>, 14> mimeTypes{{
    {"public.utf8-plain-text", plainText},
    {"public.plain-text", plainText},
    {"public.text", plainText},
    {utf8PlainText, plainText},
    {"public.html", "text/html"},
    {"public.rtf", "text/rtf"},
    {"public.url", urlList},
    {"public.file-url", urlList},
    {"public.png", "image/png"},
    {"public.jpeg", "image/jpeg"},
    {"public.tiff", "image/tiff"},
    {"public.mpeg-4", "video/mp4"},
    {"com.apple.quicktime-movie", "video/quicktime"},
    {"com.adobe.pdf", "application/pdf"},
}};

const UIPasteboardValue* find(const UIPasteboardItem& item, std::string_view format)
{
    for (const auto& [type, value] : item) {
        if (mimeTypeOfPasteboardType(type) == format)
            return &value;
    }
    return nullptr;
}

} // namespace

std::string mimeTypeOfPasteboardType(std::string_view type)
{
    for (const auto& [known, mimeType] : mimeTypes) {
        if (known == type)
            return std::string(mimeType);
    }
    return std::string(type);
}

bool isPasteboardText(std::string_view type)
{
    return mimeTypeOfPasteboardType(type) == plainText;
}

String textOf(const UIPasteboardValue& value)
{
    if (const auto* text = std::get_if<String>(&value))
        return *text;
    const auto* provider = std::get_if<UIPasteboardTextProvider>(&value);
    return provider && *provider ? (*provider)() : String();
}

UIPasteboardContents::UIPasteboardContents(std::vector<UIPasteboardItem> items,
                                           const UIPasteboardOptions& options)
    : items_(std::move(items))
    , options_(options)
{
}

bool UIPasteboardContents::hasExpired() const
{
    const auto& end = options_.UIPasteboardOptionExpirationDate;
    return end && !(currentDate() < *end);
}

bool UIPasteboardContents::isFleeting() const
{
    return options_.UIPasteboardOptionExpirationDate || options_.UIPasteboardOptionLocalOnly;
}

std::vector<UIPasteboardItem> UIPasteboardContents::items() const
{
    return hasExpired() ? std::vector<UIPasteboardItem>() : items_;
}

std::vector<std::string> UIPasteboardContents::formats() const
{
    std::vector<std::string> formats;
    auto add = [&](std::string format) {
        if (std::ranges::find(formats, format) == formats.end())
            formats.push_back(std::move(format));
    };
    for (const auto& item : items()) {
        for (const auto& [type, value] : item) {
            auto format = mimeTypeOfPasteboardType(type);
            if (format == plainText)
                add(std::string(utf8PlainText));
            add(std::move(format));
        }
    }
    // First: there are desktops that keep a copy of whatever comes first, and of nothing else.
    if (!formats.empty() && isFleeting()) {
        add(std::string(pasteboardSecretType));
        std::ranges::rotate(formats, formats.end() - 1);
    }
    return formats;
}

std::vector<const UIPasteboardValue*> UIPasteboardContents::valuesFor(std::string_view format) const
{
    static const UIPasteboardValue secret{String("secret")};
    if (format == pasteboardSecretType && isFleeting())
        return {&secret};
    auto mimeType = mimeTypeOfPasteboardType(format);
    auto isJoined = mimeType == plainText || mimeType == urlList;
    std::vector<const UIPasteboardValue*> values;
    for (const auto& item : items_) {
        const auto* value = find(item, mimeType);
        if (value && (values.empty() || isJoined))
            values.push_back(value);
    }
    return values;
}

bool UIPasteboardContents::hasText() const
{
    return !hasExpired() && !valuesFor(plainText).empty();
}

std::optional<String> UIPasteboardContents::text() const
{
    if (!hasText())
        return std::nullopt;
    // One text, however large, is handed over and not copied.
    if (auto values = valuesFor(plainText);
        values.size() == 1 && !std::holds_alternative<std::shared_ptr<const NSData>>(*values.front())) {
        auto value = *values.front(); // a provider may put something else in its place
        return textOf(value);
    }
    auto bytes = this->bytes<std::string>(plainText);
    return bytes ? std::optional(String(repairedUTF8(*bytes))) : std::nullopt;
}

} // namespace platform
