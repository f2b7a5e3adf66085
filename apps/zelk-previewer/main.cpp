// SPDX-License-Identifier: MIT
#include "platform/previewer/PreviewerService.h"

#include <cstdio>
#include <filesystem>
#include <string_view>

// The program beside this one, wherever both are installed.
int main(int argumentCount, char** arguments)
{
    if (argumentCount > 1) {
        bool asksHelp = std::string_view(arguments[1]) == "--help";
        std::fputs("Usage: zelk-previewer\n"
                   "Shows what file managers ask for on the session bus (org.gnome.NautilusPreviewer,\n"
                   "org.nemo.Preview). The bus starts it; it needs no arguments.\n",
                   asksHelp ? stdout : stderr);
        return asksHelp ? 0 : 2;
    }
    std::error_code fault;
    auto own = std::filesystem::read_symlink("/proc/self/exe", fault);
    if (fault) {
        std::fputs("zelk-previewer: its own place is not known\n", stderr);
        return 1;
    }
    return platform::runPreviewerService(own.string(), (own.parent_path() / "subtitle-preview").string());
}
