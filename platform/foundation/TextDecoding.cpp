// SPDX-License-Identifier: MIT
#include "platform/foundation/TextDecoding.h"

#include "platform/foundation/TextReading_p.h"
#include "platform/foundation/UnicodeTranscoding_p.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace platform {

namespace {

FileFault illFormed(const TextDetection& detection)
{
    // Nothing but the attempt spoke for UTF-8: the encoding is simply another one.
    if (detection.evidence == TextEvidence::wellFormed)
        return unknownEncoding();
    return {NSCocoaError::fileReadInapplicableStringEncoding,
            "its contents are not valid in the text encoding "
                + std::string(localizedName(detection.encoding)) + " that they begin in"};
}

FileOutcome<DecodedText> decodeTranscoding(AnonymousMemory memory, std::string_view bytes,
                                           const TextDetection& detection, const TextScanOptions& options)
{
    auto output = AnonymousMemory::allocate(transcodedCapacity(detection.encoding, bytes.size()));
    if (!output)
        return std::unexpected(faultOf(ENOMEM));
    auto size = transcodeToUTF8(detection.encoding, bytes, output->data());
    if (!size)
        return std::unexpected(illFormed(detection));
    auto released = std::move(memory); // two texts in memory are enough
    output->trim(*size);
    auto survey = surveyText({output->data(), *size}, options);
    return decoded(std::move(*output), 0, std::move(survey), detection);
}

} // namespace

DecodedText decoded(AnonymousMemory memory, std::size_t begin, TextSurvey survey,
                    const TextDetection& detection)
{
    std::string_view text(memory.data() + begin, survey.size);
    auto owner = std::move(memory).share();
    auto shared = std::make_shared<const TextSurvey>(std::move(survey));
    return {.text = String::adopting(std::move(owner), text, std::move(shared)),
            .encoding = detection.encoding,
            .evidence = detection.evidence};
}

FileFault unknownEncoding()
{
    return {NSCocoaError::fileReadUnknownStringEncoding,
            "the text encoding of its contents can’t be determined"};
}

FileOutcome<DecodedText> decodeDetected(AnonymousMemory memory, std::size_t size,
                                        const TextDetection& detection, const TextScanResult* scanned,
                                        const TextScanOptions& options)
{
    std::string_view bytes(memory.data() + detection.markSize, size - detection.markSize);
    if (detection.encoding != TextEncoding::utf8)
        return decodeTranscoding(std::move(memory), bytes, detection, options);
    auto result = scanned
        ? *scanned
        : scanText(bytes.data(), bytes.size(), TextScanKind::validateAndSurvey, nullptr, options);
    if (!result.isWellFormed)
        return std::unexpected(illFormed(detection));
    return decoded(std::move(memory), detection.markSize, std::move(result.survey), detection);
}

Result<DecodedText> decodeText(std::string_view bytes, const TextScanOptions& options)
{
    auto outcome = [&]() -> FileOutcome<DecodedText> {
        auto detection = detectTextEncoding(bytes);
        if (!detection)
            return std::unexpected(unknownEncoding());
        auto memory = AnonymousMemory::allocate(bytes.size());
        if (!memory)
            return std::unexpected(faultOf(ENOMEM));
        if (!bytes.empty())
            std::memcpy(memory->data(), bytes.data(), bytes.size());
        return decodeDetected(std::move(*memory), bytes.size(), *detection, nullptr, options);
    }();
    if (outcome)
        return std::move(*outcome);
    auto& [code, clause] = outcome.error();
    return failure(
        code,
        {{std::string(NSLocalizedDescriptionKey), "The text couldn’t be read because " + clause + "."},
         {std::string(NSLocalizedFailureReasonErrorKey), clause}});
}

} // namespace platform
