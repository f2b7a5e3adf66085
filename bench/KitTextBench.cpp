// SPDX-License-Identifier: MIT
// The kit's texts beside the desktop's usual translations (gettext) and a plain map, all with the same German texts.
#include "kit/foundation/CommonLocalizations.h"
#include "kit/foundation/ZelkKitBundle.h"
#include "kit/foundation/zelkKitLocalized.h"

#include "platform/foundation/Precondition.h"
#include "platform/foundation/PreferredLanguagesOverride.h"
#include "platform/foundation/StringTable.h"

#include <benchmark/benchmark.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <string>
#include <unordered_map>

#include <libintl.h>

namespace {

constexpr auto key = "URL_ERROR_NOT_CONNECTED_TO_INTERNET";

std::map<std::string, std::string> germanTexts()
{
    auto file = zelk::zelkKitBundle()->urlForResource("de.lproj/Zelk-Localizable", "strings");
    auto parsed = platform::StringTable::read(*file);
    std::map<std::string, std::string> texts;
    for (auto& entry : parsed->table.entries())
        texts[entry.key] = entry.value;
    return texts;
}

void word(std::string& bytes, std::size_t number)
{
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(number >> shift & 0xFF);
}

// gettext's binary form: two sorted lists of lengths and places, without the optional hash table.
std::string catalogue(std::map<std::string, std::string> texts)
{
    texts[""] = "Content-Type: text/plain; charset=UTF-8\n";
    std::string header, keys, values, data;
    std::size_t lists = 28, begin = lists + 16 * texts.size();
    for (auto& [name, text] : texts) {
        word(keys, name.size());
        word(keys, begin + data.size());
        data += name + '\0';
    }
    for (auto& [name, text] : texts) {
        word(values, text.size());
        word(values, begin + data.size());
        data += text + '\0';
    }
    for (auto number : {std::size_t{0x950412de}, std::size_t{0}, texts.size(), lists,
                        lists + 8 * texts.size(), std::size_t{0}, begin})
        word(header, number);
    return header + keys + values + data;
}

void kitText(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(zelk::zelkKitLocalized(key));
}

void commonTerm(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(&zelk::value(zelk::CommonLocalizations::done));
}

void peerMap(benchmark::State& state)
{
    static std::mutex mutex;
    auto texts = germanTexts();
    std::unordered_map<std::string, std::string> map(texts.begin(), texts.end());
    for (auto _ : state) {
        std::lock_guard lock(mutex);
        benchmark::DoNotOptimize(std::string(map.find(key)->second));
    }
}

void peerGettext(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(std::string(dgettext("zelk-bench", key)));
}

} // namespace

BENCHMARK(kitText)->ThreadRange(1, 2);
BENCHMARK(commonTerm);
BENCHMARK(peerMap);
BENCHMARK(peerGettext)->ThreadRange(1, 2);

int main(int argumentCount, char** arguments)
{
    platform::PreferredLanguagesOverride german({"de"});
    std::string directory = std::filesystem::temp_directory_path() / "zelk-bench-XXXXXX";
    platform::precondition(::mkdtemp(directory.data()), "no temporary directory");
    std::filesystem::create_directories(directory + "/de/LC_MESSAGES");
    std::ofstream(directory + "/de/LC_MESSAGES/zelk-bench.mo", std::ios::binary) << catalogue(germanTexts());
    ::setenv("LANGUAGE", "de", 1);
    std::setlocale(LC_ALL, "C.UTF-8");
    ::bindtextdomain("zelk-bench", directory.c_str());
    platform::precondition(dgettext("zelk-bench", key) == zelk::zelkKitLocalized(key),
                           "the peer does not know the text");
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
    std::error_code ignored; // a directory that is left behind fails nobody
    std::filesystem::remove_all(directory, ignored);
}
