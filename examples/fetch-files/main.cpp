// SPDX-License-Identifier: MIT
// Downloads files, with a bar each: fetch-files [--to DIRECTORY] URL...
// Exit status: 0 all are there, 1 some are not, 2 wrong usage.
#include "examples/fetch-files/Board.h"
#include "kit/data/DownloadManager.h"
#include "platform/dispatch/RunLoop.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

using namespace platform;

namespace {

// Tells the board what the manager says, and the manager where files go.
class Listener final : public zelk::DownloadManagerDelegate {
public:
    explicit Listener(Board& board)
        : board_(board)
    {
    }

private:
    std::optional<URL> destinationURL(const URL& url) override { return board_.destination(url); }
    void downloadManagerDidFail(const URL& url, const Error& error) override
    {
        board_.finish(url, error.localizedDescription(), false);
    }
    void downloadManagerDidFinish(const URL& url, const URL&) override { board_.finish(url, "done", true); }
    void downloadManagerDidUpdateProgress(const URL& url, float progress) override
    {
        board_.update(url, progress);
    }

    Board& board_;
};

int refuse(const std::string& fault)
{
    std::fprintf(stderr, "fetch-files: %s\n", fault.c_str());
    return 2;
}

// The first interrupt ends the downloads, so that nothing of them stays; a second one ends the program. To be called before
// there are other threads.
void cancelWhenInterrupted(const std::shared_ptr<zelk::DownloadManager>& manager, const sigset_t& signals)
{
    std::thread([weak = std::weak_ptr(manager), signals] {
        int signal = 0;
        ::sigwait(&signals, &signal);
        if (auto running = weak.lock())
            running->cancelAllDownloads();
        ::sigwait(&signals, &signal);
        std::_Exit(128 + signal);
    }).detach();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    RunLoop::main(); // this is the main thread
    std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    constexpr auto usage = "usage: fetch-files [--to DIRECTORY] URL...";
    if (words.size() == 1 && words[0] == "--help")
        return std::puts(usage) < 0 ? 1 : 0;
    auto directory = URL::fileURL("");
    if (!words.empty() && words[0] == "--to") {
        std::error_code unknown;
        if (words.size() < 2 || !std::filesystem::is_directory(words[1], unknown))
            return refuse(words.size() < 2 ? usage : "there is no folder " + words[1]);
        directory = URL::fileURL(words[1]);
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.empty())
        return refuse(usage);

    sigset_t signals;
    ::sigemptyset(&signals);
    for (auto signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaddset(&signals, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    // It makes itself ready while the URLs are read.
    auto manager = zelk::DownloadManager::make({.allowsCellularAccess = true, .isDiscretionary = false});

    std::vector<Board::Row> rows;
    rows.reserve(words.size());
    std::unordered_set<std::string> names;
    std::unordered_set<URL> seen;
    for (auto& word : words) {
        auto url = URL::parse(word);
        if (!url || url->scheme().empty())
            return refuse("this is no URL: " + Board::printable(word));
        if (!seen.insert(*url).second)
            continue; // the same file twice is one download
        auto stem = url->lastPathComponent();
        if (stem.empty() || stem == "/" || stem == "." || stem == "..")
            stem = "index.html";
        auto name = stem;
        for (int number = 2; !names.insert(name).second; ++number)
            name = std::to_string(number) + "-" + stem;
        rows.push_back({.url = *url, .destination = directory.appendingPathComponent(name)});
    }

    Board board(rows);
    auto listener = std::make_shared<Listener>(board);
    cancelWhenInterrupted(manager, signals);
    manager->setDelegate(listener);
    for (auto& row : rows)
        manager->addDownload(row.url, row.destination);
    RunLoop::main().run();
    return board.hasFailed() ? 1 : 0;
}
