// SPDX-License-Identifier: MIT
// Paints the beginning of a subtitle file into a picture, as file managers ask for it (see the .thumbnailer entry).
#include "apps/subtitle-thumbnailer/FirstCues.h"
#include "apps/subtitle-thumbnailer/PictureFile.h"
#include "apps/subtitle-thumbnailer/SandboxFonts.h"
#include "apps/subtitle-thumbnailer/drawThumbnail.h"
#include "platform/foundation/TextHead.h"
#include "platform/foundation/URL.h"
#include "platform/graphics/FontFiles.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/quicklook/Confinement.h"
#include "platform/quicklook/messageLine.h"

#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace platform;

constexpr int painted = 0, notPainted = 1, wrongUsage = 2;
constexpr int largestSize = 4096;
// Enough for any page, and for a guess at the encoding.
constexpr std::size_t headSize = 32 * 1024;
constexpr std::chrono::seconds timeLimit(5);

constexpr const char* usage =
    "Usage: subtitle-thumbnailer [-s PIXELS] INPUT OUTPUT\n"
    "Paints the beginning of the subtitle file INPUT into the PNG picture OUTPUT.\n"
    "\n"
    "INPUT is a path or a file: URL.\n"
    "\n"
    "  -s, --size PIXELS  the picture's sides, from 1 to 4096 (default 256)\n"
    "  --help, --version\n"
    "\n"
    "Reads the first 32 KiB of a file of any size, and ends after five seconds at the latest.\n"
    "Exit status: 0 painted; 1 no subtitles, or not readable or writable, and then\n"
    "there is no new OUTPUT; 2 wrong usage.\n";

int complain(const std::string& text, int status)
{
    printMessageLine("subtitle-thumbnailer: " + text);
    return status;
}

struct Arguments {
    int size = 256;
    std::vector<std::string> files;
    bool wantsHelp = false, wantsVersion = false;
    std::string fault;
};

Arguments parse(int count, char** words)
{
    Arguments result;
    bool onlyFiles = false;
    for (int i = 1; i < count && result.fault.empty(); ++i) {
        std::string word = words[i];
        if (onlyFiles || !word.starts_with('-')) {
            result.files.push_back(word);
        } else if (word == "--") {
            onlyFiles = true;
        } else if (word == "--help" || word == "-h") {
            result.wantsHelp = true;
        } else if (word == "--version") {
            result.wantsVersion = true;
        } else if (word == "-s" || word == "--size" || word.starts_with("--size=")) {
            auto value = word.starts_with("--size=") ? word.substr(7) : i + 1 < count ? words[++i] : "";
            auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), result.size);
            if (error != std::errc() || end != value.data() + value.size() || result.size < 1
                || result.size > largestSize)
                result.fault = "--size takes a number of pixels from 1 to 4096, not " + value;
        } else {
            result.fault = "unknown option " + word;
        }
    }
    if (result.fault.empty() && !result.wantsHelp && !result.wantsVersion && result.files.size() != 2)
        result.fault = "it takes an INPUT and an OUTPUT";
    return result;
}

std::string folderOf(const std::string& file)
{
    auto folder = std::filesystem::path(file).parent_path().string();
    return folder.empty() ? "." : folder;
}

// The toolkit would look for a bus; and where a session has no folder for run-time files, make one among temporary files,
// which can be where the output goes.
void leaveTheSessionAlone()
{
    ::setenv("TMPDIR", "/dev/null", 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    ::setenv("QT_LOGGING_RULES", "*=false", 1); // it says so, too
    ::unsetenv("QT_QPA_PLATFORM");
    ::unsetenv("QT_QPA_PLATFORMTHEME");
}

int paint(const URL& input, const std::string& output, int size)
{
    if (auto reason = thumbnail::whyNotWritable(output, input.path()); !reason.empty())
        return complain(output + ": " + reason, notPainted);
    thumbnail::limitTime(timeLimit);
    // What strangers wrote is read, guessed at and shaped from here on.
    auto landlockVersion = confineFiles(folderOf(output));
    auto head = readTextHead(input, headSize);
    if (!head)
        return complain(head.error().bridged().localizedDescription(), notPainted);
    auto cues = thumbnail::firstCues(head->decoded.text.utf8(), thumbnail::mostCues);
    if (cues.empty())
        return complain(input.lastPathComponent() + ": This has no subtitles", notPainted);

    std::string shown;
    for (auto& cue : cues)
        shown += cue.text;
    auto fonts = thumbnail::sandboxFontsFor(shown);
    leaveTheSessionAlone();
    startGraphics(DisplayMode::offscreen);
    for (auto& font : fonts)
        addFontFile(font);
    // The call filter also forbids writing where the kernel has no rules for files, but there is a picture to be
    // written yet.
    confineCalls(std::max(landlockVersion, 1));
    auto picture = thumbnail::drawThumbnail(cues, size);
    if (!picture)
        return complain(picture.error().bridged().localizedDescription(), notPainted);
    if (auto reason = thumbnail::writePicture(output, picture->pngData()); !reason.empty())
        return complain(output + ": " + reason, notPainted);
    return painted;
}

} // namespace

int main(int argumentCount, char** words)
{
    auto arguments = parse(argumentCount, words);
    if (!arguments.fault.empty())
        return complain(arguments.fault + "; try --help", wrongUsage);
    if (arguments.wantsHelp || arguments.wantsVersion) {
        std::fputs(arguments.wantsHelp ? usage : "subtitle-thumbnailer " ZELK_VERSION "\n", stdout);
        return std::fflush(stdout) == 0 ? painted : complain("standard output cannot be written", notPainted);
    }
    auto& file = arguments.files[0];
    auto input = file.starts_with("file:") ? URL::parse(file) : URL::fileURL(file);
    if (!input)
        return complain(file + ": This is not the URL of a file on this machine", notPainted);
    int status = paint(*input, arguments.files[1], arguments.size);
    // Nothing is left to be tidied up, and tidying takes time.
    std::fflush(nullptr);
    ::_exit(status);
}
