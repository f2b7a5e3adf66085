// SPDX-License-Identifier: MIT
#include "examples/fetch-files/Board.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/UTF8.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

using namespace platform;

namespace {

struct TerminalSize {
    std::size_t rows = 0;
    std::size_t columns = 0;
};

// What does not say how large it is is as large as terminals used to be.
TerminalSize terminalSize()
{
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 || size.ws_col == 0)
        return {24, 80};
    return {size.ws_row, size.ws_col};
}

} // namespace

Board::Board(std::vector<Row> rows)
    : hasBars_(::isatty(STDOUT_FILENO) == 1 && rows.size() < terminalSize().rows)
    , rows_(std::move(rows))
{
    for (std::size_t i = 0; i < rows_.size(); ++i)
        places_.emplace(rows_[i].url, i);
    draw();
}

std::optional<URL> Board::destination(const URL& url) const
{
    auto found = places_.find(url);
    if (found == places_.end())
        return std::nullopt;
    std::lock_guard lock(mutex_);
    return rows_[found->second].destination;
}

void Board::update(const URL& url, float progress)
{
    std::lock_guard lock(mutex_);
    if (auto* row = find(url)) {
        row->progress = progress;
        drawSoon();
    }
}

bool Board::hasFailed() const
{
    std::lock_guard lock(mutex_);
    return hasFailed_;
}

void Board::finish(const URL& url, const std::string& outcome, bool isSuccess)
{
    std::lock_guard lock(mutex_);
    auto* row = find(url);
    if (!row || !row->outcome.empty())
        return;
    row->outcome = outcome;
    if (isSuccess)
        row->progress = 1;
    hasFailed_ = hasFailed_ || !isSuccess;
    if (!hasBars_)
        std::printf("%s: %s\n", printable(row->destination.lastPathComponent()).c_str(), outcome.c_str());
    if (++doneCount_ < rows_.size())
        return drawSoon();
    RunLoop::main().perform([this] {
        draw();
        RunLoop::main().stop();
    });
}

std::string Board::printable(std::string_view text)
{
    auto result = repairedUTF8(text);
    std::erase_if(result, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
    return result;
}

Board::Row* Board::find(const URL& url)
{
    auto found = places_.find(url);
    return found == places_.end() ? nullptr : &rows_[found->second];
}

// News come faster than anybody can read: they do not wake the main thread each. With the lock held.
void Board::drawSoon()
{
    constexpr auto pause = std::chrono::milliseconds(50);
    if (hasBars_ && !std::exchange(willDraw_, true))
        RunLoop::main().performAfter(pause, [this] { draw(); });
}

void Board::draw()
{
    if (!hasBars_)
        return;
    auto text = drawing();
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

std::string Board::drawing()
{
    std::lock_guard lock(mutex_);
    willDraw_ = false;
    auto columns = terminalSize().columns;
    auto width = std::clamp<std::size_t>(columns > 40 ? columns - 40 : 0, 6, 30);
    std::string text;
    if (std::exchange(isDrawn_, true))
        text = "\x1b[" + std::to_string(rows_.size()) + "A";
    // What does not fit ends at the edge: a line more, and the next bars would stand in the wrong place.
    text += "\x1b[?7l";
    for (auto& row : rows_) {
        auto filled =
            static_cast<std::size_t>(std::clamp(row.progress, 0.0F, 1.0F) * static_cast<float>(width));
        auto state =
            row.outcome.empty() ? std::to_string(static_cast<int>(row.progress * 100)) + " %" : row.outcome;
        text.append("\r\x1b[K[").append(filled, '=').append(width - filled, ' ').append("] ");
        text.append(printable(row.destination.lastPathComponent())).append("  ").append(state).append("\n");
    }
    text += "\x1b[?7h";
    return text;
}
