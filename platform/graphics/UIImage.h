// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIColor.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace platform {

class CGContext;
struct Bitmap; // the pixels as the painting library has them

// A picture that never changes, with shared pixels: a copy is one reference count and may cross threads.
class UIImage {
public:
    enum class RenderingMode {
        automatic, // symbols take the tint colour, other pictures keep their own
        alwaysOriginal,
        alwaysTemplate // only the alpha counts; the tint colour fills it
    };
    // More pixels than this are refused before they are decoded or allocated.
    static constexpr long long maximumPixelCount = 128LL * 1024 * 1024;

    // An empty picture of size zero, which draws nothing.
    UIImage() = default;

    // Decodes an encoded picture (PNG, JPEG, the first frame of a GIF, BMP, ICO, WebP where installed),
    // turned upright as its metadata says. `scale` is pixels per point. Any thread. Errors: NSCocoaErrorDomain,
    // fileReadCorruptFile or fileReadTooLarge.
    [[nodiscard]] static Result<UIImage> fromData(std::span<const std::byte> data, CGFloat scale = 1);
    // Also: fileReadNoSuchFile, fileReadNoPermission, fileReadUnknown; anything but a regular file is
    // refused. The user info names the last path component.
    [[nodiscard]] static Result<UIImage> fromFile(std::string_view path, CGFloat scale = 1);
    // Straight from pixels: four bytes each, red, green, blue, alpha, not premultiplied; copied. Requires:
    // rgba.size() == 4 * width * height.
    static UIImage fromPixels(std::span<const std::byte> rgba, int width, int height, CGFloat scale = 1);

    bool isEmpty() const { return bitmap_ == nullptr; }
    CGSize size() const; // points
    CGFloat scale() const { return scale_; }
    int pixelWidth() const;
    int pixelHeight() const;
    // The colour of one pixel. Requires: the pixel exists.
    UIColor pixel(int x, int y) const;
    RenderingMode renderingMode() const { return renderingMode_; }
    bool isSymbol() const { return isSymbol_; }
    // Whether drawing it fills its alpha with the tint colour.
    bool isTemplate() const
    {
        return renderingMode_ == RenderingMode::alwaysTemplate
            || (renderingMode_ == RenderingMode::automatic && isSymbol_);
    }

    UIImage withRenderingMode(RenderingMode mode) const;
    UIImage asSymbol() const;

    // Empty for an empty picture.
    std::string pngData() const;
    // Writes beside `path` and renames, so a reader never sees half a picture. Errors: NSPOSIXErrorDomain;
    // NSCocoaErrorDomain fileReadUnknown for an empty picture. A failed write leaves `path` as it was.
    [[nodiscard]] Result<void> writePNG(std::string_view path) const;

    // The same pixels, or equal pixels at the same scale.
    friend bool operator==(const UIImage& a, const UIImage& b);

    // For the drawing code; null for an empty picture.
    const std::shared_ptr<const Bitmap>& bitmap() const { return bitmap_; }
    UIImage(std::shared_ptr<const Bitmap> bitmap, CGFloat scale);

private:
    std::shared_ptr<const Bitmap> bitmap_;
    CGFloat scale_ = 1;
    RenderingMode renderingMode_ = RenderingMode::automatic;
    bool isSymbol_ = false;
};

// Paints a new picture, transparent at first. `size` is in points, `scale` in pixels per point; a part of a
// pixel counts as one. Starts graphics off-screen when nothing has. Errors: NSCocoaErrorDomain
// fileReadTooLarge when the size is no number, is not positive or has too many pixels.
[[nodiscard]] Result<UIImage> makeImage(CGSize size, CGFloat scale,
                                        const std::function<void(CGContext&)>& draw,
                                        ColorAppearance appearance = {});

} // namespace platform
