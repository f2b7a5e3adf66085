// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"

#include <optional>

namespace platform {

// The appearance that a colour is read in where none is given: that of the innermost CurrentAppearance of the calling
// thread, else the process's. Views are drawn, laid out and told of their traits in their own.
ColorAppearance currentAppearance();

// What holds outside of any CurrentAppearance; light until somebody says otherwise. An application that has started
// says what the desktop shows. Any thread.
void setProcessAppearance(ColorAppearance appearance);

// Reads colours in `appearance` while the object lives; objects nest. One thread.
class CurrentAppearance {
public:
    explicit CurrentAppearance(ColorAppearance appearance);
    ~CurrentAppearance();
    // Its lifetime is its meaning.
    CurrentAppearance(const CurrentAppearance&) = delete;
    CurrentAppearance& operator=(const CurrentAppearance&) = delete;

private:
    std::optional<ColorAppearance> previous_;
};

} // namespace platform
