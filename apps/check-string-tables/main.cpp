// SPDX-License-Identifier: MIT
// Checks the string tables of a folder of resources against those of its reference language, for a build to stop at:
//   check-string-tables RESOURCES en
// Prints FILE:LINE:COLUMN: MESSAGE a fault. Exits with 1 when there are any, with 2 when it was called wrongly.
#include "platform/foundation/StringTable.h"
#include "platform/foundation/StringTableComparison.h"
#include "platform/foundation/URL.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

class Checker {
public:
    std::size_t faults() const { return faults_; }

    // Nothing when the file cannot be read or is no table at all.
    std::optional<platform::StringTable> read(const fs::path& file)
    {
        auto parsed = platform::StringTable::read(platform::URL::fileURL(file.native()));
        if (!parsed) {
            report(file, {{.message = parsed.error().localizedDescription()}});
            return std::nullopt;
        }
        report(file, parsed->diagnostics);
        if (parsed->table.entries().empty() && !parsed->diagnostics.empty())
            return std::nullopt;
        return std::move(parsed->table);
    }

    // What is in `directory` and has this extension, sorted, so that the report reads the same everywhere.
    std::vector<fs::path> children(const fs::path& directory, std::string_view extension)
    {
        std::vector<fs::path> found;
        std::error_code error;
        fs::directory_iterator entry(directory, error), end;
        for (; !error && entry != end; entry.increment(error)) {
            if (entry->path().extension() == extension)
                found.push_back(entry->path());
        }
        if (error)
            report(directory, {{.message = error.message()}});
        std::ranges::sort(found);
        return found;
    }

    void report(const fs::path& file, const std::vector<platform::StringTableDiagnostic>& diagnostics)
    {
        for (auto& [line, column, message] : diagnostics)
            std::fprintf(stderr, "%s:%zu:%zu: %s\n", file.c_str(), line, column, message.c_str());
        faults_ += diagnostics.size();
    }

private:
    std::size_t faults_ = 0;
};

void check(Checker& checker, const fs::path& resources, const fs::path& reference)
{
    auto tables = checker.children(reference, ".strings");
    std::map<fs::path, platform::StringTable> originals;
    for (auto& file : tables) {
        if (auto table = checker.read(file))
            originals.emplace(file.filename(), std::move(*table));
    }
    for (auto& language : checker.children(resources, ".lproj")) {
        if (language == reference)
            continue;
        for (auto& [name, original] : originals) {
            if (auto translation = checker.read(language / name))
                checker.report(language / name, platform::compareStringTables(*translation, original));
        }
        for (auto& file : checker.children(language, ".strings")) {
            if (std::ranges::find(tables, reference / file.filename()) == tables.end())
                checker.report(file, {{.message = "the reference language has no such table"}});
        }
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) {
        std::fprintf(stderr, "usage: check-string-tables RESOURCES REFERENCE-LANGUAGE\n");
        return 2;
    }
    fs::path resources = arguments[1];
    auto reference = resources / (std::string(arguments[2]) + ".lproj");
    std::error_code error;
    if (!fs::is_directory(reference, error)) {
        std::fprintf(stderr, "%s: not a directory\n", reference.c_str());
        return 2;
    }
    Checker checker;
    check(checker, resources, reference);
    return checker.faults() ? 1 : 0;
}
