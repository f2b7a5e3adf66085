// SPDX-License-Identifier: MIT
#include "platform/foundation/TextReading_p.h"

#include "platform/foundation/URL.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <unistd.h>

namespace platform {

namespace {

constexpr int mostAttempts = 3;
// What is asked for at a time where a file goes on beyond its size.
constexpr std::size_t growth = 256 * 1024;

std::uint64_t physicalMemory()
{
    return static_cast<std::uint64_t>(::sysconf(_SC_PHYS_PAGES))
        * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

// One go at a file, while it may change.
class ReadingAttempt {
public:
    ReadingAttempt(ByteSource& source, AnonymousMemory memory, std::size_t expected,
                   const TextScanOptions& options)
        : source_(source)
        , memory_(std::move(memory))
        , expected_(expected)
        , options_(options)
    {
    }

    TextOutcome<DecodedText> read();
    // What there was of the file, mark included; told once read() has returned a text.
    std::size_t size() const { return size_; }

private:
    TextOutcome<TextScanResult> readRest(const TextDetection& detection, std::size_t headSize);
    // Whether there was more than expected.
    TextOutcome<bool> readGrowth();

    ByteSource& source_;
    AnonymousMemory memory_;
    const std::size_t expected_;
    const TextScanOptions& options_;
    std::size_t size_ = 0;
};

TextOutcome<DecodedText> ReadingAttempt::read()
{
    auto headSize = readFully(source_, {memory_.data(), std::min(expected_, textDetectionSample)}, 0);
    if (headSize < 0)
        return std::unexpected(faultOf(static_cast<int>(-headSize)));
    size_ = static_cast<std::size_t>(headSize);
    auto detection = detectTextEncoding({memory_.data(), size_});
    if (!detection)
        return std::unexpected(unknownEncoding());

    TextOutcome<TextScanResult> scanned = readRest(*detection, size_);
    if (!scanned)
        return std::unexpected(scanned.error());
    if (scanned->isWellFormed)
        size_ = detection->markSize + scanned->size;
    auto grown = scanned->isWellFormed && size_ >= expected_ ? readGrowth() : false;
    if (!grown)
        return std::unexpected(grown.error());
    if (*grown) {
        detection = detectTextEncoding({memory_.data(), size_});
        if (!detection)
            return std::unexpected(unknownEncoding());
    }
    return decodeDetected(std::move(memory_), size_, *detection, *grown ? nullptr : &*scanned, options_);
}

TextOutcome<TextScanResult> ReadingAttempt::readRest(const TextDetection& detection, std::size_t headSize)
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

TextOutcome<bool> ReadingAttempt::readGrowth()
{
    auto before = size_;
    while (true) {
        // A byte that is not there does not touch memory: most files end here.
        if (size_ == memory_.capacity()
            && !memory_.grow(memory_.capacity() + std::max(growth, memory_.capacity() / 4)))
            return std::unexpected(faultOf(ENOMEM));
        auto room = std::min(memory_.capacity() - size_, growth);
        auto count = readFully(source_, {memory_.data() + size_, room}, size_);
        if (count < 0)
            return std::unexpected(faultOf(static_cast<int>(-count)));
        size_ += static_cast<std::size_t>(count);
        if (static_cast<std::size_t>(count) < room)
            return size_ != before;
        if (size_ > physicalMemory())
            return std::unexpected(faultOf(EFBIG));
    }
}

} // namespace

TextOutcome<DecodedText> readTextFrom(ByteSource& source, const TextScanOptions& options)
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

        ReadingAttempt reading(source, std::move(*memory), expected, options);
        auto text = reading.read();
        auto after = source.status();
        if (!after)
            return std::unexpected(faultOf(after.error()));
        if (*after == *before)
            return text;
        if (attempt < mostAttempts)
            continue;
        // A log that is being written never rests; what it had at the beginning of the attempt is in the text.
        if (text && before->size <= reading.size() && reading.size() <= after->size)
            return text;
        return std::unexpected(
            FileFault{NSCocoaError::fileReadUnknown, "it changed while it was being read"});
    }
}

Result<DecodedText> readText(const URL& url, const TextScanOptions& options)
{
    auto file = TRY(RegularFile::open(url));
    auto text = readTextFrom(file, options);
    if (!text)
        return std::unexpected(fileError(text.error().code, url, text.error().clause));
    return std::move(*text);
}

} // namespace platform
