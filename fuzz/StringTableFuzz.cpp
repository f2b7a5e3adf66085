// SPDX-License-Identifier: MIT
// Any bytes are a string table within its limits, with every fault in its place; and its texts are formats.
#include "platform/foundation/Precondition.h"
#include "platform/foundation/StringFormat.h"
#include "platform/foundation/StringTable.h"
#include "platform/foundation/UTF8.h"

#include <cstdint>
#include <string_view>

using namespace platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr StringTableLimits limits{.bytes = 1 << 16, .entries = 50, .diagnostics = 20};
    auto [table, diagnostics] = StringTable::parse({reinterpret_cast<const char*>(data), size}, limits);
    precondition(table.entries().size() <= limits.entries, "a limit was passed");
    precondition(diagnostics.size() <= limits.diagnostics + 1, "too many faults are told");
    std::size_t lines = 1 + size; // at most
    for (auto& fault : diagnostics)
        precondition(!fault.message.empty() && fault.line >= 1 && fault.line <= lines && fault.column >= 1
                         && isWellFormedUTF8(fault.message),
                     "a fault is nowhere");
    const FormatArgument arguments[] = {-1, "text", 2.5, nullptr, U'é'};
    for (auto& [key, value, line] : table.entries()) {
        precondition(table.find(key) == &value, "an entry is not found");
        precondition(isWellFormedUTF8(key) && isWellFormedUTF8(value), "a text is not text");
        precondition(isWellFormedUTF8(stringWithFormat(value, arguments)), "a format writes no text");
    }
    return 0;
}
