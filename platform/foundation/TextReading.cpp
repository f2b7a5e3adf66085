// SPDX-License-Identifier: MIT
#include "platform/foundation/TextReading_p.h"

#include "platform/foundation/Locale.h"
#include "platform/foundation/URL.h"
#include "platform/foundation/UTF8.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <sys/xattr.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr int mostAttempts = 3;
constexpr int mostGrowths = 3; // in one attempt
// What is asked for at a time where a file goes on beyond its size.
constexpr std::size_t growth = 256 * 1024;

std::uint64_t physicalMemory()
{
    return static_cast<std::uint64_t>(::sysconf(_SC_PHYS_PAGES))
        * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

// Bytes that are brought in without being looked at.
constexpr TextDetection notUnicode{.encoding = TextEncoding::windows1252, .evidence = TextEvidence::guess};

// One go at a file, while it may change.
class ReadingAttempt {
public:
    ReadingAttempt(ByteSource& source, AnonymousMemory memory, std::size_t expected,
                   const TextReadingHints& hints, const TextScanOptions& options)
        : source_(source)
        , memory_(std::move(memory))
        , expected_(expected)
        , hints_(hints)
        , options_(options)
    {
    }

    FileOutcome<DecodedText> read();

private:
    FileOutcome<TextScanResult> readRest(const TextDetection& detection, std::size_t headSize);
    // What the beginning looks like; something to fill the memory by when it is not Unicode.
    FileOutcome<TextDetection> detect();
    // Whether there was more than expected.
    FileOutcome<bool> readGrowth();

    ByteSource& source_;
    AnonymousMemory memory_;
    const std::size_t expected_;
    const TextReadingHints& hints_;
    const TextScanOptions& options_;
    std::size_t size_ = 0; // what there is of the file, mark included
};

FileOutcome<DecodedText> ReadingAttempt::read()
{
    auto headSize = readFully(source_, {memory_.data(), std::min(expected_, textDetectionSample)}, 0);
    if (headSize < 0)
        return std::unexpected(faultOf(static_cast<int>(-headSize)));
    size_ = static_cast<std::size_t>(headSize);
    auto detected = detect();
    if (!detected)
        return std::unexpected(detected.error());
    auto scanned = readRest(*detected, size_);
    if (scanned && !scanned->isWellFormed && detected->evidence == TextEvidence::wellFormed) {
        // Pieces may have been left out. Now all of them are wanted, whatever they are.
        detected = notUnicode;
        scanned = readRest(*detected, size_);
    }
    if (!scanned)
        return std::unexpected(scanned.error());
    if (scanned->isWellFormed)
        size_ = detected->markSize + scanned->size;
    auto grown = scanned->isWellFormed && size_ >= expected_ ? readGrowth() : false;
    if (!grown)
        return std::unexpected(grown.error());
    if (*grown)
        detected = detect();
    if (!detected)
        return std::unexpected(detected.error());
    if (detected->evidence == TextEvidence::guess)
        return decodeOtherText(std::move(memory_), size_, hints_, options_);
    if (*grown && detected->evidence == TextEvidence::wellFormed
        && !isWellFormedUTF8({memory_.data(), size_}))
        return decodeOtherText(std::move(memory_), size_, hints_, options_);
    return decodeDetected(std::move(memory_), size_, *detected, *grown ? nullptr : &*scanned, options_);
}

FileOutcome<TextDetection> ReadingAttempt::detect()
{
    std::string_view head(memory_.data(), size_);
    auto detection = detectTextEncoding(head);
    if (!detection && !hints_.demanded && !hints_.chosen && isBinary(head.substr(0, textDetectionSample)))
        return std::unexpected(unknownEncoding());
    if (!detection || hints_.demanded
        || (detection->evidence == TextEvidence::wellFormed && speaksAgainstUTF8(head, hints_)))
        return notUnicode;
    return *detection;
}

FileOutcome<TextScanResult> ReadingAttempt::readRest(const TextDetection& detection, std::size_t headSize)
{
    auto shift = detection.markSize;
    auto fill = [&](std::size_t begin, std::size_t end) -> ssize_t {
        auto at = std::clamp(headSize, begin + shift, end + shift);
        auto count = readFully(source_, {memory_.data() + at, end + shift - at}, at);
        return count < 0 ? count : static_cast<ssize_t>(at - shift - begin) + count;
    };
    auto kind =
        detection.encoding == TextEncoding::utf8 ? TextScanKind::validateAndSurvey : TextScanKind::fill;
    auto result = scanText(memory_.data() + shift, std::max(expected_, shift) - shift, kind, fill, options_);
    if (result.errorNumber != 0)
        return std::unexpected(faultOf(result.errorNumber));
    return result;
}

// The size that the system tells is the goal, so that a file that is written all the time comes to an end.
// When it tells no more than there is already, one read more shows whether that is the truth: files of the
// kernel have contents beyond their size.
FileOutcome<bool> ReadingAttempt::readGrowth()
{
    auto before = size_;
    for (int rounds = 0; rounds < mostGrowths;) {
        auto status = source_.status();
        if (!status)
            return std::unexpected(faultOf(status.error()));
        if (std::max<std::uint64_t>(status->size, size_) > physicalMemory())
            return std::unexpected(faultOf(EFBIG));
        bool hasGrown = status->size > size_;
        rounds += hasGrown;
        auto goal = hasGrown ? static_cast<std::size_t>(status->size) : size_ + 1;
        if (goal > memory_.capacity() && !memory_.grow(std::max(goal, size_ + size_ / 4 + growth)))
            return std::unexpected(faultOf(ENOMEM));
        if (!hasGrown)
            goal = std::min(memory_.capacity(), size_ + growth);
        std::span<char> room(memory_.data() + size_, goal - size_);
        auto count = hasGrown ? readFully(source_, room, size_) : readSome(source_, room, size_);
        if (count < 0)
            return std::unexpected(faultOf(static_cast<int>(-count)));
        if (count == 0)
            break;
        size_ += static_cast<std::size_t>(count);
    }
    return size_ != before;
}

// Whether the file's beginning is, at this later time, what was read: then no two states of it are mixed. One
// more pass over the file, for files that change under three attempts. False for a text that was transcoded.
bool stillBeginsWith(ByteSource& source, const DecodedText& decoded)
{
    if (decoded.encoding != TextEncoding::utf8)
        return false;
    std::uint64_t offset = decoded.hadMark() ? 3 : 0;
    std::string buffer(growth, '\0');
    for (auto rest = decoded.text.utf8(); !rest.empty();) {
        auto part = rest.substr(0, buffer.size());
        auto count = readFully(source, std::span(buffer).first(part.size()), offset);
        if (count != static_cast<ssize_t>(part.size()) || !buffer.starts_with(part))
            return false;
        offset += part.size();
        rest.remove_prefix(part.size());
    }
    return true;
}

} // namespace

FileOutcome<DecodedText> readTextFrom(ByteSource& source, const TextReadingHints& hints,
                                      const TextScanOptions& options)
{
    for (int attempt = 1;; ++attempt) {
        auto before = source.status();
        if (!before)
            return std::unexpected(faultOf(before.error()));
        if (before->size > physicalMemory())
            return std::unexpected(faultOf(EFBIG));
        auto expected = static_cast<std::size_t>(before->size);
        auto memory = AnonymousMemory::allocate(expected + 1); // room to see that it ends there
        if (!memory)
            return std::unexpected(faultOf(ENOMEM));

        ReadingAttempt reading(source, std::move(*memory), expected, hints, options);
        auto text = reading.read();
        auto after = source.status();
        if (!after)
            return std::unexpected(faultOf(after.error()));
        if (*after == *before)
            return text;
        if (attempt < mostAttempts)
            continue;
        // A log that is being written never rests, but what was read of it stays.
        if (text && stillBeginsWith(source, *text))
            return text;
        return std::unexpected(
            FileFault{NSCocoaError::fileReadUnknown, "it changed while it was being read"});
    }
}

namespace {

constexpr const char* charsetAttribute = "user.charset";

std::optional<TextEncoding> chosenFor(const std::string& path)
{
    char charset[64];
    auto size = ::getxattr(path.c_str(), charsetAttribute, charset, sizeof charset);
    return size > 0 ? textEncodingNamed({charset, static_cast<std::size_t>(size)}) : std::nullopt;
}

LegacyHints languagesFor(const URL& url)
{
    LegacyHints hints;
    if (auto language = languageOfFileName(url.lastPathComponent()); !language.empty())
        hints.push_back({std::move(language), 0.2});
    for (auto& language : Locale::preferredLanguages())
        hints.push_back({language, 0.04});
    return hints;
}

Result<DecodedText> readText(const URL& url, const TextReadingHints& hints, const TextScanOptions& options)
{
    auto file = TRY(RegularFile::open(url));
    auto text = readTextFrom(file, hints, options);
    if (!text)
        return std::unexpected(fileError(text.error().code, url, text.error().clause));
    return std::move(*text);
}

} // namespace

TextReadingHints readingHintsFor(const URL& url)
{
    return {
        .demanded = {}, .chosen = chosenFor(url.path()), .languages = [&url] { return languagesFor(url); }};
}

Result<DecodedText> readText(const URL& url, const TextScanOptions& options)
{
    return readText(url, readingHintsFor(url), options);
}

Result<DecodedText> readText(const URL& url, TextEncoding encoding, const TextScanOptions& options)
{
    return readText(url, {.demanded = encoding, .chosen = {}, .languages = {}}, options);
}

Result<void> keepTextEncoding(const URL& url, std::optional<TextEncoding> encoding)
{
    auto path = url.path();
    int status = 0;
    if (encoding) {
        auto name = charsetName(*encoding);
        status = ::setxattr(path.c_str(), charsetAttribute, name.data(), name.size(), 0);
    } else {
        status = ::removexattr(path.c_str(), charsetAttribute);
        if (status != 0 && errno == ENODATA)
            return {};
    }
    if (status != 0)
        return failure(NSError(NSPOSIXErrorDomain, errno));
    return {};
}

} // namespace platform
