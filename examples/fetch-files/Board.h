// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// What the user sees of several downloads: on a terminal that is high enough a bar each, anywhere else a line for each that
// has ended. Stops the main run loop after the last. News may come on any thread; the rest is for the main thread.
class Board {
public:
    struct Row {
        platform::URL url;
        platform::URL destination;
        float progress = 0;
        std::string outcome{}; // empty while it runs
    };

    explicit Board(std::vector<Row> rows);
    void update(const platform::URL& url, float progress);
    void finish(const platform::URL& url, const std::string& outcome, bool isSuccess);
    bool hasFailed() const;
    // Nothing when there is no such row. Any thread.
    std::optional<platform::URL> destination(const platform::URL& url) const;

    // Names come from strangers: nothing in them moves the cursor.
    static std::string printable(std::string_view text);

private:
    Row* find(const platform::URL& url);
    void drawSoon();
    void draw();
    std::string drawing();

    // fixed after construction
    std::unordered_map<platform::URL, std::size_t> places_;
    bool hasBars_ = false;

    mutable std::mutex mutex_;
    // guarded by mutex_
    std::vector<Row> rows_;
    std::size_t doneCount_ = 0;
    bool isDrawn_ = false;
    bool willDraw_ = false;
    bool hasFailed_ = false;
};
