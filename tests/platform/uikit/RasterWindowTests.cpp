// SPDX-License-Identifier: MIT
// A window on the window system that keeps its windows in memory: the whole way of a frame and of an event but for the
// display.
#include "platform/uikit/RasterWindow_p.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/GraphicsRuntime_p.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QPixmap>
#include <QtGui/QScreen>
#include <QtGui/QTouchEvent>
#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace Qt::StringLiterals;

class SensingView : public UIView, public UITextInput {
public:
    bool canBecomeFirstResponder() const override { return true; }
    void draw(CGContext&, CGRect) override { ++draws; }
    void touchesBegan(UITouch& touch) override
    {
        log +=
            "down" + std::to_string(touch.tapCount) + (touch.button == UIPointerButton::middle ? "m " : " ");
    }
    void touchesMoved(UITouch&) override { log += "move "; }
    void touchesEnded(UITouch&) override { log += "up "; }
    void touchesCancelled(UITouch&) override { log += "cancel "; }
    bool pressesBegan(const UIPress& press) override
    {
        log += "key:" + press.charactersIgnoringModifiers + " ";
        return false;
    }
    void layoutSubviews() override { ++layouts; }
    UITextInput* textInput() override { return this; }
    void insertText(std::string_view text) override { log += "text:" + std::string(text) + " "; }
    void setMarkedText(std::string_view text) override { log += "marked:" + std::string(text) + " "; }
    CGRect caretRectInWindow() const override { return CGRect::make(3, 4, 1, 12); }

    std::string log;
    int draws = 0, layouts = 0;
};

struct Desktop {
    Desktop()
    {
        view = std::make_shared<SensingView>();
        auto controller = std::make_shared<UIViewController>();
        controller->setView(view);
        window = std::make_shared<UIWindow>(CGRect::make(0, 0, 200, 100));
        window->setRootViewController(controller);
        window->onClose = [this] { ++closes; };
    }
    ~Desktop()
    {
        if (window)
            window->close();
        turn();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void show()
    {
        window->makeKeyAndVisible();
        turn();
    }
    void turn()
    {
        for (int i = 0; i < 20; ++i)
            QCoreApplication::processEvents();
    }
    QWindow& surface()
    {
        for (auto* each : QGuiApplication::topLevelWindows()) {
            if (each->isVisible())
                return *each;
        }
        throw std::logic_error("no window is shown");
    }
    void mouse(QEvent::Type type, QPointF place, Qt::MouseButton button, Qt::MouseButtons down, quint64 time)
    {
        QMouseEvent event(type, place, place, place, button, down, Qt::NoModifier);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(&surface(), &event);
    }

    std::shared_ptr<SensingView> view;
    std::shared_ptr<UIWindow> window;
    int closes = 0;
};

// What is on the desktop, whoever painted it when.
QRgb pixelAt(QWindow& window, int x, int y)
{
    return window.screen()->grabWindow(window.winId(), x, y, 1, 1).toImage().pixel(0, 0);
}

TEST(RasterWindow, shows_no_ghost_of_what_moved_and_hid_while_nobody_saw_the_window)
{
    VirtualClock clock;
    Desktop desktop;
    desktop.view->setBackgroundColor(UIColor::white());
    auto moved = std::make_shared<UIView>(CGRect::make(10, 10, 20, 20));
    auto hidden = std::make_shared<UIView>(CGRect::make(10, 60, 20, 20));
    for (const auto& box : {moved, hidden}) {
        box->setBackgroundColor(UIColor::red());
        desktop.view->addSubview(box);
    }
    desktop.show();
    UIView::animate(AnimationTiming::linear(1), [&] { moved->setCenter({180, 20}); });
    clock.advance(std::chrono::milliseconds{500});
    auto& surface = desktop.surface();
    EXPECT_EQ(pixelAt(surface, 100, 20), 0xffff0000) << "on its way";
    surface.hide();
    desktop.turn();
    ASSERT_FALSE(desktop.window->isOnScreen());
    clock.advance(std::chrono::seconds{1});
    hidden->setHidden(true);
    surface.show();
    desktop.turn();
    clock.advance(std::chrono::milliseconds{100});
    desktop.turn();
    EXPECT_EQ(pixelAt(surface, 100, 20), 0xffffffff);
    EXPECT_EQ(pixelAt(surface, 180, 20), 0xffff0000);
    EXPECT_EQ(pixelAt(surface, 20, 70), 0xffffffff);
}

TEST(RasterWindow, paints_before_it_is_shown_and_reports_the_first_frame_once)
{
    Desktop desktop;
    int firstFrames = 0;
    desktop.window->onFirstFrame = [&] {
        ++firstFrames;
        EXPECT_GE(desktop.view->draws, 1);
    };
    desktop.window->makeKeyAndVisible();
    EXPECT_EQ(desktop.view->draws, 1) << "without waiting for the window system";
    desktop.turn();
    EXPECT_EQ(firstFrames, 1);
    EXPECT_TRUE(desktop.window->dirtyRegion().isEmpty());
    auto draws = desktop.view->draws;
    desktop.turn();
    EXPECT_EQ(desktop.view->draws, draws) << "nothing is painted while nothing changes";
    EXPECT_FALSE(RunLoop::main().nextDeadline().has_value()) << "nor does anything wait";
}

TEST(RasterWindow, follows_its_size_and_asks_for_one_layout)
{
    Desktop desktop;
    desktop.show();
    desktop.view->layouts = 0;
    desktop.surface().resize(300, 150);
    desktop.turn();
    EXPECT_EQ(desktop.view->bounds().size, (CGSize{300, 150}));
    EXPECT_EQ(desktop.view->layouts, 1);
    EXPECT_TRUE(desktop.window->dirtyRegion().isEmpty());
}

TEST(RasterWindow, sends_mouse_events_as_touches)
{
    Desktop desktop;
    desktop.show();
    constexpr auto left = Qt::LeftButton, middle = Qt::MiddleButton, none = Qt::NoButton;
    desktop.mouse(QEvent::MouseButtonPress, {10, 10}, left, left, 1000);
    desktop.mouse(QEvent::MouseMove, {12, 10}, none, left, 1010);
    desktop.mouse(QEvent::MouseMove, {12, 10}, none, left, 1015); // did not move
    desktop.mouse(QEvent::MouseButtonRelease, {12, 10}, left, none, 1020);
    EXPECT_EQ(std::exchange(desktop.view->log, {}), "down1 move up ");
    // The window system's library sends a press, and says besides that it was the second.
    desktop.mouse(QEvent::MouseButtonPress, {12, 10}, left, left, 1100);
    desktop.mouse(QEvent::MouseButtonDblClick, {12, 10}, left, left, 1100);
    desktop.mouse(QEvent::MouseButtonRelease, {12, 10}, left, none, 1120);
    EXPECT_EQ(std::exchange(desktop.view->log, {}), "down2 up ");
    desktop.mouse(QEvent::MouseButtonPress, {12, 10}, middle, middle, 1150);
    desktop.mouse(QEvent::MouseButtonRelease, {12, 10}, middle, none, 1160);
    EXPECT_EQ(std::exchange(desktop.view->log, {}), "down1m up ");
    // The button came up where nobody told this window.
    desktop.mouse(QEvent::MouseButtonPress, {12, 10}, left, left, 9000);
    desktop.mouse(QEvent::MouseMove, {20, 10}, none, none, 9100);
    EXPECT_EQ(std::exchange(desktop.view->log, {}), "down1 cancel ");
}

TEST(RasterWindow, sends_keys_and_composed_text)
{
    Desktop desktop;
    desktop.show();
    desktop.view->becomeFirstResponder();
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, u"a"_s);
    QCoreApplication::sendEvent(&desktop.surface(), &key);
    EXPECT_EQ(std::exchange(desktop.view->log, {}), "key:a text:a ");

    QInputMethodEvent composing(u"ni"_s, {});
    QCoreApplication::sendEvent(&desktop.surface(), &composing);
    QInputMethodEvent committed;
    committed.setCommitString(u"你"_s);
    QCoreApplication::sendEvent(&desktop.surface(), &committed);
    EXPECT_EQ(std::exchange(desktop.view->log, {}), "marked:ni marked: text:你 ");

    QInputMethodQueryEvent query(Qt::ImEnabled | Qt::ImCursorRectangle);
    QCoreApplication::sendEvent(&desktop.surface(), &query);
    EXPECT_TRUE(query.value(Qt::ImEnabled).toBool());
    EXPECT_EQ(query.value(Qt::ImCursorRectangle).toRectF(), QRectF(3, 4, 1, 12));
    desktop.view->resignFirstResponder();
    QInputMethodQueryEvent after(Qt::ImEnabled);
    QCoreApplication::sendEvent(&desktop.surface(), &after);
    EXPECT_FALSE(after.value(Qt::ImEnabled).toBool());
}

TEST(RasterWindow, survives_being_closed_and_dropped_in_the_middle_of_its_events)
{
    class Closing : public SensingView {
    public:
        void touchesBegan(UITouch&) override { onTouch(); }
        void draw(CGContext&, CGRect) override { onDraw(); }
        std::function<void()> onTouch = [] { }, onDraw = [] { };
    };
    using Act = std::function<void(Desktop&)>;
    const Act nothing = [](auto&) { };
    auto drop = [](Desktop& desktop) {
        if (auto last = std::exchange(desktop.window, nullptr))
            last->close();
    };
    auto closing = [](Desktop& desktop) {
        auto view = std::make_shared<Closing>();
        view->setFrame(CGRect::make(0, 0, 50, 50));
        desktop.view->addSubview(view);
        return view;
    };
    const std::tuple<std::string_view, Act, Act> cases[] = {
        {"the user closes it", nothing,
         [](auto& desktop) {
             QCloseEvent event;
             QCoreApplication::sendEvent(&desktop.surface(), &event);
         }},
        {"the owner drops it in onClose",
         [](auto& desktop) {
             desktop.window->onClose = [&desktop] {
                 ++desktop.closes;
                 desktop.window.reset();
             };
         },
         [](auto& desktop) { desktop.window->close(); }},
        {"a click", [&](auto& desktop) { closing(desktop)->onTouch = [&] { drop(desktop); }; },
         [](auto& desktop) {
             desktop.mouse(QEvent::MouseButtonPress, {10, 10}, Qt::LeftButton, Qt::LeftButton, 1);
         }},
        {"its first frame", [&](auto& desktop) { desktop.window->onFirstFrame = [&] { drop(desktop); }; },
         nothing},
        {"painting", [&](auto& desktop) { closing(desktop)->onDraw = [&] { drop(desktop); }; }, nothing},
    };
    for (const auto& [name, arrange, act] : cases) {
        SCOPED_TRACE(name);
        Desktop desktop;
        std::weak_ptr<UIWindow> window = desktop.window;
        arrange(desktop);
        desktop.show();
        if (desktop.window)
            act(desktop);
        desktop.turn();
        desktop.window.reset();
        EXPECT_TRUE(window.expired());
        EXPECT_EQ(desktop.closes, 1);
        EXPECT_TRUE(UIApplication::shared().windows().empty());
    }
}

TEST(RasterWindow, ends_the_program_with_its_last_window)
{
    Desktop first, second;
    first.window->makeKeyAndVisible();
    second.window->makeKeyAndVisible();
    std::string order;
    RunLoop::main().perform([&] {
        order += "1";
        first.window->close();
        RunLoop::main().perform([&] {
            order += "2";
            second.window->close();
        });
    });
    EXPECT_EQ(UIApplication::shared().run(), 0);
    EXPECT_EQ(order, "12");
    UIApplication::shared().terminate(3);
    EXPECT_EQ(UIApplication::shared().run(), 3) << "a wish from before the loop counts";
}

TEST(RasterWindow, runs_timed_work_of_the_run_loop_inside_of_the_window_systems)
{
    using namespace std::chrono_literals;
    Desktop desktop;
    desktop.window->makeKeyAndVisible();
    std::string order;
    RunLoop::main().performAfter(4ms, [&] { order += "late", UIApplication::shared().terminate(7); });
    RunLoop::main().performAfter(1ms, [&] { order += "soon "; });
    EXPECT_EQ(UIApplication::shared().run(), 7);
    EXPECT_EQ(order, "soon late");
}

} // namespace
