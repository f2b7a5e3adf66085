// SPDX-License-Identifier: MIT
#include "platform/graphics/NSAttributedStringDocuments.h"

#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/TextDecoding.h"
#include "platform/graphics/html/HTMLReader_p.h"
#include "platform/graphics/html/HTMLSource_p.h"
#include "platform/graphics/rtf/RTFReader_p.h"

#include <expected>
#include <utility>

namespace platform {

namespace {

using Outcome = std::expected<NSAttributedString, FileFault>;

FileFault corrupt(std::string reason)
{
    return {NSCocoaError::fileReadCorruptFile, std::move(reason)};
}

Outcome readRTFDocument(std::string_view bytes)
{
    auto text = RTFReader::read(bytes);
    if (!text)
        return std::unexpected(corrupt(std::move(text).error()));
    return std::move(*text);
}

Outcome readHTMLDocument(std::string_view bytes)
{
    auto html = guardedHTML(decodeHTML(bytes));
    if (!html)
        return std::unexpected(corrupt(std::move(html).error()));
    return readHTML(*html);
}

// Of HTML and RTF.
Outcome readDocument(std::string_view bytes, NSDocumentType type)
{
    auto limit = type == NSDocumentType::rtf ? largestRTFDocument : largestHTMLDocument;
    if (bytes.size() > limit)
        return std::unexpected(FileFault{NSCocoaError::fileReadTooLarge,
                                         "it is larger than " + std::to_string(limit >> 20) + " MB"});
    return type == NSDocumentType::rtf ? readRTFDocument(bytes) : readHTMLDocument(bytes);
}

Error namelessError(const FileFault& fault)
{
    return NSError(fault.code,
                   {{std::string(NSLocalizedDescriptionKey),
                     "The document couldn’t be read because " + fault.clause + "."},
                    {std::string(NSLocalizedFailureReasonErrorKey), fault.clause}});
}

} // namespace

Result<NSAttributedString> readAttributedString(const URL& url, NSDocumentType type)
{
    if (type == NSDocumentType::plain)
        return NSAttributedString(TRY(String::contentsOf(url)));
    // One byte above the limit is enough to tell that it is passed.
    auto limit = type == NSDocumentType::rtf ? largestRTFDocument : largestHTMLDocument;
    auto text = readDocument(TRY(readFileHead(url, limit + 1)), type);
    if (!text)
        return std::unexpected(fileError(text.error().code, url, text.error().clause));
    return std::move(*text);
}

Result<NSAttributedString> readAttributedString(std::string_view bytes, NSDocumentType type)
{
    if (type == NSDocumentType::plain)
        return NSAttributedString(TRY(decodeText(bytes)).text);
    auto text = readDocument(bytes, type);
    if (!text)
        return std::unexpected(namelessError(text.error()));
    return std::move(*text);
}

} // namespace platform
