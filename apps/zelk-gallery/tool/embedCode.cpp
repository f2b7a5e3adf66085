// SPDX-License-Identifier: MIT
// embed-code OUT.cpp PAGE.cpp...: writes a source that has, as texts, what stands in the pages between the lines
//     // [Title]
//     // [/]
// so that what a page shows is what runs. A page's name is its file's, without the ending.
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Region {
    std::string title;
    std::vector<std::string> lines;
};

std::string_view trimmed(std::string_view line)
{
    auto start = line.find_first_not_of(' ');
    return start == std::string_view::npos ? std::string_view() : line.substr(start);
}

// The title of a line that is a marker, "/" for the closing one; empty for other lines.
std::string_view marker(std::string_view line)
{
    line = trimmed(line);
    return line.starts_with("// [") && line.ends_with("]") ? line.substr(4, line.size() - 5)
                                                           : std::string_view();
}

void removeIndentation(std::vector<std::string>& lines)
{
    auto least = std::string::npos;
    for (const auto& line : lines) {
        if (!trimmed(line).empty())
            least = std::min(least, line.find_first_not_of(' '));
    }
    for (auto& line : lines)
        line.erase(0, std::min(least, line.size()));
    while (!lines.empty() && lines.back().empty())
        lines.pop_back();
}

// Gives a fault in words; empty when there is none.
std::string read(const std::filesystem::path& page, std::vector<Region>& regions)
{
    std::ifstream file(page);
    std::set<std::string> titles;
    std::string line;
    bool isInside = false;
    for (int number = 1; std::getline(file, line); ++number) {
        auto found = marker(line);
        auto here = page.string() + ":" + std::to_string(number) + ": ";
        if (found.empty()) {
            if (isInside)
                regions.back().lines.push_back(line);
        } else if (found == "/") {
            if (!isInside)
                return here + "closes what was not opened";
            isInside = false;
            removeIndentation(regions.back().lines);
        } else {
            if (isInside)
                return here + "opens inside of \"" + regions.back().title + "\"";
            if (!titles.emplace(found).second)
                return here + "\"" + std::string(found) + "\" is there twice";
            isInside = true;
            regions.push_back({std::string(found), {}});
        }
    }
    if (!file.eof())
        return page.string() + ": cannot be read";
    return isInside ? page.string() + ": \"" + regions.back().title + "\" is not closed" : std::string();
}

std::string literalOf(std::string_view text)
{
    std::string literal = "\"";
    for (char each : text) {
        if (each == '"' || each == '\\')
            literal += '\\';
        literal += each;
    }
    return literal += '"';
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 2) {
        std::cerr << "usage: embed-code OUT.cpp PAGE.cpp...\n";
        return 2;
    }
    std::ostringstream source;
    source << "// SPDX-License-Identifier: MIT\n// Made of the pages by embed-code.\n"
              "#include \"apps/zelk-gallery/frame/codeOf.h\"\n\nnamespace gallery {\n\n"
              "std::span<const CodeRegion> codeRegions()\n{\n    static constexpr CodeRegion regions[] = {\n";
    for (int index = 2; index < argumentCount; ++index) {
        std::filesystem::path page(arguments[index]);
        std::vector<Region> regions;
        if (auto fault = read(page, regions); !fault.empty()) {
            std::cerr << "embed-code: " << fault << "\n";
            return 1;
        }
        for (const auto& region : regions) {
            source << "        {" << literalOf(page.stem().string()) << ", " << literalOf(region.title)
                   << ",\n         \"\"\n";
            for (const auto& line : region.lines)
                source << "         " << literalOf(line) << " \"\\n\"\n";
            source << "        },\n";
        }
    }
    source << "        {\"\", \"\", \"\"},\n    };\n    return regions;\n}\n\n} // namespace gallery\n";
    std::ofstream out(arguments[1], std::ios::trunc);
    out << source.str();
    if (!out.flush()) {
        std::cerr << "embed-code: " << arguments[1] << ": cannot be written\n";
        return 1;
    }
    return 0;
}
