// SPDX-License-Identifier: MIT
#include "platform/uikit/WindowGuide.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/GraphicsRuntime_p.h"
#include "platform/uikit/EventTranslation_p.h"

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QPlatformSurfaceEvent>
#include <QtGui/QWindow>

#include <charconv>

namespace platform {

namespace {

std::optional<WId> windowNamedBy(std::string_view handle)
{
    constexpr std::string_view scheme = "x11:";
    if (!handle.starts_with(scheme) || QGuiApplication::platformName() != QLatin1String("xcb"))
        return std::nullopt;
    handle.remove_prefix(scheme.size());
    std::uint32_t number = 0;
    auto [end, fault] = std::from_chars(handle.data(), handle.data() + handle.size(), number, 16);
    if (fault != std::errc() || end != handle.data() + handle.size() || number == 0)
        return std::nullopt;
    return number;
}

} // namespace

// Sees the application's events before the windows do. Knows the first window that is made.
struct WindowGuide::Filter : QObject {
    Filter(const Wishes& wishes, Handlers handlers)
        : wishes_(wishes)
        , handlers_(std::move(handlers))
    {
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (object->isWindowType() && (!window_ || object == window_))
            return handle(*static_cast<QWindow*>(object), *event);
        return false;
    }

private:
    bool handle(QWindow& window, QEvent& event)
    {
        switch (event.type()) {
        case QEvent::PlatformSurface:
            if (static_cast<QPlatformSurfaceEvent&>(event).surfaceEventType()
                    == QPlatformSurfaceEvent::SurfaceCreated
                && !window_)
                prepare(window);
            return false;
        case QEvent::Expose:
            if (window.isExposed() && !std::exchange(isShown_, true))
                announce();
            return false;
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            // The window learns of it first.
            if (isShown_)
                RunLoop::main().perform([self = QPointer(this)] {
                    if (self)
                        self->tellPlace();
                });
            return false;
        case QEvent::Hide:
            // For good; and the other program's window goes before the connection that it is known by.
            window.setTransientParent(nullptr);
            parent_.reset();
            return false;
        case QEvent::KeyPress: {
            auto press = pressFrom(static_cast<QKeyEvent&>(event), RunLoop::main().clock().now());
            return press && handlers_.onPress(*press);
        }
        default:
            return false;
        }
    }

    // Before it is mapped.
    void prepare(QWindow& window)
    {
        window_ = &window;
        if (wishes_.frame) {
            auto& frame = *wishes_.frame;
            window.setGeometry(QRect(int(frame.origin.x), int(frame.origin.y), int(frame.size.width),
                                     int(frame.size.height)));
        }
        if (!wishes_.takesKeyboard)
            window.setProperty("_q_showWithoutActivating", true);
        if (auto parent = windowNamedBy(wishes_.parentHandle)) {
            parent_.reset(QWindow::fromWinId(*parent));
            window.setTransientParent(parent_.get());
        }
        if (wishes_.activationToken.empty())
            return;
        awaitFontConfiguration(); // the thread that reads it reads the environment
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(wishes_.activationToken));
    }

    // The window paints while it handles the event that this is called for.
    void announce()
    {
        RunLoop::main().perform([self = QPointer(this)] {
            if (!self || !self->window_)
                return;
            if (self->wishes_.takesKeyboard)
                self->window_->requestActivate();
            self->tellPlace();
            self->handlers_.onShown();
        });
    }

    void tellPlace()
    {
        if (!window_ || !window_->isVisible())
            return;
        auto frame = window_->geometry();
        handlers_.onPlace(CGRect::make(frame.x(), frame.y(), frame.width(), frame.height()),
                          window_->isActive());
    }

    const Wishes wishes_;
    const Handlers handlers_;
    std::unique_ptr<QWindow> parent_; // another program's
    QPointer<QWindow> window_;
    bool isShown_ = false;
};

WindowGuide::WindowGuide(const Wishes& wishes, Handlers handlers)
    : filter_(std::make_unique<Filter>(wishes, std::move(handlers)))
{
    assertOnMainThread();
    QCoreApplication::instance()->installEventFilter(filter_.get());
}

WindowGuide::~WindowGuide() = default;

} // namespace platform
