// SPDX-License-Identifier: MIT
#include "platform/quicklook/printText.h"

#include "platform/foundation/String.h"
#include "platform/foundation/TextHead.h"
#include "platform/quicklook/PreviewHost.h"
#include "platform/quicklook/looksLikeTimedText.h"
#include "platform/quicklook/messageLine.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <unistd.h>

namespace platform {

namespace {

constexpr int printed = 0, notPrinted = 1;

// The first screen is read from this; later ones from sixteen times as much, and then from all.
constexpr std::size_t firstHead = textDetectionSample, largestHead = firstHead * 16 * 16;

int printBytes(std::string_view program, std::string_view rest)
{
    while (!rest.empty()) {
        auto written = ::write(STDOUT_FILENO, rest.data(), rest.size());
        if (written > 0)
            rest.remove_prefix(static_cast<std::size_t>(written));
        else if (written < 0 && errno == EPIPE)
            return printed;
        else if (written == 0 || errno != EINTR) {
            auto reason = written == 0 ? "nothing can be written" : std::strerror(errno);
            printMessageLine(std::string(program) + ": standard output: " + reason);
            return notPrinted;
        }
    }
    return printed;
}

int reportFailure(std::string_view program, const URL& url, const Error& error)
{
    printMessageLine(previewFailureLine(program, url.lastPathComponent(), error.bridged()));
    return notPrinted;
}

int printRows(std::string_view program, const URL& url, const TerminalPane& pane)
{
    auto limit = firstHead;
    auto head = readTextHead(url, limit);
    if (!head)
        return reportFailure(program, url, head.error());
    if (!looksLikeTimedText(head->decoded.text.utf8())) {
        printMessageLine(std::string(program) + ": " + url.lastPathComponent() + ": This has no subtitles");
        return notPrinted;
    }
    for (;;) {
        auto rows = terminalRows(head->decoded.text.utf8(), pane);
        if (rows.isFilled || head->isWhole)
            return printBytes(program, rows.text);
        limit = pane.height && limit < largestHead ? limit * 16 : 0;
        if (limit > 0) {
            head = readTextHead(url, limit);
        } else {
            auto text = readText(url);
            head = text ? Result<TextHead>(TextHead{.decoded = std::move(*text), .isWhole = true})
                        : std::unexpected(text.error());
        }
        if (!head)
            return reportFailure(program, url, head.error());
    }
}

} // namespace

int printText(std::string_view program, const URL& url, const std::optional<TerminalPane>& pane)
{
    std::signal(SIGPIPE, SIG_IGN);
    if (pane)
        return printRows(program, url, *pane);
    auto text = String::contentsOf(url);
    return text ? printBytes(program, text->utf8()) : reportFailure(program, url, text.error());
}

} // namespace platform
