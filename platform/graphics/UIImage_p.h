// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"

#include <QtGui/QImage>

#include <atomic>
#include <functional>
#include <mutex>

namespace platform {

// The pixels of a picture, or how they are made when they are needed first. Any thread.
struct Bitmap {
    explicit Bitmap(QImage image)
        : size_(image.size())
        , image_(std::move(image))
    {
    }
    // `size` is that of the whole picture, of which `decode` may make a smaller one; or nothing, which draws nothing.
    Bitmap(QSize size, std::function<QImage()> decode)
        : size_(size)
        , decode_(std::move(decode))
        , isPending_(true)
    {
    }

    QSize size() const { return size_; }
    bool isPending() const { return isPending_.load(std::memory_order_acquire); }
    // Premultiplied, or opaque without alpha; its device pixel ratio is 1. Makes it, or waits for the thread that does.
    const QImage& image() const
    {
        if (isPending())
            std::call_once(once_, [this] {
                image_ = std::exchange(decode_, nullptr)();
                isPending_.store(false, std::memory_order_release);
            });
        return image_;
    }

private:
    const QSize size_;
    // of the one call that makes it
    mutable std::once_flag once_;
    mutable std::function<QImage()> decode_;
    mutable QImage image_;
    mutable std::atomic<bool> isPending_ = false;
};

// Null when the picture is empty.
QImage qImage(const UIImage& image);
UIImage imageFrom(QImage image, CGFloat scale);

} // namespace platform
