// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace platform {

// A fault of a string table, where it begins.
struct StringTableDiagnostic {
    std::size_t line = 1;   // from 1
    std::size_t column = 1; // from 1, in characters (Unicode scalars)
    std::string message;    // a clause in lower case, without a full stop

    bool operator==(const StringTableDiagnostic&) const = default;
};

// Limits on what a table from a stranger may hold.
struct StringTableLimits {
    std::size_t bytes = 16 * 1024 * 1024;
    std::size_t entries = 200'000;
    std::size_t diagnostics = 100; // further ones are counted in the last
};

struct StringTableEntry {
    std::string key;
    std::string value;
    std::size_t line = 1; // where the key stands; 1 in the property list form
};

struct ParsedStringTable;

// The texts of one language, by key: what a `.strings` file holds. Immutable once parsed: any thread.
// docs/formats/string-tables.md describes the format.
class StringTable {
public:
    // Reads a table in either form, in UTF-8, UTF-16 or UTF-32. Never fails: entries that are whole are kept,
    // everything else is told in the diagnostics, first things first. Of a key given twice the last value counts.
    static ParsedStringTable parse(std::string_view bytes, const StringTableLimits& limits = {});
    // The same from a file. Errors: the file-read codes.
    [[nodiscard]] static Result<ParsedStringTable> read(const URL& file,
                                                        const StringTableLimits& limits = {});

    // Null when there is no such key. Valid while the table lives.
    const std::string* find(std::string_view key) const;
    // In the order of the file, each key once. Valid while the table lives, so not of one that is about to go.
    std::span<const StringTableEntry> entries() const& { return entries_; }
    std::span<const StringTableEntry> entries() const&& = delete;

private:
    friend class StringTableParser;

    struct Hash {
        using is_transparent = void; // looked up without making a std::string
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };

    // Gives the line of an earlier entry with this key, which is replaced; 0 when there was none.
    std::size_t add(StringTableEntry entry);

    std::vector<StringTableEntry> entries_;
    std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>> index_; // key to place in entries_
};

struct ParsedStringTable {
    StringTable table;
    std::vector<StringTableDiagnostic> diagnostics; // empty when the table is faultless
};

} // namespace platform
