// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIView.h"

namespace platform {

// Paints a view tree back to front, as it is on screen now, and no more of it than shows in the dirty rectangle. Changes
// nothing in the tree. Main thread only.
class ViewPainter {
public:
    explicit ViewPainter(CGContext& context)
        : context_(context)
    {
    }

    // Both in the view's own coordinates, which are the context's at present. The view's transform does not count; its
    // look does.
    void paint(UIView& view, CGRect dirty);

private:
    void paintInSuperview(UIView& view, CGRect dirty);
    void paintGroup(UIView& view, CGRect dirty);
    void paintContent(UIView& view, CGRect dirty);
    void paintShadow(UIView& view, CGRect dirty);
    bool maskWithGradient(UIView& mask, CGRect dirty);
    static bool isPlain(const UIView& view); // nothing of its own shows, or changes what does
    bool covers(const UIView& view, CGRect dirty) const;

    CGContext& context_;
    bool isOutline_ = false; // of a shadow: what is painted throws none of its own
};

} // namespace platform
