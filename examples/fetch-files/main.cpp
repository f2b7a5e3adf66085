// SPDX-License-Identifier: MIT
// Downloads files, with a bar each: fetch-files [--to DIRECTORY] URL...
// Exit status: 0 all are there, 1 some are not, 2 wrong usage.
#include "kit/data/DownloadManager.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/UTF8.h"

#include <algorithm>
#include <cstdio>
#include <set>
#include <string>
#include <unistd.h>
#include <unordered_map>
#include <unordered_set>
#include <vector>

using namespace platform;

namespace {

struct Row {
    URL url;
    URL destination;
    float progress = 0;
    std::string outcome; // empty while it runs
    bool isDone = false;
};

// What the user sees. Main thread only.
class Board {
public:
    explicit Board(std::vector<Row> rows)
        : rows_(std::move(rows))
        , isTerminal_(::isatty(STDOUT_FILENO) == 1)
    {
        for (std::size_t i = 0; i < rows_.size(); ++i)
            places_.emplace(rows_[i].url, i);
        draw();
    }

    void update(const URL& url, float progress)
    {
        if (auto* row = find(url)) {
            row->progress = progress;
            draw();
        }
    }

    void finish(const URL& url, const std::string& outcome, bool isSuccess)
    {
        auto* row = find(url);
        if (!row || row->isDone)
            return;
        row->isDone = true;
        row->outcome = outcome;
        hasFailed_ = hasFailed_ || !isSuccess;
        if (isTerminal_)
            draw();
        else
            std::printf("%s: %s\n", name(*row).c_str(), outcome.c_str());
        if (++doneCount_ == rows_.size())
            RunLoop::main().stop();
    }

    bool hasFailed() const { return hasFailed_; }

private:
    Row* find(const URL& url)
    {
        auto found = places_.find(url);
        return found == places_.end() ? nullptr : &rows_[found->second];
    }

    // Names come from strangers: nothing in them moves the cursor.
    static std::string name(const Row& row)
    {
        auto text = repairedUTF8(row.destination.lastPathComponent());
        std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
        return text;
    }

    void draw()
    {
        if (!isTerminal_)
            return;
        constexpr int width = 30;
        if (isDrawn_)
            std::printf("\x1b[%zuA", rows_.size());
        isDrawn_ = true;
        for (auto& row : rows_) {
            auto filled = static_cast<std::size_t>(std::clamp(row.progress, 0.0F, 1.0F) * width);
            std::string bar = std::string(filled, '=').append(width - filled, ' ');
            auto state =
                row.isDone ? row.outcome : std::to_string(static_cast<int>(row.progress * 100)) + " %";
            std::printf("\r\x1b[K[%s] %s  %s\n", bar.c_str(), name(row).c_str(), state.c_str());
        }
        std::fflush(stdout);
    }

    std::vector<Row> rows_;
    std::unordered_map<URL, std::size_t> places_;
    std::size_t doneCount_ = 0;
    bool isTerminal_;
    bool isDrawn_ = false;
    bool hasFailed_ = false;
};

// Brings what the manager says to the main thread.
class Listener final : public zelk::DownloadManagerDelegate {
public:
    Listener(Board& board, const std::vector<Row>& rows)
        : board_(board)
    {
        for (auto& row : rows)
            destinations_.emplace(row.url, row.destination);
    }

private:
    std::optional<URL> destinationURL(const URL& url) override
    {
        auto found = destinations_.find(url);
        return found == destinations_.end() ? std::nullopt : std::optional(found->second);
    }
    void downloadManagerDidFail(const URL& url, const Error& error) override
    {
        RunLoop::main().perform(
            [&board = board_, url, text = error.localizedDescription()] { board.finish(url, text, false); });
    }
    void downloadManagerDidFinish(const URL& url, const URL&) override
    {
        RunLoop::main().perform([&board = board_, url] {
            board.update(url, 1);
            board.finish(url, "done", true);
        });
    }
    void downloadManagerDidUpdateProgress(const URL& url, float progress) override
    {
        RunLoop::main().perform([&board = board_, url, progress] { board.update(url, progress); });
    }

    Board& board_;
    std::unordered_map<URL, URL> destinations_; // fixed after construction
};

int usage(const char* fault)
{
    std::fprintf(stderr, "%s\nUsage: fetch-files [--to DIRECTORY] URL...\n", fault);
    return 2;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    RunLoop::main(); // this is the main thread
    std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    URL directory = URL::fileURL("");
    if (words.size() >= 2 && words.front() == "--to") {
        directory = URL::fileURL(words[1]);
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.empty())
        return usage("No URL is given.");

    std::vector<Row> rows;
    std::set<std::string> names;
    std::unordered_set<URL> seen;
    for (auto& word : words) {
        auto url = URL::parse(word);
        if (!url)
            return usage(("This is no URL: " + word).c_str());
        if (!seen.insert(*url).second)
            continue; // the same file twice is one download
        auto stem = url->lastPathComponent();
        if (stem.empty() || stem == "/")
            stem = "index.html";
        auto name = stem;
        for (int number = 2; !names.insert(name).second; ++number)
            name = std::to_string(number) + "-" + stem;
        rows.push_back({*url, directory.appendingPathComponent(name)});
    }

    Board board(rows);
    auto listener = std::make_shared<Listener>(board, rows);
    auto manager = zelk::DownloadManager::make({.allowsCellularAccess = true, .isDiscretionary = false});
    manager->setDelegate(listener);
    for (auto& row : rows)
        manager->addDownload(row.url, row.destination);
    RunLoop::main().run();
    return board.hasFailed() ? 1 : 0;
}
