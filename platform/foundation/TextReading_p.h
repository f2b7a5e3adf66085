// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/AnonymousMemory_p.h"
#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/TextDecoding.h"
#include "platform/foundation/TextScan_p.h"

#include <cstddef>
#include <expected>

namespace platform {

template <class Value>
using FileOutcome = std::expected<Value, FileFault>;

FileFault unknownEncoding();

// Decodes `size` bytes at the beginning of `memory`, in the encoding that was detected. The UTF-8 of a file is
// scanned while it is read; `scanned` is then what that gave, and the bytes are not walked again.
FileOutcome<DecodedText> decodeDetected(AnonymousMemory memory, std::size_t size,
                                        const TextDetection& detection, const TextScanResult* scanned,
                                        const TextScanOptions& options);

// readText, from any source.
FileOutcome<DecodedText> readTextFrom(ByteSource& source, const TextScanOptions& options);

} // namespace platform
