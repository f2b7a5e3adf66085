// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/TextLayout.h"
#include "platform/uikit/text/TextFragment.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

namespace platform {

// One fragment, shaped, without its line end.
struct ShapedFragment {
    TextFragment fragment;
    TextLayout layout;

    CGFloat height() const { return layout.size().height; }
    // Between offsets of the text and of the layout; clamped to the fragment.
    std::size_t inside(Utf8Offset offset) const;
    Utf8Offset outside(std::size_t offset) const
    {
        return fragment.range.start + static_cast<std::int64_t>(offset);
    }
};

// The fragments that were shaped last: what is on screen and a margin, whatever the text's size.
// Owned by exactly one text view's flow. Main thread only.
class LineLayoutCache {
public:
    // `text` outlives this.
    explicit LineLayoutCache(const TextBuffer& text);

    // Forgets all when something differs. `width` in points.
    void setStyle(const TextStyle& style, CGFloat width);
    const TextStyle& style() const { return style_; }
    CGFloat width() const { return width_; }
    void forgetAll();
    // The text has changed at `at` and behind it.
    void handleEdit(Utf8Offset at);

    std::shared_ptr<const ShapedFragment> shape(const TextFragment& fragment);

    // How often a fragment was shaped since the beginning: the work that all of this is meant to avoid.
    std::int64_t shapingCount() const { return shapingCount_; }

private:
    struct Entry {
        std::shared_ptr<const ShapedFragment> shaped;
        std::uint64_t lastUse = 0;
    };

    std::shared_ptr<const ShapedFragment> make(const TextFragment& fragment) const;
    void prove(const ShapedFragment& cached) const;
    void evict();

    const TextBuffer& text_;
    TextStyle style_;
    CGFloat width_ = 0;
    std::unordered_map<std::int64_t, Entry> entries_; // by the fragment's start
    std::int64_t bytes_ = 0;                          // of all entries' texts
    std::uint64_t uses_ = 0;
    std::int64_t shapingCount_ = 0;
};

} // namespace platform
