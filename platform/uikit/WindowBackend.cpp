// SPDX-License-Identifier: MIT
#include "platform/uikit/WindowBackend.h"

#include "platform/graphics/GraphicsRuntime.h"
#include "platform/uikit/RasterWindow_p.h"

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include <cmath>

namespace platform {

namespace {

Qt::CursorShape shapeOf(UIView::Cursor cursor)
{
    switch (cursor) {
    case UIView::Cursor::text:
        return Qt::IBeamCursor;
    case UIView::Cursor::pointingHand:
        return Qt::PointingHandCursor;
    case UIView::Cursor::resizeHorizontal:
        return Qt::SizeHorCursor;
    case UIView::Cursor::resizeVertical:
        return Qt::SizeVerCursor;
    case UIView::Cursor::arrow:
        break;
    }
    return Qt::ArrowCursor;
}

class RasterBackend final : public WindowBackend {
public:
    explicit RasterBackend(UIWindow& window)
        : window_(new RasterWindow(window))
    {
    }

    void open() override { window_->open(); }
    void drop() override { std::exchange(window_, nullptr)->drop(); } // it deletes itself
    void raise() override
    {
        window_->raise();
        window_->requestActivate();
    }
    bool isExposed() const override { return window_->isExposed(); }
    void setTitle(const std::string& title) override { window_->setTitle(QString::fromStdString(title)); }
    void setMinimumSize(CGSize size) override
    {
        window_->setMinimumSize({int(std::ceil(size.width)), int(std::ceil(size.height))});
    }
    void setPointer(UIView::Cursor cursor) override
    {
        if (cursor == pointer_)
            return;
        pointer_ = cursor;
        window_->setCursor(shapeOf(cursor));
    }
    void textInputDidChange() override { window_->textInputDidChange(); }
    double scale() const override { return window_->devicePixelRatio(); }

private:
    RasterWindow* window_; // until `drop`
    UIView::Cursor pointer_ = UIView::Cursor::arrow;
};

} // namespace

std::unique_ptr<WindowBackend> WindowBackend::make(UIWindow& window)
{
    return std::make_unique<RasterBackend>(window);
}

CGRect WindowBackend::availableScreenBounds()
{
    auto* screen = graphicsIsStarted() ? QGuiApplication::primaryScreen() : nullptr;
    if (!screen)
        return CGRect::make(0, 0, 1280, 800);
    auto space = screen->availableGeometry();
    return CGRect::make(space.x(), space.y(), space.width(), space.height());
}

} // namespace platform
