// SPDX-License-Identifier: MIT
// Writes a subtitle file of about the size asked for, always the same one: make-subtitles BYTES OUT.srt
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// Lines of several scripts, mostly plain ones, as files on disks are.
const char* const lines[] = {
    "I never said she stole my money.",
    "You can't be serious.",
    "The quick brown fox jumps over the lazy dog,\nand the dog does not care.",
    "- Where were you last night?\n- At home, like every night.",
    "<i>Meanwhile, on the other side of town...</i>",
    "Let me get this straight: you want me to drive all the way back, now, in this rain?",
    "No.",
    "Übermäßig schöne Grüße.",
    "Съешь ещё этих мягких французских булок.",
    "素早い茶色の狐がのろまな犬を飛び越える。",
};

void appendTime(std::string& text, std::uint64_t milliseconds)
{
    char buffer[40];
    std::snprintf(
        buffer, sizeof buffer, "%02u:%02u:%02u,%03u", static_cast<unsigned>(milliseconds / 3600000 % 100),
        static_cast<unsigned>(milliseconds / 60000 % 60), static_cast<unsigned>(milliseconds / 1000 % 60),
        static_cast<unsigned>(milliseconds % 1000));
    text += buffer;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) {
        std::fprintf(stderr, "usage: make-subtitles BYTES OUT.srt\n");
        return 2;
    }
    auto wanted = std::strtoull(arguments[1], nullptr, 10);
    std::FILE* file = std::fopen(arguments[2], "wb");
    if (!file) {
        std::perror(arguments[2]);
        return 1;
    }
    std::string text;
    std::uint64_t written = 0, random = 42;
    for (std::uint64_t cue = 1; written < wanted; ++cue) {
        random = random * 6364136223846793005ULL + 1442695040888963407ULL;
        text += std::to_string(cue) + "\n";
        appendTime(text, cue * 2500);
        text += " --> ";
        appendTime(text, cue * 2500 + 2100);
        text += "\n";
        text += lines[(random >> 33) % std::size(lines)];
        text += "\n\n";
        if (text.size() > 1 << 20 || written + text.size() >= wanted) {
            written += std::fwrite(text.data(), 1, text.size(), file);
            text.clear();
        }
    }
    return std::fclose(file) == 0 ? 0 : 1;
}
