// SPDX-License-Identifier: MIT
#include "platform/previewer/subtitleContent_p.h"

#include <algorithm>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool endsWithIgnoringCase(std::string_view text, std::string_view lowerCaseEnd)
{
    if (text.size() < lowerCaseEnd.size())
        return false;
    text.remove_prefix(text.size() - lowerCaseEnd.size());
    return std::ranges::equal(text, lowerCaseEnd, {}, [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
    });
}

// In encodings with two or four bytes a character the digits have zero bytes beside them.
bool hasTimeLine(std::string text)
{
    std::erase(text, '\0');
    constexpr std::string_view arrow = " --> ";
    for (auto at = text.find(arrow); at != std::string::npos; at = text.find(arrow, at + 1)) {
        auto behind = at + arrow.size();
        if (at > 0 && isDigit(text[at - 1]) && behind < text.size() && isDigit(text[behind]))
            return true;
    }
    return false;
}

} // namespace

bool isSubtitleFile(const std::string& path)
{
    if (endsWithIgnoringCase(path, ".srt"))
        return true;
    struct stat information{};
    if (::stat(path.c_str(), &information) != 0 || !S_ISREG(information.st_mode))
        return false;
    int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0)
        return false;
    std::string text(4096, '\0');
    auto count = ::read(file, text.data(), text.size());
    ::close(file);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return hasTimeLine(std::move(text));
}

} // namespace platform
