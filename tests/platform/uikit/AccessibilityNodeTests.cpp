// SPDX-License-Identifier: MIT
#include "platform/uikit/AccessibilityNode_p.h"

#include "platform/uikit/AccessibilityNodes_p.h"
#include "tests/support/harness/ViewHarness.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::ViewHarness;
using namespace Qt::StringLiterals;

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

class Control : public UIView {
public:
    bool canBecomeFirstResponder() const override { return true; }
    bool accessibilityActivate() override
    {
        ++activations;
        removeFromSuperview(); // and its node with it
        return true;
    }
    int activations = 0;
};

TEST(AccessibilityNode, says_how_a_view_is)
{
    ViewHarness harness({100, 100});
    auto root = std::make_shared<UIView>();
    auto view = std::make_shared<Control>();
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
    auto* window = AccessibilityNodes::node(harness.window());
    auto* node = AccessibilityNodes::node(*view);
    EXPECT_EQ((QStringList{node->text(QAccessible::Name), node->text(QAccessible::Value),
                           node->text(QAccessible::Description)}),
              (QStringList{u"Wrap"_s, u"on"_s, u"Wraps long lines"_s}));
    EXPECT_EQ(node->role(), QAccessible::CheckBox);
    EXPECT_EQ(node->rect(), QRect(10, 20, 30, 40));
    auto state = node->state();
    EXPECT_TRUE(state.disabled && state.selected && state.modal && state.busy && state.checked
                && state.focusable);
    EXPECT_FALSE(state.focused || state.offscreen || state.editable || state.selectableText);
    view->becomeFirstResponder();
    EXPECT_TRUE(node->state().focused);
    EXPECT_EQ(window->focusChild(), node);
    EXPECT_EQ(window->childAt(15, 25), node);
    view->setCenter({500, 500});
    EXPECT_TRUE(node->state().offscreen);
    EXPECT_EQ(window->childAt(15, 25), nullptr);
}

TEST(AccessibilityNode, lets_a_number_be_read_and_set)
{
    class Number : public UIView {
    public:
        Number(AccessibilityRole role, bool isEnabled)
        {
            accessibility() = {.role = role, .isEnabled = isEnabled};
        }
        AccessibilityProperties accessibilityNow() const override
        {
            auto properties = accessibility();
            properties.range = {.minimum = -2, .maximum = 4, .value = value, .step = 0.5};
            return properties;
        }
        bool accessibilitySetValue(double wanted) override { return value = wanted, true; }
        bool accessibilityAdjust(int steps) override { return value += steps * 0.5, true; }
        double value = 1;
    };
    ViewHarness harness;
    auto slider = std::make_shared<Number>(AccessibilityRole::slider, true);
    auto disabled = std::make_shared<Number>(AccessibilityRole::slider, false);
    auto progress = std::make_shared<Number>(AccessibilityRole::progress, true);
    auto root = std::make_shared<UIView>();
    root->setSubviews({slider, disabled, progress});
    harness.show(root);
    for (auto& view : {slider, disabled, progress}) {
        auto* number = AccessibilityNodes::node(*view)->valueInterface();
        ASSERT_NE(number, nullptr);
        EXPECT_EQ((std::array{number->minimumValue().toDouble(), number->currentValue().toDouble(),
                              number->maximumValue().toDouble(), number->minimumStepSize().toDouble()}),
                  (std::array{-2.0, 1.0, 4.0, 0.5}));
        number->setCurrentValue(100);
        EXPECT_EQ(view->value, view == slider ? 4 : 1);
        number->setCurrentValue(std::nan(""));
        EXPECT_EQ(view->value, view == slider ? 4 : 1);
    }
    auto* actions = AccessibilityNodes::node(*slider)->actionInterface();
    ASSERT_NE(actions, nullptr);
    actions->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(slider->value, 3.5);
    EXPECT_EQ(AccessibilityNodes::node(*progress)->actionInterface(), nullptr);
    EXPECT_EQ(AccessibilityNodes::node(*root)->valueInterface(), nullptr);
}

TEST(AccessibilityNode, activates_its_view_and_goes_with_it)
{
    ViewHarness harness;
    auto root = std::make_shared<UIView>();
    auto button = std::make_shared<Control>();
    button->accessibility().role = AccessibilityRole::button;
    root->addSubview(button);
    harness.show(root);
    auto* node = AccessibilityNodes::node(*button);
    auto id = QAccessible::uniqueId(node);
    EXPECT_EQ(node, QAccessible::accessibleInterface(id)) << "one node for one view";
    auto* actions = node->actionInterface();
    ASSERT_NE(actions, nullptr);
    EXPECT_EQ(actions->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
    actions->doAction(u"no such action"_s);
    EXPECT_EQ(button->activations, 0);
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(button->activations, 1);
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
    button->accessibility().isEnabled = false;
    root->addSubview(button);
    EXPECT_EQ(AccessibilityNodes::node(*button)->actionInterface(), nullptr);
}

// A text of lines of ten units each that counts what it is asked to copy.
class LongText : public UIView, public AccessibleText {
public:
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
        auto size = boundary == Boundary::character ? 1u : boundary == Boundary::document ? count : 10u;
        auto start = std::min(offset, count) / size * size;
        return {start, std::min(start + size, count)};
    }
    CGRect characterRect(std::size_t offset) const override
    {
        return offset < 10 ? CGRect::make(CGFloat(offset) * 8, 0, 8, 16) : CGRect::null();
    }
    std::optional<std::size_t> offsetAt(CGPoint point) const override
    {
        return point.y < 16 ? std::optional(static_cast<std::size_t>(point.x / 8)) : std::nullopt;
    }
    void scrollTo(Range) override { }

    std::size_t count = 1000, caret = 0;
    mutable std::size_t copied = 0;
    Range selected;
};

struct ShownText {
    explicit ShownText(std::size_t count = 1000)
    {
        view->count = count;
        view->accessibility() = {.role = AccessibilityRole::textView, .isReadOnly = true};
        harness.show(view);
    }
    QAccessibleTextInterface& text() { return *AccessibilityNodes::node(*view)->textInterface(); }
    ViewHarness harness;
    std::shared_ptr<LongText> view = std::make_shared<LongText>();
};

TEST(AccessibilityNode, reads_a_text_by_the_pieces_that_are_asked_for)
{
    ShownText shown;
    auto state = AccessibilityNodes::node(*shown.view)->state();
    EXPECT_TRUE(state.readOnly && state.selectableText && !state.editable);
    using Text = QAccessibleTextInterface;
    using Ask = QString (Text::*)(int, QAccessible::TextBoundaryType, int*, int*) const;
    constexpr auto line = QAccessible::LineBoundary, character = QAccessible::CharBoundary;
    const std::tuple<std::string_view, Ask, int, QAccessible::TextBoundaryType, int, int> cases[] = {
        {"the line here", &Text::textAtOffset, 15, line, 10, 20},
        {"the one before", &Text::textBeforeOffset, 15, line, 0, 10},
        {"the one after", &Text::textAfterOffset, 15, line, 20, 30},
        {"before the first", &Text::textBeforeOffset, 5, line, -1, -1},
        {"after the last", &Text::textAfterOffset, 995, line, -1, -1},
        {"a character", &Text::textAtOffset, 7, character, 7, 8},
        {"an offset before the beginning", &Text::textAtOffset, -5, line, 0, 10},
    };
    for (const auto& [name, ask, offset, boundary, start, end] : cases) {
        SCOPED_TRACE(name);
        shown.view->copied = 0;
        int s = 0, e = 0;
        EXPECT_EQ((shown.text().*ask)(offset, boundary, &s, &e).size(), end - start);
        EXPECT_EQ(std::pair(s, e), std::pair(start, end));
        EXPECT_LE(shown.view->copied, 10u) << "nothing but what was asked for is read";
    }
}

TEST(AccessibilityNode, answers_for_a_text_of_any_size_and_at_any_offset)
{
    ShownText shown(std::size_t(5) * 1024 * 1024 * 1024);
    auto& text = shown.text();
    EXPECT_EQ(text.characterCount(), std::numeric_limits<int>::max());
    EXPECT_LE(text.text(0, -1).size(), 16 * 1024 * 1024) << "more would end the bus connection";
    EXPECT_EQ(text.text(500, 400), QString());
    EXPECT_EQ(text.text(5, 8).size(), 3);
    EXPECT_EQ(text.selectionCount(), 0);
    text.addSelection(20, 5);
    int start = 0, end = 0;
    text.selection(0, &start, &end);
    EXPECT_EQ(std::pair(start, end), std::pair(5, 20));
    text.removeSelection(0);
    EXPECT_EQ(text.selectionCount(), 0);
    text.setCursorPosition(42);
    EXPECT_EQ(std::exchange(shown.view->caret, 7), 42u);
    text.setCursorPosition(-1);
    EXPECT_EQ(shown.view->caret, 0u);
    EXPECT_EQ(text.characterRect(2), QRect(16, 0, 8, 16));
    EXPECT_EQ(text.characterRect(50), QRect());
    EXPECT_EQ(text.offsetAtPoint({17, 3}), 2);
    EXPECT_EQ(text.offsetAtPoint({17, 300}), -1);
}

} // namespace
