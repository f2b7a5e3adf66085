// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/foundation/URL.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// What the user sees of several downloads: on a terminal that is high enough a bar each, anywhere else a line for each that
// has ended. Stops the run loop after the last. Main thread only.
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
    bool hasFailed() const { return hasFailed_; }

    // Names come from strangers: nothing in them moves the cursor.
    static std::string printable(std::string_view text);

private:
    Row* find(const platform::URL& url);
    void drawSoon();
    void draw();

    std::vector<Row> rows_;
    std::unordered_map<platform::URL, std::size_t> places_;
    std::size_t doneCount_ = 0;
    bool hasBars_ = false;
    bool isDrawn_ = false;
    bool hasFailed_ = false;
    platform::Token drawing_; // is under way while there is something new to be seen
};
