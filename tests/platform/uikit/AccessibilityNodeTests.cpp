// SPDX-License-Identifier: MIT
#include "platform/uikit/AccessibilityNode_p.h"

#include "platform/uikit/AccessibilityNodes_p.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::ViewHarness;

std::shared_ptr<UIView> element(std::string label, AccessibilityRole role,
                                CGRect frame = CGRect::make(0, 0, 10, 10))
{
    auto view = std::make_shared<UIView>(frame);
    view->accessibility().label = std::move(label);
    view->accessibility().role = role;
    return view;
}

std::string namesBelow(QAccessibleInterface& node)
{
    std::string names;
    for (int i = 0; i < node.childCount(); ++i) {
        auto* child = node.child(i);
        EXPECT_EQ(node.indexOfChild(child), i);
        EXPECT_EQ(child->parent(), &node);
        names += child->text(QAccessible::Name).toStdString();
        auto below = namesBelow(*child);
        if (!below.empty())
            names += "(" + below + ")";
        names += " ";
    }
    if (!names.empty())
        names.pop_back();
    return names;
}

TEST(AccessibilityNode, puts_elements_in_the_place_of_views_that_are_none)
{
    ViewHarness harness;
    auto root = std::make_shared<UIView>(), wrapper = std::make_shared<UIView>();
    auto inner = std::make_shared<UIView>();
    auto group = element("group", AccessibilityRole::group);
    auto hidden = element("hidden", AccessibilityRole::button);
    auto silent = element("silent", AccessibilityRole::button);
    hidden->setHidden(true);
    silent->accessibility().isHidden = true;
    silent->addSubview(element("below", AccessibilityRole::image));
    group->setSubviews({element("a", AccessibilityRole::button), hidden, silent});
    inner->addSubview(element("b", AccessibilityRole::staticText));
    wrapper->setSubviews({group, inner});
    root->setSubviews({wrapper, element("c", AccessibilityRole::link)});
    harness.show(root);
    auto* node = AccessibilityNodes::node(harness.window());
    EXPECT_EQ(node->role(), QAccessible::Window);
    EXPECT_EQ(namesBelow(*node), "group(a) b c");
    EXPECT_EQ(node->child(3), nullptr);
    EXPECT_EQ(node->child(-1), nullptr);

    // The tree is asked each time.
    hidden->setHidden(false);
    inner->removeFromSuperview();
    EXPECT_EQ(namesBelow(*node), "group(a hidden) c");
}

TEST(AccessibilityNode, forgets_a_view_that_leaves_its_window)
{
    ViewHarness harness;
    auto root = std::make_shared<UIView>();
    auto view = element("a", AccessibilityRole::button);
    root->addSubview(view);
    harness.show(root);
    auto id = QAccessible::uniqueId(AccessibilityNodes::node(*view));
    EXPECT_NE(QAccessible::accessibleInterface(id), nullptr);
    EXPECT_EQ(AccessibilityNodes::node(*view), QAccessible::accessibleInterface(id))
        << "one node for one view";
    view->removeFromSuperview();
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

TEST(AccessibilityNode, says_how_a_view_is)
{
    class Focusable : public UIView {
    public:
        bool canBecomeFirstResponder() const override { return true; }
    };
    ViewHarness harness({100, 100});
    auto root = std::make_shared<UIView>();
    auto view = std::make_shared<Focusable>();
    view->setFrame(CGRect::make(10, 20, 30, 40));
    view->accessibility() = {.role = AccessibilityRole::toggle,
                             .label = "Wrap",
                             .value = "on",
                             .hint = "Wraps long lines",
                             .isEnabled = false,
                             .isSelected = true,
                             .isModal = true,
                             .isBusy = true};
    root->addSubview(view);
    harness.show(root);
    harness.window().setKeyWindow(true);
    auto* node = AccessibilityNodes::node(*view);
    EXPECT_EQ(node->text(QAccessible::Name), QStringLiteral("Wrap"));
    EXPECT_EQ(node->text(QAccessible::Value), QStringLiteral("on"));
    EXPECT_EQ(node->text(QAccessible::Description), QStringLiteral("Wraps long lines"));
    EXPECT_EQ(node->role(), QAccessible::CheckBox);
    EXPECT_EQ(node->rect(), QRect(10, 20, 30, 40));
    auto state = node->state();
    EXPECT_TRUE(state.disabled && state.selected && state.modal && state.busy && state.checked
                && state.focusable);
    EXPECT_FALSE(state.focused || state.offscreen || state.editable || state.selectableText);

    view->becomeFirstResponder();
    EXPECT_TRUE(node->state().focused);
    EXPECT_EQ(AccessibilityNodes::node(harness.window())->focusChild(), node);
    view->setCenter({500, 500});
    EXPECT_TRUE(node->state().offscreen);
    EXPECT_EQ(AccessibilityNodes::node(harness.window())->childAt(15, 25), nullptr);
    view->setCenter({25, 40});
    EXPECT_EQ(AccessibilityNodes::node(harness.window())->childAt(15, 25), node);
}

TEST(AccessibilityNode, does_what_the_view_does_when_it_is_activated)
{
    class Button : public UIView {
    public:
        bool accessibilityActivate() override
        {
            ++activations;
            removeFromSuperview(); // and its node with it
            return true;
        }
        int activations = 0;
    };
    ViewHarness harness;
    auto root = std::make_shared<UIView>();
    auto button = std::make_shared<Button>();
    button->accessibility().role = AccessibilityRole::button;
    root->addSubview(button);
    harness.show(root);
    auto* actions = AccessibilityNodes::node(*button)->actionInterface();
    ASSERT_NE(actions, nullptr);
    EXPECT_EQ(actions->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
    actions->doAction(QStringLiteral("no such action"));
    EXPECT_EQ(button->activations, 0);
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(button->activations, 1);
    button->accessibility().isEnabled = false;
    root->addSubview(button);
    EXPECT_EQ(AccessibilityNodes::node(*button)->actionInterface(), nullptr);
}

// A text of lines of ten units each that counts what it is asked to copy.
class LongText : public UIView, public AccessibleText {
public:
    LongText()
    {
        accessibility() = {.role = AccessibilityRole::textView, .isReadOnly = true, .isMultiLine = true};
    }
    AccessibleText* accessibleText() override { return this; }
    std::size_t characterCount() const override { return count; }
    std::u16string text(Range range) const override
    {
        copied += range.end - range.start;
        return std::u16string(range.end - range.start, u'x');
    }
    std::size_t caretOffset() const override { return caret; }
    void setCaretOffset(std::size_t offset) override { caret = offset; }
    Range selection() const override { return selected; }
    void setSelection(Range range) override { selected = range; }
    Range rangeAround(std::size_t offset, Boundary boundary) const override
    {
        offset = std::min(offset, count);
        switch (boundary) {
        case Boundary::character:
            return {offset, std::min(offset + 1, count)};
        case Boundary::document:
            return {0, count};
        default:
            return {offset / 10 * 10, std::min(offset / 10 * 10 + 10, count)};
        }
    }
    CGRect characterRect(std::size_t offset) const override
    {
        return offset < 10 ? CGRect::make(CGFloat(offset) * 8, 0, 8, 16) : CGRect::null();
    }
    std::optional<std::size_t> offsetAt(CGPoint point) const override
    {
        return point.y < 16 ? std::optional(static_cast<std::size_t>(point.x / 8)) : std::nullopt;
    }
    void scrollTo(Range range) override { scrolledTo = range.start; }

    std::size_t count = 1000, caret = 0, scrolledTo = 0;
    mutable std::size_t copied = 0;
    Range selected;
};

TEST(AccessibilityNode, reads_a_text_by_the_pieces_that_are_asked_for)
{
    ViewHarness harness;
    auto view = std::make_shared<LongText>();
    harness.show(view);
    auto* node = AccessibilityNodes::node(*view);
    auto* text = node->textInterface();
    ASSERT_NE(text, nullptr);
    auto state = node->state();
    EXPECT_TRUE(state.readOnly && state.multiLine && state.selectableText);
    EXPECT_FALSE(state.editable);

    struct Case {
        std::string_view name;
        std::function<QString(int*, int*)> ask;
        int start, end;
    };
    const Case cases[] = {
        {"the line here",
         [&](int* s, int* e) { return text->textAtOffset(15, QAccessible::LineBoundary, s, e); }, 10, 20},
        {"the one before",
         [&](int* s, int* e) { return text->textBeforeOffset(15, QAccessible::LineBoundary, s, e); }, 0, 10},
        {"the one after",
         [&](int* s, int* e) { return text->textAfterOffset(15, QAccessible::LineBoundary, s, e); }, 20, 30},
        {"before the first",
         [&](int* s, int* e) { return text->textBeforeOffset(5, QAccessible::LineBoundary, s, e); }, -1, -1},
        {"after the last",
         [&](int* s, int* e) { return text->textAfterOffset(995, QAccessible::LineBoundary, s, e); }, -1, -1},
        {"a character",
         [&](int* s, int* e) { return text->textAtOffset(7, QAccessible::CharBoundary, s, e); }, 7, 8},
        {"an offset before the beginning",
         [&](int* s, int* e) { return text->textAtOffset(-5, QAccessible::LineBoundary, s, e); }, 0, 10},
    };
    for (const auto& [name, ask, start, end] : cases) {
        SCOPED_TRACE(name);
        view->copied = 0;
        int s = 0, e = 0;
        auto answer = ask(&s, &e);
        EXPECT_EQ(s, start);
        EXPECT_EQ(e, end);
        EXPECT_EQ(answer.size(), end - start);
        EXPECT_LE(view->copied, 10u) << "nothing but what was asked for is read";
    }
}

TEST(AccessibilityNode, answers_for_a_text_of_any_size)
{
    ViewHarness harness;
    auto view = std::make_shared<LongText>();
    view->count = std::size_t(5) * 1024 * 1024 * 1024;
    harness.show(view);
    auto* text = AccessibilityNodes::node(*view)->textInterface();
    EXPECT_EQ(text->characterCount(), std::numeric_limits<int>::max());
    EXPECT_LE(text->text(0, -1).size(), 16 * 1024 * 1024) << "more would end the bus connection";
    EXPECT_EQ(text->text(500, 400), QString());
    EXPECT_EQ(text->text(5, 8).size(), 3);
}

TEST(AccessibilityNode, selects_and_moves_in_a_text)
{
    ViewHarness harness;
    auto view = std::make_shared<LongText>();
    harness.show(view);
    auto* text = AccessibilityNodes::node(*view)->textInterface();
    EXPECT_EQ(text->selectionCount(), 0);
    text->addSelection(20, 5);
    int start = 0, end = 0;
    text->selection(0, &start, &end);
    EXPECT_EQ(std::pair(start, end), std::pair(5, 20));
    EXPECT_EQ(text->selectionCount(), 1);
    text->removeSelection(0);
    EXPECT_EQ(text->selectionCount(), 0);
    text->setCursorPosition(42);
    EXPECT_EQ(view->caret, 42u);
    text->setCursorPosition(-1);
    EXPECT_EQ(view->caret, 0u);
    EXPECT_EQ(text->characterRect(2), QRect(16, 0, 8, 16));
    EXPECT_EQ(text->characterRect(50), QRect());
    EXPECT_EQ(text->offsetAtPoint({17, 3}), 2);
    EXPECT_EQ(text->offsetAtPoint({17, 300}), -1);
    text->scrollToSubstring(70, 80);
    EXPECT_EQ(view->scrolledTo, 70u);
}

} // namespace
