// SPDX-License-Identifier: MIT
#include "platform/uikit/RasterWindow_p.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext_p.h"
#include "platform/uikit/AccessibilityNodes_p.h"
#include "platform/uikit/EventTranslation_p.h"
#include "platform/uikit/ScreenSight.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>
#include <QtGui/QInputMethodEvent>
#include <QtGui/QPainter>
#include <QtGui/QScreen>

#include <cmath>

namespace platform {

namespace {

using namespace std::chrono_literals;

// Work that comes faster than this is painted together.
constexpr Duration shortestFrame = 12ms;

QRegion regionFrom(const DirtyRegion& dirty)
{
    QRegion region;
    for (const auto& rect : dirty.rects())
        region += rectFrom(rect).toAlignedRect();
    return region;
}

} // namespace

RasterWindow::RasterWindow(UIWindow& owner)
    : owner_(std::static_pointer_cast<UIWindow>(owner.weak_from_this().lock()))
    , store_(this)
{
    setSurfaceType(QSurface::RasterSurface);
    auto size = owner.bounds().size;
    resize(int(std::lround(size.width)), int(std::lround(size.height)));
    create();
    scale_ = devicePixelRatio();
    owner.setFrameSize(contentSize());
    waitsForCompositor_ = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    displayObserver_ =
        RunLoop::main().addBeforeSleepObserver(BeforeSleepPhase::display, [this] { return frameIsDue(); });
}

RasterWindow::~RasterWindow() = default;

// The window system counts whole points. Where a point is no whole number of pixels the surface has up to one pixel more
// or less than they make, and the content shall end where the surface does.
CGSize RasterWindow::contentSize() const
{
    auto points = [&](int length) { return std::round(length * scale_) / scale_; };
    return {points(width()), points(height())};
}

void RasterWindow::open()
{
    auto owner = this->owner();
    // Painted before it is mapped: the first thing to be seen is the content.
    paintFrame(*owner);
    if (!owner_.expired())
        show();
}

void RasterWindow::drop()
{
    owner_.reset();
    displayObserver_.cancel();
    hide();
    deleteLater();
}

bool RasterWindow::frameIsDue()
{
    auto owner = this->owner();
    if (!owner || !isExposed() || owner->dirtyRegion().isEmpty())
        return false;
    auto isEarly = lastFrame_ && RunLoop::main().clock().now() - *lastFrame_ < shortestFrame;
    if (waitsForCompositor_ || isEarly) {
        if (!std::exchange(isUpdateRequested_, true))
            requestUpdate();
        return false;
    }
    paintFrame(*owner);
    return true;
}

void RasterWindow::exposed(UIWindow& owner)
{
    if (!isExposed())
        return;
    followScale(owner);
    screenDidChange();
    paintFrame(owner);
    if (!owner_.expired())
        flush(owner, QRect({}, size()));
}

void RasterWindow::followScale(UIWindow& owner)
{
    auto scale = devicePixelRatio();
    if (scale == scale_)
        return;
    scale_ = scale;
    owner.setFrameSize(contentSize());
    owner.surroundingsDidChange();
    owner.setNeedsDisplay();
}

void RasterWindow::paintFrame(UIWindow& owner)
{
    isUpdateRequested_ = false;
    owner.layoutNow();
    if (owner_.expired() || size().isEmpty())
        return;
    if (store_.size() != size()) {
        store_.resize(size());
        owner.setNeedsDisplay();
    }
    // There the frame is part of the surface, which is a new and empty one when the frame comes or goes.
    if (waitsForCompositor_ && std::exchange(paintedMargins_, frameMargins()) != frameMargins())
        owner.setNeedsDisplay();
    auto dirty = owner.takeDirtyRegion();
    if (dirty.isEmpty())
        return;
    auto region = regionFrom(dirty);
    store_.beginPaint(region);
    {
        QPainter painter(store_.paintDevice());
        for (const auto& rect : dirty.rects()) {
            painter.setClipRect(rectFrom(rect));
            auto context = contextOver(painter, owner.traitCollection().colorAppearance());
            owner.paint(context, rect);
        }
    }
    store_.endPaint();
    lastFrame_ = RunLoop::main().clock().now();
    if (isExposed() && !owner_.expired())
        flush(owner, region);
}

void RasterWindow::flush(UIWindow& owner, const QRegion& region)
{
    store_.flush(region);
    tellCaretPlace(owner);
    if (std::exchange(owner.reportedFirstFrame_, true))
        return;
    if (auto handler = std::exchange(owner.onFirstFrame, nullptr))
        handler();
}

// The input method's candidates follow the caret as it is painted.
void RasterWindow::tellCaretPlace(UIWindow& owner)
{
    auto* input = owner.isKeyWindow() ? owner.activeTextInput() : nullptr;
    if (!input)
        return;
    auto caret = input->caretRectInWindow();
    if (caret == toldCaret_)
        return;
    toldCaret_ = caret;
    QGuiApplication::inputMethod()->update(Qt::ImCursorRectangle);
}

void RasterWindow::textInputDidChange()
{
    isComposing_ = false;
    toldCaret_ = CGRect::null();
    if (QGuiApplication::focusWindow() != this)
        return;
    QGuiApplication::inputMethod()->reset();
    QGuiApplication::inputMethod()->update(Qt::ImEnabled | Qt::ImCursorRectangle);
}

void RasterWindow::answerInputMethod(UIWindow& owner, QInputMethodQueryEvent& query)
{
    auto* input = owner.activeTextInput();
    if (query.queries() & Qt::ImEnabled)
        query.setValue(Qt::ImEnabled, input != nullptr);
    if (input && (query.queries() & Qt::ImCursorRectangle))
        query.setValue(Qt::ImCursorRectangle, rectFrom(input->caretRectInWindow()));
    query.accept();
}

void RasterWindow::takeComposedText(UIWindow& owner, const QInputMethodEvent& event)
{
    auto* input = owner.activeTextInput();
    if (!input)
        return;
    if (isComposing_ && (event.preeditString().isEmpty() || !event.commitString().isEmpty()))
        input->setMarkedText({});
    isComposing_ = !event.preeditString().isEmpty();
    // The text may decide that it takes no more.
    if (!event.commitString().isEmpty())
        input->insertText(event.commitString().toStdString());
    input = owner.activeTextInput();
    if (input && isComposing_)
        input->setMarkedText(event.preeditString().toStdString());
}

bool RasterWindow::event(QEvent* event)
{
    // Held for as long as the event takes, whatever the views do with it.
    auto owner = this->owner();
    if (owner && handle(*owner, *event))
        return true;
    return QWindow::event(event);
}

// True when that is all there is to do.
bool RasterWindow::handle(UIWindow& owner, QEvent& event)
{
    auto now = [] { return RunLoop::main().clock().now(); };
    switch (event.type()) {
    case QEvent::UpdateRequest:
        paintFrame(owner);
        return true;
    case QEvent::Expose:
        exposed(owner);
        return true;
    case QEvent::Resize:
        followScale(owner);
        owner.setFrameSize(contentSize());
        // Painted at once, so that the content keeps up with the edge that is dragged.
        if (isExposed())
            paintFrame(owner);
        return true;
    case QEvent::Close:
        event.ignore(); // the window goes its own way
        owner.close();
        return true;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        owner.setKeyWindow(event.type() == QEvent::FocusIn);
        return false;
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        auto press = pressFrom(static_cast<const QKeyEvent&>(event), now());
        if (press && event.type() == QEvent::KeyPress)
            event.setAccepted(owner.sendPress(*press));
        else if (press)
            owner.sendPressEnded(*press);
        return true;
    }
    case QEvent::InputMethodQuery:
        answerInputMethod(owner, static_cast<QInputMethodQueryEvent&>(event));
        return true;
    case QEvent::InputMethod:
        takeComposedText(owner, static_cast<const QInputMethodEvent&>(event));
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        pointers_.handle(owner, static_cast<const QMouseEvent&>(event));
        return true;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        pointers_.handle(owner, static_cast<const QTouchEvent&>(event));
        event.accept(); // else they come again as mouse events
        return true;
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
        pointers_.handle(owner, static_cast<const QTabletEvent&>(event));
        event.accept();
        return true;
    case QEvent::Wheel:
        owner.sendScroll(wheelFrom(static_cast<const QWheelEvent&>(event), now()));
        return true;
    case QEvent::Leave:
        owner.sendHoverExit();
        return true;
    case QEvent::Hide:
        pointers_.cancelAll(owner);
        return false;
    default:
        return false;
    }
}

QAccessibleInterface* RasterWindow::accessibleRoot() const
{
    auto owner = this->owner();
    return owner ? AccessibilityNodes::node(*owner, const_cast<RasterWindow*>(this)) : nullptr;
}

} // namespace platform
