// SPDX-License-Identifier: MIT
#include "platform/uikit/UIWindow.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIImage.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::ViewHarness;

std::shared_ptr<UIView> viewAt(CGFloat x, CGFloat y, CGFloat width, CGFloat height)
{
    return std::make_shared<UIView>(CGRect::make(x, y, width, height));
}

class DrawnView : public UIView {
public:
    using UIView::UIView;
    void draw(CGContext&, CGRect dirty) override
    {
        ++draws;
        lastDirty = dirty;
        if (onDraw)
            onDraw();
    }
    int draws = 0;
    CGRect lastDirty;
    std::function<void()> onDraw;
};

// A hundred rows of ten points and what each change of one of them costs.
TEST(UIWindow, paints_only_what_has_changed)
{
    const auto rect = CGRect::make;
    ViewHarness harness({200, 1000});
    auto root = std::make_shared<UIView>();
    std::vector<std::shared_ptr<DrawnView>> rows;
    for (int i = 0; i < 100; ++i) {
        rows.push_back(std::make_shared<DrawnView>(rect(0, i * 10, 200, 10)));
        root->addSubview(rows.back());
    }
    harness.show(root);
    EXPECT_EQ(harness.paintFrame(), (std::vector{rect(0, 0, 200, 1000)}));
    EXPECT_TRUE(harness.paintFrame().empty());

    auto& row = *rows[5];
    auto inner = viewAt(-5, 2, 20, 4), clipped = viewAt(-30, 0, 20, 4);
    row.addSubview(inner);
    rows[8]->addSubview(clipped);
    rows[8]->setClipsToBounds(true);
    rows[7]->setHidden(true);
    harness.paintFrame();
    using Change = std::function<void()>;
    const std::tuple<std::string_view, Change, std::vector<CGRect>, int> cases[] = {
        {"all of a row", [&] { row.setNeedsDisplay(); }, {rect(0, 50, 200, 10)}, 1},
        {"a part", [&] { row.setNeedsDisplay(rect(5, 2, 10, 3)); }, {rect(5, 52, 10, 3)}, 1},
        {"a fraction of a point", [&] { row.setNeedsDisplay(rect(5.5, 2.5, 1, 1)); }, {rect(5, 52, 2, 2)}, 1},
        {"too much", [&] { row.setNeedsDisplay(rect(-9, -9, 999, 999)); }, {rect(0, 50, 200, 10)}, 1},
        {"the same value again", [&] { row.setAlpha(1); }, {}, 0},
        {"two rows apart",
         [&] { rows[1]->setNeedsDisplay(), rows[90]->setNeedsDisplay(); },
         {rect(0, 10, 200, 10), rect(0, 900, 200, 10)},
         2},
        {"a view that moves leaves one place and takes another",
         [&] { inner->setCenter({105, 4}); },
         {rect(0, 52, 15, 4), rect(95, 52, 20, 4)},
         2},
        {"what shows outside of its superview counts",
         [&] { inner->setFrame(rect(95, -8, 20, 4)); },
         {rect(95, 52, 20, 4), rect(95, 42, 20, 4)},
         2},
        {"a clipped view shows nothing there", [&] { clipped->setNeedsDisplay(); }, {}, 0},
        {"nothing of a hidden view", [&] { rows[7]->setBackgroundColor(UIColor::red()); }, {}, 0},
    };
    for (const auto& [name, change, painted, rowsDrawn] : cases) {
        SCOPED_TRACE(name);
        for (const auto& each : rows)
            each->draws = 0;
        change();
        EXPECT_EQ(harness.paintFrame(), painted);
        int drawn = 0;
        for (const auto& each : rows)
            drawn += each->draws;
        EXPECT_EQ(drawn, rowsDrawn);
    }
}

TEST(UIWindow, does_not_draw_what_an_opaque_view_covers)
{
    ViewHarness harness({100, 100});
    auto root = std::make_shared<DrawnView>();
    auto cover = viewAt(0, 0, 100, 100);
    cover->setBackgroundColor(UIColor::white());
    root->addSubview(cover);
    harness.show(root);
    harness.paintFrame();
    EXPECT_EQ(root->draws, 0);
    cover->setAlpha(0.5);
    harness.paintFrame();
    EXPECT_EQ(root->draws, 1);
}

TEST(UIWindow, gives_a_view_the_dirty_part_of_it_and_marks_made_meanwhile_to_the_next_frame)
{
    ViewHarness harness({100, 100}, {.displayScale = 1.25}); // a pixel is no whole part of a point
    auto root = std::make_shared<UIView>();
    auto drawn = std::make_shared<DrawnView>(CGRect::make(10, 10, 50, 50));
    drawn->setBounds(CGRect::make(0, 300, 50, 50)); // scrolled
    root->addSubview(drawn);
    harness.show(root);
    drawn->onDraw = [&] {
        if (drawn->draws == 1)
            drawn->setNeedsDisplay(CGRect::make(5, 310, 10, 10));
    };
    harness.paintFrame();
    EXPECT_EQ(harness.paintFrame(), (std::vector{CGRect::make(14, 19, 12, 12)}));
    EXPECT_TRUE(drawn->lastDirty.contains(CGRect::make(4, 309, 12, 12)));
    EXPECT_TRUE(CGRect::make(3, 308, 14, 14).contains(drawn->lastDirty)) << "whole pixels, and no more";
    EXPECT_TRUE(harness.paintFrame().empty());
}

TEST(UIWindowDeathTest, refuses_phases_out_of_order)
{
    auto inPaint = [](auto act) {
        ViewHarness harness({10, 10});
        auto root = std::make_shared<DrawnView>();
        harness.show(root);
        root->onDraw = [&] { act(harness, *root); };
        harness.paintFrame();
    };
    EXPECT_DEATH(inPaint([](auto&, auto& view) { view.layoutIfNeeded(); }), "layout asked during paint");
    EXPECT_DEATH(inPaint([](auto& all, auto&) { all.window().layoutNow(); }), "layout asked during paint");
    EXPECT_DEATH(inPaint([](auto& all, auto&) { all.snapshot(); }), "paint asked during paint");
}

class KeyView : public UIView, public UITextInput {
public:
    explicit KeyView(std::string label, CGRect frame = CGRect::make(0, 0, 10, 10))
        : UIView(frame)
    {
        accessibility().label = std::move(label);
    }
    bool canBecomeFirstResponder() const override { return wants; }
    bool resignFirstResponder() override { return letsGo && UIView::resignFirstResponder(); }
    bool pressesBegan(const UIPress& press) override
    {
        keys += press.charactersIgnoringModifiers;
        return takes || UIView::pressesBegan(press);
    }
    UITextInput* textInput() override { return takesText ? this : nullptr; }
    void insertText(std::string_view text) override { typed += text; }
    void setMarkedText(std::string_view) override { }
    CGRect caretRectInWindow() const override { return {}; }
    void keyWindowDidChange() override { ++keyChanges; }

    bool wants = true, letsGo = true, takes = false, takesText = false;
    int keyChanges = 0;
    std::string keys, typed;
};

TEST(UIWindow, sends_keys_to_the_first_responder_and_on_until_somebody_takes_them)
{
    ViewHarness harness;
    auto outer = std::make_shared<KeyView>("outer"), inner = std::make_shared<KeyView>("inner");
    outer->addSubview(inner);
    harness.show(outer);
    std::string unhandled;
    harness.window().onUnhandledPress = [&](const UIPress& press) {
        unhandled += press.charactersIgnoringModifiers;
        return press.charactersIgnoringModifiers == "q";
    };
    EXPECT_FALSE(harness.press("a", 0));
    EXPECT_EQ(outer->keys, "a") << "without a first responder the root view is asked";
    EXPECT_EQ(inner->keys, "");
    ASSERT_TRUE(inner->becomeFirstResponder());
    EXPECT_TRUE(harness.press("q", 0));
    inner->takes = true;
    harness.press("x", 0);
    EXPECT_EQ(inner->keys, "qx");
    EXPECT_EQ(outer->keys, "aq");
    EXPECT_EQ(unhandled, "aq");
    inner->takes = false;
    inner->takesText = true; // what nobody took is typed
    harness.type("Grün 漢");
    harness.press("c", UIKeyModifierFlags::control);
    harness.press(UIKeyCode::escape);
    inner->takesText = false;
    harness.type("x");
    EXPECT_EQ(inner->typed, "Grün 漢");
}

TEST(UIWindow, offers_keys_that_nobody_took_to_the_shortcuts_on_screen)
{
    class Shortcut : public UIView {
    public:
        explicit Shortcut(std::string key)
            : key_(std::move(key))
        {
        }
        bool performKeyEquivalent(const UIPress& press) override
        {
            if (press.charactersIgnoringModifiers != key_)
                return false;
            ++uses;
            removeFromSuperview();
            return true;
        }
        int uses = 0;

    private:
        std::string key_;
    };
    ViewHarness harness;
    auto root = std::make_shared<KeyView>("root"), field = std::make_shared<KeyView>("field");
    auto behind = std::make_shared<Shortcut>("x"), front = std::make_shared<Shortcut>("x");
    auto hidden = std::make_shared<Shortcut>("y"), dialog = std::make_shared<Shortcut>("z");
    root->setSubviews({field, behind, front, hidden, dialog});
    hidden->setHidden(true);
    harness.show(root);
    field->becomeFirstResponder();
    field->takesText = true;
    harness.type("x");
    EXPECT_EQ(std::pair(field->typed, front->uses), std::pair(std::string("x"), 0)) << "text goes first";
    field->takesText = false;
    EXPECT_TRUE(harness.press("x", 0));
    EXPECT_EQ(std::pair(front->uses, behind->uses), std::pair(1, 0));
    EXPECT_FALSE(harness.press("y", 0));
    harness.window().beginModal(dialog);
    EXPECT_FALSE(harness.press("x", 0)) << "what a modal view covers hears no keys";
    EXPECT_TRUE(harness.press("z", 0));
    EXPECT_TRUE(harness.press("x", 0));
    EXPECT_EQ(std::pair(behind->uses, dialog->uses), std::pair(1, 1));
}

TEST(UIWindow, moves_the_keyboard_by_tab_in_reading_order)
{
    ViewHarness harness({300, 300});
    auto root = std::make_shared<UIView>();
    auto at = [](std::string name, CGFloat x, CGFloat y) {
        return std::make_shared<KeyView>(std::move(name), CGRect::make(x, y, 10, 10));
    };
    auto a = at("a", 0, 0), b = at("b", 100, 0), c = at("c", 0, 50);
    auto unwilling = at("no", 50, 50), hidden = at("hidden", 60, 50);
    unwilling->wants = false;
    hidden->setHidden(true);
    root->setSubviews({c, hidden, b, unwilling, a});
    harness.show(root);
    std::string order;
    auto press = [&](std::uint8_t modifiers, int times) {
        while (times-- > 0) {
            EXPECT_TRUE(harness.press(UIKeyCode::tab, modifiers));
            auto view = std::dynamic_pointer_cast<UIView>(harness.window().firstResponder());
            order += view ? view->accessibility().label : "?";
        }
    };
    press(0, 4);
    press(UIKeyModifierFlags::shift, 3);
    EXPECT_EQ(order, "abcacba");
    harness.window().setBaseTraits({.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft});
    press(0, 1);
    EXPECT_EQ(order.back(), 'c') << "a is the last of its line now";
}

TEST(UIWindow, hands_the_keyboard_over_only_when_both_sides_agree)
{
    ViewHarness harness;
    auto root = std::make_shared<UIView>();
    auto first = std::make_shared<KeyView>("first"), second = std::make_shared<KeyView>("second");
    root->setSubviews({first, second});
    EXPECT_FALSE(first->becomeFirstResponder()) << "it is in no window";
    harness.show(root);
    EXPECT_TRUE(first->becomeFirstResponder());
    for (auto letsGo : {false, true}) {
        for (auto wants : {false, true}) {
            first->letsGo = letsGo;
            second->wants = wants;
            EXPECT_EQ(second->becomeFirstResponder(), letsGo && wants);
            EXPECT_NE(first->isFirstResponder(), letsGo && wants);
        }
    }
    harness.window().setKeyWindow(false);
    EXPECT_EQ(second->keyChanges, 1);
    EXPECT_EQ(first->keyChanges, 0);
    second->letsGo = false; // a view that leaves is not asked
    second->removeFromSuperview();
    EXPECT_EQ(harness.window().firstResponder(), nullptr);
}

TEST(UIWindow, tells_views_when_the_pointer_comes_and_goes)
{
    struct Hovered : UIView {
        std::string name;
        std::string* log = nullptr;
        void pointerEntered() override { *log += "+" + name; }
        void pointerExited() override { *log += "-" + name; }
    };
    std::string log;
    auto make = [&](std::string name, CGRect frame) {
        auto view = std::make_shared<Hovered>();
        view->setFrame(frame);
        view->name = std::move(name);
        view->log = &log;
        return view;
    };
    ViewHarness harness({100, 100});
    auto root = std::make_shared<UIView>();
    auto outer = make("outer", CGRect::make(0, 0, 50, 50)), inner = make("inner", CGRect::make(0, 0, 20, 20));
    auto beside = make("beside", CGRect::make(50, 0, 50, 50));
    outer->addSubview(inner);
    root->setSubviews({outer, beside});
    harness.show(root);
    const std::pair<std::function<void()>, std::string_view> cases[] = {
        {[&] { harness.hover({10, 10}); }, "+outer+inner"},
        {[&] { harness.hover({30, 10}); }, "-inner"},
        {[&] { harness.hover({60, 10}); }, "-outer+beside"},
        {[&] { beside->removeFromSuperview(); }, "-beside"},
        {[&] { harness.hover({10, 10}); }, "+outer+inner"},
        {[&] { harness.window().sendHoverExit(); }, "-inner-outer"},
    };
    for (auto& [act, expected] : cases) {
        act();
        EXPECT_EQ(std::exchange(log, ""), expected);
    }
}

TEST(UIWindow, survives_being_closed_and_dropped_by_what_it_calls)
{
    class Acting : public KeyView {
    public:
        Acting()
            : KeyView("acting")
        {
        }
        void touchesBegan(UITouch&) override { act("touch"); }
        bool pressesBegan(const UIPress&) override { return act("key"); }
        bool scrollWheel(const UIScrollWheel&) override { return act("wheel"); }
        void pointerEntered() override { act("hover"); }
        void insertText(std::string_view) override { act("text"); }
        bool resignFirstResponder() override { return act("resign"), KeyView::resignFirstResponder(); }
        bool act(const std::string& event)
        {
            if (event == when)
                std::exchange(what, [] { })();
            return false;
        }
        std::string when;
        std::function<void()> what = [] { };
    };
    UITouch touch{.windowLocation = {5, 5}};
    const std::pair<std::string, std::function<void(ViewHarness&)>> cases[] = {
        {"touch", [&](auto& harness) { harness.window().sendTouch(touch); }},
        {"wheel", [](auto& harness) { harness.scroll({5, 5}, {0, 5}); }},
        {"hover", [](auto& harness) { harness.hover({5, 5}); }},
        {"resign", [](auto& harness) { harness.window().makeFirstResponder(nullptr); }},
        {"close", [](auto& harness) { harness.window().close(); }},
        {"key", [](auto& harness) { harness.type("x"); }},
        {"text", [](auto& harness) { harness.type("x"); }},
        {"unhandled", [](auto& harness) { harness.type("x"); }},
    };
    for (auto& [event, act] : cases) {
        SCOPED_TRACE(event);
        ViewHarness harness({100, 100});
        auto view = std::make_shared<Acting>();
        view->takesText = event != "unhandled";
        harness.show(view);
        view->becomeFirstResponder();
        int closes = 0;
        view->when = event;
        view->what = [&] {
            harness.window().close();
            harness.dropWindow();
        };
        harness.window().onClose = [&, drops = event == "close"] {
            ++closes;
            if (drops)
                harness.dropWindow();
        };
        if (event == "unhandled")
            harness.window().onUnhandledPress = [&](const UIPress&) { return view->what(), true; };
        std::weak_ptr<UIWindow> window = harness.sharedWindow();
        act(harness);
        view.reset();
        harness.settle();
        EXPECT_EQ(closes, 1);
        EXPECT_TRUE(window.expired());
    }
}

} // namespace
